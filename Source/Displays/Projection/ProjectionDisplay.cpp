#include "Displays/Projection/ProjectionDisplay.h"

#include <cmath>

#include "Displays/Projection/AxisRequester.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionView.h"
#include "Displays/Projection/ScaleRequester.h"
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
        case kToggleNames:
            return ToggleOption(&DisplayOptions::names);
        case kToggleScaleBar:
            return ToggleOption(&DisplayOptions::scaleBar);
        case kToggleTime:
            return ToggleOption(&DisplayOptions::time);
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
    if (moment_.epoch != drawn_) ShowOtherMoment();
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

void ProjectionDisplay::TakeTime() {
    time_ = ShownEpoch().Time();
    timeUval_ = ShownEpoch().TimeUval();
}

void ProjectionDisplay::TakeBodies(const std::vector<Body*>& bodies) {
    TakeTime();
    TakeReference(bodies);
    BodyLabels labels = ReadBodyLabels(ShownEpoch(), bodies);
    if (labels == labels_) return;
    labels_ = std::move(labels);
    menus_->ShowSystems(labels_, fields_.followed);
}

// What is followed consists of other bodies, or of the same in another order.
void ProjectionDisplay::TakeReference(const std::vector<Body*>& bodies) {
    std::vector<TrajectoryCache::Member> members =
        ReadMembers(ShownEpoch(), bodies, fields_.followed);
    if (members.empty() && fields_.followed != kNoSystemID) {
        // It is gone: the view stays where it was.
        fields_.projection.center += View()->Cache().LastReference();
        fields_.followed = kNoSystemID;
        menus_->ShowFollowed(labels_, fields_.followed);
    }
    if (members != View()->Cache().Reference()) View()->SetReference(std::move(members));
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

void ProjectionDisplay::FitAll() {
    const TrajectoryCache& cache = View()->Cache();
    std::vector<ThreeVector> places;
    places.reserve(static_cast<std::size_t>(cache.CountBodies()));
    for (int32 body = 0; body < cache.CountBodies(); body++)
        places.push_back(cache.LastPosition(body) - cache.LastReference());
    const BRect bounds = View()->Bounds();
    Center();
    fields_.projection.Fit(places, bounds.Width(), bounds.Height());
    ShowMap(true);
}

void ProjectionDisplay::Follow(int64 system) {
    if (system == fields_.followed) return;
    Center();
    fields_.projection.center = system == kNoSystemID
                                    ? fields_.projection.center + View()->Cache().LastReference()
                                    : ThreeVector{};
    fields_.followed = system;
    {
        const ReadGuard guard(Epoch());
        TakeReference(moment_.PortalFrom(*Epoch()).BodiesInMassOrder());
    }
    menus_->ShowFollowed(labels_, fields_.followed);
    ShowMap(false);
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
