#include "Displays/Projection/ProjectionDisplay.h"

#include "Displays/Projection/AxisRequester.h"
#include "Displays/Projection/FrameMenu.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionView.h"
#include "Displays/Projection/ScaleRequester.h"
#include "Displays/Projection/TrailLengthRequester.h"
#include "Displays/Projection/TrailMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BScrollView.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/CommonTexts.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/EpochWindow.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Resources/Views.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr int32 kNamesChanged = kNameChanged | kSystemRemoved | kSystemAdded | kFocusEpochChanged;
constexpr int32 kTimesChanged = kTimeChanged | kFocusEpochChanged;

}  // namespace

ProjectionDisplay::ProjectionDisplay(BRect frame, const char* title, EpochPortal* portal,
                                     Benaphore* done, BLooper* owner, const DisplayContext& context)
    : TrajectoryDisplay(frame, title, portal, done, owner, context.texts),
      context_(context),
      dialogs_(this, &fields_, context_),
      shown_(Epoch()),
      keptTrails_(this),
      mover_(this, &fields_, &shown_, &dialogs_, &keptTrails_),
      compared_(this, &shown_, &mover_, &dialogs_, context_),
      pictureSaver_(this, context.texts) {
    keptTrails_.SetComparison(&compared_.Comparison());
    SetKind(kType, Texts().Text(kLabelProjection));
    DisplayMenus::RemoveShortcuts(this);
}

ProjectionDisplay::~ProjectionDisplay() = default;

int32 ProjectionDisplay::Init(const char* simulationName) {
    if (const int32 result = TrajectoryDisplay::Init(simulationName); result != 0) return result;
    menus_ = std::make_unique<DisplayMenus>(this, context_);
    AddChild(menus_->Bar());
    compared_.SetMenu(&menus_->Compare());
    menus_->ShowOptions(fields_.options);
    ShowFrame();
    ApplyFields();
    foot_ = std::make_unique<DisplayFoot>(
        this, TimeLineBar::Source{Epoch(), keptTrails_.History(), shown_.Source(), Owner()},
        context_);
    ScrollView()->SetBarNames(Texts().Text(kLabelAcross), Texts().Text(kLabelUp));
    ScrollView()->SetScroller([this](float right, float down) { PanBy(right, down); });
    View()->MakeFocus();
    hands_.SetView(Sky());
    return 0;
}

void ProjectionDisplay::SetHistory(const RunHistory* history, ShownMoment* shown) {
    keptTrails_.SetHistory(history);
    compared_.SetHistory(history);
    film_.SetHistory(history);
    shown_.SetSource(shown);
}

TrajectoryView* ProjectionDisplay::MakeView() {
    return new ProjectionView(this);
}

ProjectionView* ProjectionDisplay::Sky() const {
    return static_cast<ProjectionView*>(View());
}

// --- Messages ---

void ProjectionDisplay::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kRequestScale:
            return RequestScale();
        case kRequestAxis:
            return RequestAxis();
        case kErase:
            keptTrails_.Erase(shown_.Time());
            ClearLow();
            return DrawDiscs();
        case KeptTrailsPainter::kGoOn:
            return keptTrails_.GoOn();
        case ScaleRequester::kSetScale:
            return SetScale(message);
        case ScaleRequester::kCancel:
            CancelScaleRequest();
            break;
        case AxisRequester::kSetAxis:
            return SetAxis(message);
        case AxisRequester::kCancel:
            CancelAxisRequest();
            break;
        case kRunStopped:
        case kRunStarted: {
            const bool isRunning = message->what == kRunStarted;
            menus_->SetGoLabel(Texts().Text(isRunning ? kLabelPause : kLabelGo));
            foot_->SetRunning(isRunning);
            break;
        }
        case kFit:
            return mover_.FitAll();
        case kFollow: {
            int64 system = kNoSystemID;
            if (message->FindInt64(kFollowedSystem, &system) == B_OK) Follow(system);
            break;
        }
        case FrameMenu::kFixed:
            return SetFrame(kNoSystemID, {});
        case FrameMenu::kBarycenter:
            return SetFrame(kRootSystemID, {});
        case FrameMenu::kFollowedBody:
            return SetFrame(fields_.followed, {});
        case FrameMenu::kTurn: {
            int64 body = kNoSystemID;
            if (message->FindInt64(FrameMenu::kSystem, &body) == B_OK) TurnWith(body);
            break;
        }
        case TrailMenu::kRequestLength:
            return dialogs_.RequestTrail();
        case TrailLengthRequester::kCancel:
            dialogs_.CancelTrail();
            break;
        case TrailMenu::kSetLength:
            dialogs_.CancelTrail();
            return SetTrailLength(TrailMenu::Chosen(*message, fields_.trail));
        case TrailMenu::kToggleFading: {
            TrailLength length = fields_.trail;
            length.isFading = !length.isFading;
            return SetTrailLength(length);
        }
        case kToggleNames:
            return ToggleOption(&DisplayOptions::names);
        case kToggleScaleBar:
            return ToggleOption(&DisplayOptions::scaleBar);
        case kToggleTime:
            return ToggleOption(&DisplayOptions::time);
        case kToggleMarks:
            ToggleOption(&DisplayOptions::marks);
            return ApplyFields();
        case kSavePicture:
            return pictureSaver_.Request();
        case PictureSaver::kNamed:
            return pictureSaver_.Save(*message, *View());
        default:
            if (film_.Handle(*message, *View(), dialogs_.LengthUnit())) return;
            if (!compared_.Handle(*message) && !mover_.Handle(*message) && !hands_.Handle(*message))
                TrajectoryDisplay::MessageReceived(message);
    }
}

