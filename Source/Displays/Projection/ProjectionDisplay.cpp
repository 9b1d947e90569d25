#include "Displays/Projection/ProjectionDisplay.h"

#include <cmath>
#include <optional>

#include "Displays/Projection/AxisRequester.h"
#include "Displays/Projection/FrameMenu.h"
#include "Displays/Projection/OrbitPlaces.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionView.h"
#include "Displays/Projection/ScaleRequester.h"
#include "Displays/Projection/TrailMenu.h"
#include "Displays/TimeLine/TimeLineBar.h"
#include "Displays/Trajectories/LineClipping.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/PaceControl.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/CommonTexts.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/EpochWindow.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/History/ShownMoment.h"

namespace {

constexpr bigtime_t kPulse = 500'000;

// The picture keeps its coordinates while it is scrolled; beyond this they begin anew.
constexpr float kMaxPan = 16384.0f;

constexpr int32 kNamesChanged = kNameChanged | kSystemRemoved | kSystemAdded | kFocusEpochChanged;
constexpr int32 kTimesChanged = kTimeChanged | kFocusEpochChanged;

}  // namespace

ProjectionDisplay::ProjectionDisplay(BRect frame, const char* title, EpochPortal* portal,
                                     Benaphore* done, BLooper* owner, const DisplayContext& context)
    : TrajectoryDisplay(frame, title, portal, done, owner, context.texts),
      context_(context),
      dialogs_(this, &fields_, context_),
      keptTrails_(this),
      pictureSaver_(this, context.texts) {
    SetKind(kType, Texts().Text(kLabelProjection));
    RemoveMenuShortcuts();
}

ProjectionDisplay::~ProjectionDisplay() = default;

// The menus of this window have these keys.
void ProjectionDisplay::RemoveMenuShortcuts() {
    for (const int32 label :
         std::initializer_list<int32>{kLabelNewSimulationKey, kLabelOpenKey, kLabelSaveKey,
                                      kLabelGoKey, kLabelAnimationKey, kLabelEpochsKey})
        if (const char key = Texts().LowerKey(label); key != '\0')
            RemoveShortcut(static_cast<uint8>(key), 0);
}

int32 ProjectionDisplay::Init(const char* simulationName) {
    if (const int32 result = TrajectoryDisplay::Init(simulationName); result != 0) return result;
    menus_ = std::make_unique<DisplayMenus>(this, context_);
    AddChild(menus_->Bar());
    menus_->ShowOptions(fields_.options);
    ShowFrame();
    ApplyFields();
    pace_ = new PaceControl(Epoch(), context_.timeUnits, Texts());
    AddChild(pace_);
    View()->MakeFocus();
    if (shown_ != nullptr) {
        timeLine_ = new TimeLineBar({Epoch(), keptTrails_.History(), shown_, Owner()}, context_);
        AddChild(timeLine_);
    }
    SetPulseRate(kPulse);
    return 0;
}

void ProjectionDisplay::SetHistory(const RunHistory* history, ShownMoment* shown) {
    keptTrails_.SetHistory(history);
    shown_ = shown;
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
            keptTrails_.Erase(time_);
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
            if (timeLine_ != nullptr) timeLine_->SetRunning(isRunning);
            break;
        }
        case kFit:
            return FitAll();
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
        case TrailMenu::kSetLength:
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
            TrajectoryDisplay::MessageReceived(message);
    }
}

void ProjectionDisplay::DispatchMessage(BMessage* message, BHandler* handler) {
    if (message->what == B_PULSE && handler == this) {
        Pulse();
        if (timeLine_ != nullptr) timeLine_->Pulse();
    }
    TrajectoryDisplay::DispatchMessage(message, handler);
}

void ProjectionDisplay::FrameResized(float width, float height) {
    dialogs_.Resized();
    TrajectoryDisplay::FrameResized(width, height);
    keptTrails_.PaintUncovered(time_, labels_);
}

void ProjectionDisplay::Pulse() {
    dialogs_.Pulse();
    pace_->ShowWhetherBehind();
}

void ProjectionDisplay::Quit() {
    CancelAxisRequest();
    CancelScaleRequest();
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
    if (lock.IsLocked() && keptTrails_.IsDue()) ShowMap(false);
}

bool ProjectionDisplay::IsRunning() const {
    return !moment_.IsPast() && TrajectoryDisplay::IsRunning();
}

