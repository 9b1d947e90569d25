#include "Displays/TimeLine/TimeLineBar.h"

#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/TimeLine/TimeLinePainter.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/ShortestOrbit.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/TimeLine.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/ShownMoment.h"

namespace {

constexpr uint32 kPlayForward = FourCC("plfw");
constexpr uint32 kPlayBackward = FourCC("plbw");
constexpr uint32 kStopPlaying = FourCC("plst");

constexpr int32 kRunsChanged =
    kTimeChanged | kFocusEpochChanged | kEpochRenamed | kEpochAdded | kEpochRemoved;

}  // namespace

TimeLineBar::TimeLineBar(const Source& source, const DisplayContext& context)
    : CanvasView("time line", Anchor::kLeftTop, TimeLinePainter::kBackground),
      source_(source),
      context_(context),
      player_(this, source.shown) {
    SetExplicitMinSize(-1.0f, TimeLinePainter::kHeight);
    SetExplicitMaxSize(-1.0f, TimeLinePainter::kHeight);
    SetAccessibleName(context_.texts->Text(kTextTimeLine));
    BuildMenu();
}

void TimeLineBar::BuildMenu() {
    menu_ = new BPopUpMenu("Time line", false, false);
    const auto add = [this](int32 label, uint32 what) {
        auto* const item = new BMenuItem(context_.texts->Text(label), new BMessage(what));
        menu_->AddItem(item);
        return item;
    };
    add(kTextBranchHere, kBranchHere)->SetTarget(source_.owner);
    add(kTextBackToNow, kBackToNow)->SetTarget(source_.owner);
    add(kTextMakeRunAgain, kMakeRunAgain)->SetTarget(source_.owner);
    add(kTextStopMaking, kStopMaking)->SetTarget(this);
    menu_->AddSeparatorItem();
    for (const auto& [label, what] :
         {std::pair(kTextPlayForward, kPlayForward), std::pair(kTextPlayBackward, kPlayBackward),
          std::pair(kTextStopPlaying, kStopPlaying)})
        add(label, what)->SetTarget(this);
    Adopt(menu_);
}

void TimeLineBar::AttachedToWindow() {
    Refresh();
}

// --- What is shown ---

void TimeLineBar::Redisplay(int32 changes) {
    if ((changes & kRunsChanged) != 0)
        Refresh();
    else if ((changes & kMomentChanged) != 0)
        ShowMoment();
}

void TimeLineBar::Refresh() {
    {
        const ReadGuard guard(source_.portal);
        line_ = ReadTimeLine(*source_.portal, *source_.history);
        timeUval_ = source_.portal->FocusEpoch()->TimeUval();
    }
    ShowMoment();
}

void TimeLineBar::ShowMoment() {
    const Moment moment = source_.shown->Get();
    isPast_ = moment.IsPast();
    moment_ = isPast_ ? moment.epoch->Time() : line_.End();
    Draw();
}

void TimeLineBar::SetRunning(bool isRunning) {
    isRunning_ = isRunning;
    if (isRunning) player_.Stop();
    Refresh();
}

std::string TimeLineBar::TextOf(double time) const {
    return MakeTimeText("", time, timeUval_, *context_.timeUnits).text;
}

void TimeLineBar::Draw() {
    const TimeLinePainter painter(line_, Bounds());
    painter.Draw(&LowerLayer(), moment_, isPast_);
    SyncLayers();
    std::vector<OverlayItem> texts;
    const InterfaceTexts& labels = *context_.texts;
    std::string shown = labels.Label(kTextNoRunKept);
    if (!line_.IsEmpty())
        shown = FillIn(labels.Label(isPast_ ? kTextPast : kTextNow),
                       {TextOf(isPast_ || isRunning_ ? moment_ : line_.now)});
    painter.AddNames(*this, &texts);
    painter.AddTimes(*this, line_.IsEmpty() ? "" : TextOf(line_.Start()),
                     line_.IsEmpty() ? "" : TextOf(line_.End()), shown, isPast_, &texts);
    SetOverlay(std::move(texts));
    Sync();
    TellValue(shown);
}

void TimeLineBar::TellValue(const std::string& value) {
    if (value == value_) return;
    value_ = value;
    SetAccessibleDescription(value_.c_str());
}

std::string TimeLineBar::TipOf(const TimeLine::Mark& mark) const {
    if (mark.kind == TimeLine::Mark::Kind::kEpoch) return mark.name;
    return FillIn(context_.texts->Label(kTextMerger), {mark.other, mark.name});
}