void ProjectionDisplay::DispatchMessage(BMessage* message, BHandler* handler) {
    if (message->what == B_PULSE && handler == this) Pulse();
    TrajectoryDisplay::DispatchMessage(message, handler);
}

void ProjectionDisplay::FrameResized(float width, float height) {
    dialogs_.Resized();
    TrajectoryDisplay::FrameResized(width, height);
    keptTrails_.PaintUncovered(shown_.Time(), shown_.Labels());
}

void ProjectionDisplay::Pulse() {
    dialogs_.Pulse();
    foot_->Pulse();
    ShowBars(keptTrails_.TrailExtent());
    compared_.Measure();
}

void ProjectionDisplay::Quit() {
    dialogs_.CancelAll();
    film_.Close();
    compared_.End();
    TrajectoryDisplay::Quit();
}

// --- The model ---

BPoint ProjectionDisplay::Map(double x, double y, double z) {
    return fields_.projection.Map(DisplayCenter(), x, y, z);
}

float ProjectionDisplay::DiscSize(double radius) {
    return fields_.projection.DiscSize(radius);
}

void ProjectionDisplay::DisplayData() {
    TrajectoryDisplay::DisplayData();
    const BAutolock lock(this);
    if (!lock.IsLocked() || !keptTrails_.IsDue()) return;
    ClearLow();
    keptTrails_.PaintAll(shown_.Time(), shown_.Labels());
    DrawDiscs();
}

bool ProjectionDisplay::IsRunning() const {
    return shown_.IsRunning();
}

void ProjectionDisplay::PrepareForGo(int32 reportsPerSegment) {
    TrajectoryDisplay::PrepareForGo(reportsPerSegment);
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    const ReadGuard guard(Epoch());
    motion_.Begin(Epoch()->BodiesInMassOrder().size());
}

void ProjectionDisplay::ReadData(int32 reports, double* times, double* positions,
                                 double* velocities) {
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    // A run that comes to rest while the past is looked at.
    if (shown_.IsPast()) return;
    if (reports > 0) shown_.SetTime(times[reports - 1]);
    motion_.Take(reports, positions, velocities);
    TrajectoryDisplay::ReadData(reports, times, positions, velocities);
}

void ProjectionDisplay::Redisplay(int32 changes) {
    const int32 told = changes;
    if (shown_.IsStale()) changes |= kAllOfFocusChanged;
    bool isRestored = false;
    if ((changes & (kNamesChanged | kTimesChanged)) != 0) {
        {
            const ReadGuard guard(Epoch());
            const EpochPortal shown = TakeShown();
            if ((changes & kNamesChanged) != 0) TakeBodies(shown.BodiesInMassOrder());
            shown_.TakeTime(IsRunning());
            isRestored = shown_.TakeWhetherRestored() && keptTrails_.History() != nullptr;
        }
        Sky()->ShowTexts();
    }
    hands_.ModelChanged();
    menus_->Redisplay(told, Epoch());
    TrajectoryDisplay::Redisplay(changes);
    const bool areOthersKept = (told & kRunsKeptChanged) == kRunsKeptChanged;
    if (areOthersKept) keptTrails_.ModelChanged();
    compared_.Redisplay(told);
    if (shown_.TakeWhetherMoved())
        ShowOtherMoment();
    else if (isRestored || areOthersKept ||
             ((changes & kTimesChanged) != 0 && keptTrails_.ChangeAtEnds()))
        mover_.Redraw(false);
    foot_->Redisplay(told);
}

EpochPortal ProjectionDisplay::TakeShown() {
    shown_.TakeMoment();
    keptTrails_.SetRun(shown_.GetMoment().run);
    return shown_.Portal();
}

// The trails end where the bodies are.
void ProjectionDisplay::ShowOtherMoment() {
    menus_->ShowMoment(shown_.IsPast());
    mover_.Redraw(false);
}

