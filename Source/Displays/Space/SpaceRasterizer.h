// Draws pictures of space, from the back to the front: the same pixels on every machine and on any
// number of threads. The picture is drawn in bands of rows, and whichever thread is free takes the
// next band. Used by one thread at a time.
#pragma once

#include <memory>
#include <vector>

#include "Calculation/WorkerTeam.h"
#include "Displays/Space/SpaceItems.h"

class SpaceRasterizer {
public:
    // 0: as many threads as the machine has, up to a few.
    explicit SpaceRasterizer(int32 threads = 0);
    ~SpaceRasterizer();

    // Fills the picture with the sky and draws the items on it. `width`: of lines, in pixels.
    void Draw(const SpaceItems& items, Pixel sky, double width, PixelBuffer* into);
    // The threads, for what has to be done before: shared with whoever finds the items.
    [[nodiscard]] WorkerTeam* Team() { return &team_; }

private:
    class Band;
    using StrokesOfBands = std::vector<std::vector<const Stroke*>>;

    void FindTouching(const std::vector<std::vector<Stroke>>& lists, float width,
                      std::size_t bands);

    WorkerTeam team_;
    std::vector<std::unique_ptr<Band>> bands_;
    std::vector<StrokesOfBands> touching_;  // of each list of strokes
};
