// A picture of a whole run, drawn without a window: all trails, and the bodies where they are at
// the end. First keeps the positions that a run reports, a sample of them when there are many; then
// draws them with the view that displays use. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "Displays/Projection/Projection.h"
#include "Displays/Space/SpaceScene.h"
#include "Model/Systems/Body.h"

class UnitTable;

struct PictureSettings {
    float width = 1200.0f;  // logical pixels
    float height = 900.0f;
    double deviceScale = 1.0;  // device pixels to a logical one
    int32 axis = Projection::kZ;
    double scale = 0.0;  // pixels per metre, about the origin; 0: all that was reported is seen
    // For the scale bar and the time. None is owned; null: neither is drawn. They need fonts
    // (HeadlessGraphics.h).
    const UnitTable* distanceUnits = nullptr;
    const UnitTable* timeUnits = nullptr;
    std::string timePrefix;
    double timeUval = 1.0;  // s
};

class RunPicture {
public:
    // At most so many coordinates are kept.
    explicit RunPicture(std::size_t maxCoordinates = kUsualCoordinates)
        : maxCoordinates_(maxCoordinates) {}

    // These bodies, in mass order, move from now on. The caller holds the model's read lock.
    void PrepareForGo(const std::vector<Body*>& bodies, double time);
    // A batch as the calculator hands it over.
    void ReadData(int32 reports, const double* times, const double* positions,
                  const double* velocities = nullptr);

    // The bytes of a PNG file; none if there was nothing to keep.
    [[nodiscard]] std::vector<std::byte> Encode(const PictureSettings& settings) const;
    // The same in space: bodies where they are at the end, and trails.
    [[nodiscard]] SpaceScene Scene() const;

private:
    static constexpr std::size_t kUsualCoordinates = 6'000'000;

    // While the bodies are the same.
    struct Stage {
        std::vector<std::unique_ptr<Body>> bodies;  // as they were at the beginning
        std::vector<double> samples;                // x, y and z of every body, sample by sample
        std::vector<double> last;                   // the same, of the last report
        std::vector<double> lastVelocities;         // none: they were not reported

        [[nodiscard]] std::size_t Stride() const { return 3 * bodies.size(); }
        void KeepEverySecond();
    };
    class PictureView;

    void Keep(Stage* kept, int32 reports, const double* positions);
    void Thin();
    [[nodiscard]] std::vector<ThreeVector> Places() const;
    static void AddTrails(const Stage& stage, double firstTime, SpaceScene* scene);

    const std::size_t maxCoordinates_;
    std::vector<Stage> stages_;
    std::size_t coordinates_ = 0;
    int64 interval_ = 1;  // of the reports every so many-th is kept
    int64 reports_ = 0;
    double time_ = 0.0;  // s
};