void ProjectionDisplay::TakeBodies(const std::vector<Body*>& bodies) {
    keptTrails_.ModelChanged();
    shown_.TakeTime(IsRunning());
    if (mover_.TakeReference(bodies)) ShowFollowed();
    if (!shown_.TakeLabels(bodies)) return;
    menus_->ShowSystems(shown_.Labels(), fields_.followed);
    menus_->Frame().ShowBodies(shown_.Labels(), fields_.pair);
    ShowFrame();
}

// --- Axis and scale ---

void ProjectionDisplay::SetAxis(BMessage* message) {
    if (!CancelAxisRequest()) return;
    int32 axis = 0;
    if (message->FindInt32(AxisRequester::kAxisField, &axis) == B_OK && axis >= Projection::kX &&
        axis <= Projection::kZ)
        mover_.LookAlong(axis);
    SendReply(BMessage(kAxisDone));
}

void ProjectionDisplay::SetScale(BMessage* message) {
    if (const auto scale = dialogs_.TakeScale(*message)) mover_.SetScale(*scale);
}

// --- The frame ---

void ProjectionDisplay::SetFrame(int64 followed, const TurningPair& pair) {
    // What is followed already comes back to the middle.
    if (followed == kNoSystemID && fields_.followed == kNoSystemID && pair == fields_.pair)
        return ShowFrame();
    mover_.SetFrame(followed, pair);
    {
        const ReadGuard guard(Epoch());
        static_cast<void>(mover_.TakeReference(shown_.Portal().BodiesInMassOrder()));
    }
    hands_.ModelChanged();
    ShowFollowed();
    mover_.Redraw(false);
}

void ProjectionDisplay::ShowFollowed() {
    menus_->ShowFollowed(shown_.Labels(), fields_.followed);
    ShowFrame();
}

void ProjectionDisplay::ShowFrame() {
    menus_->Frame().ShowFrame(fields_.followed, fields_.pair);
}

void ProjectionDisplay::TurnWith(int64 body) {
    const TurningPair pair = FindPair(Epoch(), fields_.followed, body);
    if (pair.IsOn()) SetFrame(fields_.followed, pair);
}

// --- Trails ---

void ProjectionDisplay::SetTrailLength(const TrailLength& length) {
    fields_.trail = length;
    ApplyFields();
    mover_.Redraw(false);
}

void ProjectionDisplay::ApplyFields() {
    keptTrails_.SetLength(fields_.trail);
    menus_->Trail().ShowLength(fields_.trail);
    View()->SetMarked(fields_.options.marks);
}

void ProjectionDisplay::FollowBody(int32 body) {
    const std::vector<BodyLabels::Label>& bodies = shown_.Labels().bodies;
    if (body >= 0 && body < static_cast<int32>(bodies.size()))
        Follow(bodies[static_cast<std::size_t>(body)].id);
}

// --- Archive ---

status_t ProjectionDisplay::MiniArchive(BMessage* archive) const {
    ProjectionFields fields = fields_;
    dialogs_.AddPlaces(&fields);
    const BPoint anchor = View()->AnchorPoint();
    fields.projection.Shift(anchor.x, anchor.y);
    const status_t status = TrajectoryDisplay::MiniArchive(archive);
    return status == B_OK ? fields.Write(archive) : status;
}

// The picture, which is empty still, is drawn when the display is shown.
status_t ProjectionDisplay::Regenerate(const BMessage& archive) {
    TrajectoryDisplay::Regenerate(archive);
    const status_t status = fields_.Read(archive);
    menus_->ShowOptions(fields_.options);
    ApplyFields();
    return status;
}

// --- Texts ---

std::vector<OverlayItem> ProjectionDisplay::MakeTexts(int32 pointedAt) const {
    std::vector<OverlayItem> items;
    if (fields_.options.scaleBar)
        items.push_back(
            MakeScaleBar(fields_.projection.scale, dialogs_.LengthUnit(), *context_.distanceUnits));
    if (fields_.options.time)
        items.push_back(MakeTimeText(Texts().Label(kLabelTimeIs), shown_.Time(), shown_.TimeUval(),
                                     *context_.timeUnits));
    compared_.AddTexts(&items);
    // Names take the room that is left.
    const BodyLabels& labels = shown_.Labels();
    if (pointedAt >= 0 && pointedAt < static_cast<int32>(labels.bodies.size()))
        AddChosenName(*View(), labels, pointedAt, &items);
    if (fields_.options.names) AddNames(*View(), labels, pointedAt, &items);
    compared_.AddRings(&items);  // they leave names their room
    return items;
}

void ProjectionDisplay::ToggleOption(bool DisplayOptions::*option) {
    fields_.options.*option = !(fields_.options.*option);
    menus_->ShowOptions(fields_.options);
    Sky()->ShowTexts();
}