void ProjectionDisplay::ReadData(int32 reports, double* times, double* positions,
                                 double* velocities) {
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    // A run that comes to rest while the past is looked at.
    if (moment_.IsPast()) return;
    if (reports > 0) time_ = times[reports - 1];
    TrajectoryDisplay::ReadData(reports, times, positions, velocities);
}

void ProjectionDisplay::Redisplay(int32 changes) {
    const int32 told = changes;
    if (shown_ != nullptr && shown_->Get().epoch != drawn_) changes |= kAllOfFocusChanged;
    if ((changes & (kNamesChanged | kTimesChanged)) != 0) {
        {
            const ReadGuard guard(Epoch());
            const EpochPortal shown = TakeShown();
            if ((changes & kNamesChanged) != 0) TakeBodies(shown.BodiesInMassOrder());
            TakeTime();
        }
        Sky()->ShowTexts();
    }
    pace_->Redisplay(changes);
    TrajectoryDisplay::Redisplay(changes);
    if (moment_.epoch != drawn_)
        ShowOtherMoment();
    else if ((changes & kTimesChanged) != 0 && fields_.trail.IsLimited())
        ShowMap(false);
    if (timeLine_ != nullptr) timeLine_->Redisplay(told);
}

EpochPortal ProjectionDisplay::TakeShown() {
    if (shown_ != nullptr) moment_ = shown_->Get();
    keptTrails_.SetRun(moment_.run);
    return moment_.PortalFrom(*Epoch());
}

const AbEpoch& ProjectionDisplay::ShownEpoch() const {
    return moment_.IsPast() ? *moment_.epoch : *Epoch()->FocusEpoch();
}

// The trails end where the bodies are.
void ProjectionDisplay::ShowOtherMoment() {
    drawn_ = moment_.epoch;
    menus_->ShowMoment(moment_.IsPast());
    ShowMap(false);
}

void ProjectionDisplay::TakeTimeKey(const KeyInput& input) {
    if (timeLine_ != nullptr) static_cast<void>(timeLine_->TakeKey(input));
}

// During a run the time is that of what was handed over.
void ProjectionDisplay::TakeTime() {
    timeUval_ = ShownEpoch().TimeUval();
    if (IsRunning()) return;
    time_ = ShownEpoch().Time();
}

void ProjectionDisplay::TakeBodies(const std::vector<Body*>& bodies) {
    keptTrails_.ModelChanged();
    TakeTime();
    TakeReference(bodies);
    BodyLabels labels = ReadBodyLabels(ShownEpoch(), bodies);
    if (labels == labels_) return;
    labels_ = std::move(labels);
    menus_->ShowSystems(labels_, fields_.followed);
    menus_->Frame().ShowBodies(labels_, fields_.pair);
    ShowFrame();
}

// What is followed consists of other bodies, or of the same in another order.
void ProjectionDisplay::TakeReference(const std::vector<Body*>& bodies) {
    ViewFrame frame = ReadFrame(ShownEpoch(), bodies, fields_.followed, fields_.pair);
    const bool isPairGone = fields_.pair.IsOn() && !frame.turning;
    const bool isGone = frame.reference.empty() && fields_.followed != kNoSystemID;
    if (isPairGone || isGone) {
        // The view stays where it was, unless it turned.
        const ThreeVector origin = View()->Cache().LastReference();
        if (isPairGone) fields_.projection.center = {};
        if (frame.reference.empty()) fields_.projection.center += origin;
        if (isGone) fields_.followed = kNoSystemID;
        if (isPairGone) fields_.pair = {};
        menus_->ShowFollowed(labels_, fields_.followed);
        ShowFrame();
    }
    if (frame.turning != View()->Cache().GetTurning()) View()->SetTurning(frame.turning);
    if (frame.reference != View()->Cache().Reference())
        View()->SetReference(std::move(frame.reference));
}

// --- Axis and scale ---

void ProjectionDisplay::SetAxis(BMessage* message) {
    if (!CancelAxisRequest()) return;
    int32 axis = 0;
    if (message->FindInt32(AxisRequester::kAxisField, &axis) == B_OK && axis >= Projection::kX &&
        axis <= Projection::kZ && axis != fields_.projection.axis) {
        Center();
        fields_.projection.axis = axis;
        ShowMap(false);
    }
    SendReply(BMessage(kAxisDone));
}

void ProjectionDisplay::SetScale(BMessage* message) {
    const auto scale = dialogs_.TakeScale(*message);
    if (!scale) return;
    Center();
    fields_.projection.scale = *scale;
    ShowMap(true);
}

