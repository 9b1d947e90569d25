#include "Displays/TimeLine/DisplayFoot.h"

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/PaceControl.h"
#include "Platform/Interface/Handles/BGroupView.h"

namespace {

constexpr bigtime_t kPulse = 500'000;
constexpr float kInset = 8.0f;  // of the dial from the window's borders

}  // namespace

DisplayFoot::DisplayFoot(Display* display, const TimeLineBar::Source& source,
                         const DisplayContext& context)
    : pace_(new PaceControl(source.portal, context.timeUnits, *context.texts)) {
    auto* const foot = new BGroupView("foot", B_HORIZONTAL, 0.0f);
    foot->AddSpace(kInset);
    foot->AddChild(pace_);
    foot->AddSpace(kInset);
    display->AddChild(foot);
    if (source.shown != nullptr) {
        timeLine_ = new TimeLineBar(source, context);
        display->AddChild(timeLine_);
    }
    display->SetPulseRate(kPulse);
}

void DisplayFoot::SetRunning(bool isRunning) {
    if (timeLine_ != nullptr) timeLine_->SetRunning(isRunning);
}

void DisplayFoot::Pulse() {
    pace_->ShowWhetherBehind();
    if (timeLine_ != nullptr) timeLine_->Pulse();
}

void DisplayFoot::Redisplay(int32 changes) {
    pace_->Redisplay(changes);
    if (timeLine_ != nullptr) timeLine_->Redisplay(changes);
}

void DisplayFoot::TakeKey(const KeyInput& input) {
    if (timeLine_ != nullptr) static_cast<void>(timeLine_->TakeKey(input));
}