void TimeLineBar::TellMark(float x) {
    const TimeLinePainter painter(line_, Bounds());
    std::string tip;
    for (const TimeLine::Mark* const mark : painter.MarksAt(x))
        tip += (tip.empty() ? "" : "\n") + TipOf(*mark);
    const TimeLine::Run* const run = line_.RunAt(painter.TimeAt(x));
    const int32 text = run != nullptr && !run->isKept ? kTextNotMade : kTextTimeLineTip;
    if (tip.empty()) tip = context_.texts->Label(text);
    if (tip == tip_) return;
    tip_ = std::move(tip);
    SetToolTip(tip_.c_str());
}

void TimeLineBar::FrameResized(BRect /*bounds*/) {
    Draw();
}

// --- What the user does ---

void TimeLineBar::PauseRun() {
    player_.Stop();
    if (isRunning_) WindowServer::Deliver(source_.owner, BMessage(kPauseForUser));
}

// What Auto comes to the calculator knows when a run has begun; until then it is looked up.
double TimeLineBar::SecondsPerSecond() const {
    const AbCalculator& calculator = *source_.portal->GetCalculator();
    if (const double known = calculator.SecondsPerSecond(); known > 0.0) return known;
    const ReadGuard guard(source_.portal);
    return AutoPace(source_.portal->BodiesInMassOrder());
}

void TimeLineBar::SeekTo(double time) {
    if (line_.IsEmpty()) return;
    source_.shown->SeekTo(time);
    ShowMoment();  // the next key goes on from there
}

void TimeLineBar::MouseDown(const MouseInput& input) {
    if ((input.buttons & B_SECONDARY_MOUSE_BUTTON) != 0) return menu_->Go();
    if ((input.buttons & B_PRIMARY_MOUSE_BUTTON) == 0) return;
    PauseRun();
    isDragged_ = true;
    Refresh();  // a run that has just begun may not be on the line yet
    SeekTo(TimeLinePainter(line_, Bounds()).TimeAt(input.where.x));
}

void TimeLineBar::MouseUp(const MouseInput& /*input*/) {
    isDragged_ = false;
}

void TimeLineBar::MouseMoved(const MouseInput& input, Transit /*transit*/) {
    if (isDragged_)
        SeekTo(TimeLinePainter(line_, Bounds()).TimeAt(input.where.x));
    else
        TellMark(input.where.x);
}

void TimeLineBar::StepPictures(int32 direction) {
    PauseRun();
    SeekTo(moment_ + direction * MomentPlayer::StepIn(line_, SecondsPerSecond()));
}

bool TimeLineBar::TakeKey(const KeyInput& input) {
    const bool isShifted = (input.modifiers & B_SHIFT_KEY) != 0;
    switch (input.key) {
        case B_LEFT_ARROW:
        case B_RIGHT_ARROW: {
            const bool isForward = input.key == B_RIGHT_ARROW;
            if (!isShifted) {
                StepPictures(isForward ? 1 : -1);
                return true;
            }
            PauseRun();
            source_.shown->StepReport(isForward);
            return true;
        }
        case B_HOME:
            PauseRun();
            SeekTo(line_.Start());
            return true;
        case B_END:
            player_.Stop();
            source_.shown->BackToNow();
            return true;
        case B_SPACE:
            player_.Stop();
            WindowServer::Deliver(source_.owner, BMessage(kTogglePause));
            return true;
        case '.':
            Play(1);
            return true;
        case ',':
            Play(-1);
            return true;
        case B_ESCAPE:
            StopMaking();
            return true;
        default:
            return false;
    }
}

// The simulation may be waiting for what is stopped, and would not hear of it.
void TimeLineBar::StopMaking() {
    player_.Stop();
    source_.shown->StopMaking();
    WindowServer::Deliver(source_.owner, BMessage(kStopMaking));
}

void TimeLineBar::Play(int32 direction) {
    PauseRun();
    player_.Start(direction, line_);
}

void TimeLineBar::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kPlayForward:
            return Play(1);
        case kPlayBackward:
            return Play(-1);
        case kStopPlaying:
            return player_.Stop();
        case kStopMaking:
            return StopMaking();
        case MomentPlayer::kTick:
            return player_.Tick(line_, SecondsPerSecond());
        default:
            CanvasView::MessageReceived(message);
    }
}
