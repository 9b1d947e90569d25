// The time line below a display: the runs that are kept of the branch in focus, what happened in
// them, and the moment that all displays of the simulation show, which it moves. Part of the
// display's frame; its window owns it and its lock guards it.
#pragma once

#include <string>

#include "Displays/TimeLine/MomentPlayer.h"
#include "Platform/Interface/Canvas/CanvasView.h"
#include "Simulation/History/TimeLine.h"

class BLooper;
class BPopUpMenu;
class EpochPortal;
class RunHistory;
class ShownMoment;
struct DisplayContext;

class TimeLineBar final : public CanvasView {
public:
    // What a bar shows, and who gets the user's other wishes: the simulation. None is owned.
    struct Source {
        EpochPortal* portal;
        const RunHistory* history;
        ShownMoment* shown;
        BLooper* owner;
    };
    TimeLineBar(const Source& source, const DisplayContext& context);

    // Brings it up to date after these changes of the model. As for the next one, no lock of the
    // document may be held.
    void Redisplay(int32 changes);
    void SetRunning(bool isRunning);
    // To be called now and then: a run does not report its progress.
    void Pulse() {
        if (isRunning_) Refresh();
    }

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;
    void MouseDown(const MouseInput& input) override;
    void MouseUp(const MouseInput& input) override;
    void MouseMoved(const MouseInput& input, Transit transit) override;
    // Also the keys that the display passes on: true if it is one of the bar's.
    bool TakeKey(const KeyInput& input);
    void KeyDown(const KeyInput& input) override { static_cast<void>(TakeKey(input)); }
    void FrameResized(BRect bounds) override;

private:
    void BuildMenu();
    void Refresh();
    void ShowMoment();
    void Draw();
    void TellValue(const std::string& value);
    void TellMark(float x);
    void SeekTo(double time);
    void StepPictures(int32 direction);
    void StopMaking();
    void Play(int32 direction);
    // What the past is about stands still.
    void PauseRun();
    [[nodiscard]] double SecondsPerSecond() const;
    [[nodiscard]] std::string TextOf(double time) const;
    [[nodiscard]] std::string TipOf(const TimeLine::Mark& mark) const;

    const Source source_;
    const DisplayContext& context_;
    BPopUpMenu* menu_ = nullptr;
    MomentPlayer player_;
    TimeLine line_;
    double timeUval_ = 1.0;
    double moment_ = 0.0;  // s, that is shown
    bool isPast_ = false;
    bool isRunning_ = false;
    bool isDragged_ = false;
    std::string value_;  // what a screen reader says, and the tool tip
    std::string tip_;
};
