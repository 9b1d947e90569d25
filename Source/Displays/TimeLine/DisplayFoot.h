// What stands below the picture of a display: the dial of the pace and, where a moment of the past
// can be shown, the time line. The window owns the views of both, and its lock guards them.
#pragma once

#include "Displays/TimeLine/TimeLineBar.h"

class Display;
class PaceControl;

class DisplayFoot {
public:
    // Adds both below what the display has, and has the display's pulse begin. Without a moment
    // that is shown there is no time line.
    DisplayFoot(Display* display, const TimeLineBar::Source& source, const DisplayContext& context);

    void SetRunning(bool isRunning);
    // Now and then.
    void Pulse();
    // After these changes of the model, of which no lock may be held.
    void Redisplay(int32 changes);
    // A key that the display does not take for itself.
    void TakeKey(const KeyInput& input);

private:
    PaceControl* pace_;
    TimeLineBar* timeLine_ = nullptr;  // null: there is none
};
