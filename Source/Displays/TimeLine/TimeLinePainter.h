// Where the times of a time line lie on a bar, and how it is drawn there. A plain value.
#pragma once

#include <string>
#include <vector>

#include "Platform/Interface/Canvas/CanvasView.h"
#include "Simulation/History/TimeLine.h"

class Canvas;
class CanvasView;

class TimeLinePainter {
public:
    // Of the bar, in pixels: a row of names, the line, and a row of times.
    static constexpr float kHeight = 50.0f;
    static constexpr rgb_color kBackground{28, 30, 38, 255};

    // `bounds`: of the view.
    TimeLinePainter(const TimeLine& line, BRect bounds);

    [[nodiscard]] float PlaceOf(double time) const;
    // Beyond the ends of the line: the ends.
    [[nodiscard]] double TimeAt(float x) const;
    // The marks that lie there, a few at the most.
    [[nodiscard]] std::vector<const TimeLine::Mark*> MarksAt(float x) const;

    // `moment`: the time that is shown.
    void Draw(Canvas* canvas, double moment, bool isPast) const;
    // The names of the runs, as far as there is room.
    void AddNames(const CanvasView& view, std::vector<OverlayItem>* texts) const;
    // Below the line: its ends, and in the middle what is shown. As far as there is room.
    void AddTimes(const CanvasView& view, const std::string& start, const std::string& end,
                  const std::string& shown, bool isPast, std::vector<OverlayItem>* texts) const;

private:
    const TimeLine& line_;
    const BRect bounds_;
    const float left_;
    const float right_;
};