// The picture is drawn anew: the middle of the view becomes the middle of the projection.
void ProjectionDisplay::Center() {
    const BPoint anchor = View()->AnchorPoint();
    fields_.projection.Shift(anchor.x, anchor.y);
    View()->ScrollTo(DisplayCenter());
}

void ProjectionDisplay::ShowMap(bool isScaleChanged) {
    ClearLow();
    if (isScaleChanged) {
        MakeDiscDomains();
        dialogs_.TellScale();
    }
    SetLastDisp();
    keptTrails_.PaintAll(time_, labels_);
    DrawDiscs();
}

// --- What moves the view ---

void ProjectionDisplay::ZoomAbout(BPoint point, double factor) {
    const BPoint middle = View()->AnchorPoint();
    // What is followed stands still, wherever the pointer is; where it is not seen, nothing is
    // lost.
    if (fields_.followed != kNoSystemID)
        if (const BPoint place = Map(0.0, 0.0, 0.0); IsInside(place, View()->Bounds()))
            point = place;
    Center();
    fields_.projection.ZoomAbout({point.x - middle.x, point.y - middle.y}, factor);
    ShowMap(true);
}

void ProjectionDisplay::PanBy(float right, float down) {
    const BPoint anchor = View()->AnchorPoint();
    const BPoint to{anchor.x + right, anchor.y + down};
    View()->ScrollTo(to);
    if (std::abs(to.x) > kMaxPan || std::abs(to.y) > kMaxPan) {
        Center();
        return ShowMap(false);
    }
    keptTrails_.PaintUncovered(time_, labels_);
    // What was uncovered may hold bodies.
    DrawDiscs();
}

// Where the bodies were and will be, and not only where they are.
void ProjectionDisplay::FitAll() {
    std::optional<OrbitForecast> forecast;
    {
        const ReadGuard guard(Epoch());
        forecast.emplace(moment_.PortalFrom(*Epoch()).BodiesInMassOrder());
    }
    const std::vector<ThreeVector> places =
        OrbitPlaces(View()->Cache(), labels_, *forecast, keptTrails_.Take(time_, labels_));
    const BRect bounds = View()->Bounds();
    Center();
    fields_.projection.Fit(places, bounds.Width(), bounds.Height());
    ShowMap(true);
}

// --- The frame ---

void ProjectionDisplay::SetFrame(int64 followed, const TurningPair& pair) {
    if (followed == fields_.followed && pair == fields_.pair) return ShowFrame();
    Center();
    // What stands still comes to the middle; where nothing does any more, the view stays where it
    // was.
    const ThreeVector before = fields_.pair.IsOn() ? ThreeVector{} : fields_.projection.center;
    const bool isFixed = followed == kNoSystemID && !pair.IsOn();
    fields_.projection.center = isFixed ? before + View()->Cache().LastReference() : ThreeVector{};
    fields_.followed = followed;
    fields_.pair = pair;
    {
        const ReadGuard guard(Epoch());
        TakeReference(moment_.PortalFrom(*Epoch()).BodiesInMassOrder());
    }
    menus_->ShowFollowed(labels_, fields_.followed);
    ShowFrame();
    ShowMap(false);
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
    ShowMap(false);
}

void ProjectionDisplay::ApplyFields() {
    keptTrails_.SetLength(fields_.trail);
    menus_->Trail().ShowLength(fields_.trail);
    View()->SetMarked(fields_.options.marks);
}

void ProjectionDisplay::FollowBody(int32 body) {
    if (body >= 0 && body < static_cast<int32>(labels_.bodies.size()))
        Follow(labels_.bodies[static_cast<std::size_t>(body)].id);
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
    if (fields_.options.scaleBar) {
        items.push_back(
            MakeScaleBar(fields_.projection.scale, dialogs_.LengthUnit(), *context_.distanceUnits));
    }
    if (fields_.options.time)
        items.push_back(
            MakeTimeText(Texts().Label(kLabelTimeIs), time_, timeUval_, *context_.timeUnits));
    // Names take the room that is left.
    if (pointedAt >= 0 && pointedAt < static_cast<int32>(labels_.bodies.size()))
        AddChosenName(*View(), labels_, pointedAt, &items);
    if (fields_.options.names) AddNames(*View(), labels_, pointedAt, &items);
    return items;
}

void ProjectionDisplay::ToggleOption(bool DisplayOptions::*option) {
    fields_.options.*option = !(fields_.options.*option);
    menus_->ShowOptions(fields_.options);
    Sky()->ShowTexts();
}
