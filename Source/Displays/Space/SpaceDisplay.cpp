#include "Displays/Space/SpaceDisplay.h"

#include <cmath>
#include <numbers>

#include "Displays/Projection/BodiesMenu.h"
#include "Displays/Projection/BodyLabels.h"
#include "Displays/Projection/LookMenu.h"
#include "Displays/Projection/ViewFrame.h"
#include "Displays/Projection/ViewPlane.h"
#include "Displays/Space/SpaceMenus.h"
#include "Displays/Space/SpaceView.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessageRunner.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/EpochWindow.h"
#include "Resources/SimulationWindow.h"
#include "Resources/Space.h"

namespace {

// Between two pictures of a run.
constexpr bigtime_t kFrame = 16'000;
constexpr uint32 kTick = FourCC("sptk");
// A camera that has not moved for so long rests.
constexpr bigtime_t kRestTime = 150'000;
constexpr uint32 kRest = FourCC("spre");

constexpr double kDegree = std::numbers::pi / 180.0;
// A drag along the picture's smaller side turns by half a turn.
constexpr double kTurnOfFocus = std::numbers::pi * Camera::kFocus;
// At first, so that depth is seen.
constexpr double kFirstAzimuth = -60.0 * kDegree;
constexpr double kFirstElevation = 30.0 * kDegree;

}  // namespace

SpaceDisplay::SpaceDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                           BLooper* owner, const DisplayContext& context)
    : Display(frame, title, B_DOCUMENT_WINDOW, portal, done, owner, context.texts),
      context_(context),
      shown_(portal),
      pictureSaver_(this, context.texts) {
    SetKind(kType, Texts().Text(kLabelSpace));
    fields_.camera.LookFrom(kFirstAzimuth, kFirstElevation);
    units_.distances = context_.distanceUnits;
    units_.distance = scene_.lengthUnit;
    units_.times = context_.timeUnits;
    units_.timePrefix = Texts().Label(kLabelTimeIs);
    DisplayMenus::RemoveShortcuts(this);
}

SpaceDisplay::~SpaceDisplay() = default;

void SpaceDisplay::SetHistory(const RunHistory* history, ShownMoment* shown) {
    trails_.SetHistory(history);
    film_.SetHistory(history);
    shown_.SetSource(shown);
}

int32 SpaceDisplay::Init(const char* simulationName) {
    if (const int32 result = Display::Init(simulationName); result != 0) return result;
    menus_ = std::make_unique<SpaceMenus>(this, context_);
    AddChild(menus_->Bar());
    menus_->ShowOptions(fields_);
    view_ = new SpaceView(this);
    view_->SetAccessibleName(Texts().Text(kLabelSpaceView));
    view_->SetStretch(1, 1);
    AddChild(view_);
    hands_.SetView(view_);
    foot_ = std::make_unique<DisplayFoot>(
        this, TimeLineBar::Source{Epoch(), trails_.History(), shown_.Source(), Owner()}, context_);
    view_->MakeFocus();
    return 0;
}

void SpaceDisplay::Quit() {
    clock_.reset();
    film_.Close();
    rest_.reset();
    Display::Quit();
}

// --- Messages ---

void SpaceDisplay::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kTick:
            return Tick();
        case kRest:
            return CameraRests();
        case kPauseRun:
            return RunStopped();
        case kUnPauseRun:
            return RunStarted();
        case kFit:
            return FitAll();
        case kFollow: {
            int64 system = kNoSystemID;
            if (message->FindInt64(kFollowedSystem, &system) == B_OK) Follow(system);
            return;
        }
        case LookMenu::kLook: {
            int32 axis = 0;
            if (message->FindInt32(LookMenu::kAxis, &axis) == B_OK) LookAlong(axis);
            return;
        }
        case LookMenu::kLookOnto: {
            int64 body = kNoSystemID;
            if (message->FindInt64(BodiesMenu::kSystem, &body) == B_OK) LookOnto(body);
            return;
        }
        case SpaceMenus::kPerspective:
            return TogglePerspective();
        case kSavePicture:
            return pictureSaver_.Request();
        case PictureSaver::kNamed:
            return pictureSaver_.Save(*message, *view_);
        default:
            if (bool SpaceOptions::*const option = SpaceMenus::OptionOf(*message))
                return ToggleOption(option);
            if (film_.Handle(*message, *view_, units_.distance)) return;
            if (hands_.Handle(*message)) return;
            Display::MessageReceived(message);
    }
}

void SpaceDisplay::DispatchMessage(BMessage* message, BHandler* handler) {
    if (message->what == B_PULSE && handler == this) foot_->Pulse();
    Display::DispatchMessage(message, handler);
}

void SpaceDisplay::RunStarted() {
    menus_->SetGoLabel(Texts().Text(kLabelPause));
    foot_->SetRunning(true);
    clock_ = std::make_unique<BMessageRunner>(BMessenger(this), BMessage(kTick), kFrame);
}

void SpaceDisplay::RunStopped() {
    menus_->SetGoLabel(Texts().Text(kLabelGo));
    foot_->SetRunning(false);
    clock_.reset();
    hands_.ModelChanged();
    Repaint();
}

void SpaceDisplay::Tick() {
    if (hasNews_.exchange(false)) Repaint();
}

// --- The model ---

void SpaceDisplay::PrepareForGo(int32 reportsPerSegment) {
    Display::PrepareForGo(reportsPerSegment);
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    const ReadGuard guard(Epoch());
    shown_.TakeMoment();
    TakeBodies(shown_.Portal().BodiesInMassOrder());
    // The calculator's, whatever is shown.
    const std::size_t count = Epoch()->BodiesInMassOrder().size();
    const std::lock_guard reportLock(reportMutex_);
    report_ = {};
    runBodies_ = count;
}

void SpaceDisplay::ReadData(int32 reports, double* times, double* positions, double* velocities) {
    if (reports <= 0) return;
    const std::lock_guard lock(reportMutex_);
    const std::size_t coordinates = 3 * runBodies_;
    const std::size_t last = static_cast<std::size_t>(reports - 1);
    report_.time = times[last];
    report_.positions.assign(positions + last * coordinates, positions + (last + 1) * coordinates);
    report_.velocities.assign(velocities + last * coordinates,
                              velocities + (last + 1) * coordinates);
}

void SpaceDisplay::Redisplay(int32 changes) {
    {
        const ReadGuard guard(Epoch());
        shown_.TakeMoment();
        TakeBodies(shown_.Portal().BodiesInMassOrder());
    }
    hands_.ModelChanged();
    menus_->ShowMoment(shown_.IsPast());
    foot_->Redisplay(changes);
    Repaint();
}

void SpaceDisplay::TakeBodies(const std::vector<Body*>& bodies) {
    scene_.TakeBodies(bodies);
    positions_.clear();
    velocities_.clear();
    for (const SpaceBody& body : scene_.bodies) {
        positions_.push_back(body.position);
        velocities_.push_back(body.velocity);
    }
    shown_.TakeTime(false);
    scene_.time = shown_.Time();
    scene_.edited = shown_.Portal().FocusSystem()->ID();
    units_.time = shown_.TimeUval();
    if (shown_.TakeLabels(bodies)) menus_->ShowSystems(shown_.Labels(), fields_.followed);
    TakeReference(bodies);
    TakeReport();
    MoveToReference();
}

// Of what is followed the bodies may be others, or in another order.
void SpaceDisplay::TakeReference(const std::vector<Body*>& bodies) {
    reference_ = ReadMembers(shown_.Epoch(), bodies, fields_.followed);
    if (reference_.empty() && fields_.followed != kNoSystemID) {
        fields_.followed = kNoSystemID;
        menus_->ShowFollowed(shown_.Labels(), fields_.followed);
        needsFit_ = true;
    }
    std::vector<TrailSource::Member> members;
    for (const TrajectoryCache::Member& member : reference_)
        members.push_back({scene_.bodies[static_cast<std::size_t>(member.body)].id, member.weight});
    trails_.ModelChanged(shown_.GetMoment().run, std::move(members));
}

// During a run the model is where it was when that began.
void SpaceDisplay::TakeReport() {
    if (!IsRunning()) return;
    const std::lock_guard lock(reportMutex_);
    if (runBodies_ != positions_.size() || report_.positions.size() != 3 * runBodies_) return;
    scene_.time = report_.time;
    for (std::size_t i = 0; i < runBodies_; i++) {
        const double* const r = &report_.positions[3 * i];
        const double* const v = &report_.velocities[3 * i];
        positions_[i] = {r[0], r[1], r[2]};
        velocities_[i] = {v[0], v[1], v[2]};
    }
}

void SpaceDisplay::MoveToReference() {
    ThreeVector origin;
    ThreeVector drift;
    double weight = 0.0;
    for (const TrajectoryCache::Member& member : reference_) {
        const auto body = static_cast<std::size_t>(member.body);
        origin += member.weight * positions_[body];
        drift += member.weight * velocities_[body];
        weight += member.weight;
    }
    if (weight > 0.0) {
        origin *= 1.0 / weight;
        drift *= 1.0 / weight;
    }
    for (std::size_t i = 0; i < scene_.bodies.size(); i++) {
        scene_.bodies[i].position = positions_[i] - origin;
        scene_.bodies[i].velocity = velocities_[i] - drift;
    }
}

void SpaceDisplay::SetPreferredUnit(double unit) {
    if (!(unit > 0.0) || !std::isfinite(unit)) return;
    units_.distance = unit;
    scene_.lengthUnit = unit;
    Repaint();
}

void SpaceDisplay::Repaint() {
    if (view_ == nullptr || IsHidden() || view_->IsEmpty()) return;
    TakeReport();
    MoveToReference();
    trails_.Update(Epoch(), &scene_);
    if (needsFit_ && !scene_.bodies.empty()) {
        needsFit_ = false;
        view_->FitCamera(scene_.Places(), &fields_.camera);
    }
    view_->Paint(scene_, fields_.camera, fields_.options, units_, movedAt_ != 0);
    paintings_++;
}

// --- The camera ---

void SpaceDisplay::CameraMoved() {
    if (SpaceDrawing::HasManySamples(scene_)) {
        movedAt_ = system_time();
        if (!rest_)
            rest_ = std::make_unique<BMessageRunner>(BMessenger(this), BMessage(kRest), kRestTime);
    }
    Repaint();
}

void SpaceDisplay::CameraRests() {
    if (system_time() - movedAt_ < kRestTime) return;
    movedAt_ = 0;
    rest_.reset();
    Repaint();
}

void SpaceDisplay::Turn(BPoint way, bool isLevel) {
    const double right = kTurnOfFocus * view_->PartOfFocus(way.x);
    const double down = kTurnOfFocus * view_->PartOfFocus(way.y);
    if (isLevel)
        fields_.camera.TurnLevel(right, down);
    else
        fields_.camera.Roll(right, down);
    CameraMoved();
}

void SpaceDisplay::PanBy(float right, float down) {
    fields_.camera.Pan(view_->PartOfFocus(right), view_->PartOfFocus(down));
    CameraMoved();
}

void SpaceDisplay::ZoomAbout(BPoint point, double factor) {
    const BPoint middle = view_->Middle();
    // What is followed stays in the middle.
    const bool isFollowing = fields_.followed != kNoSystemID;
    const BPoint from = isFollowing ? BPoint{} : BPoint{point.x - middle.x, point.y - middle.y};
    fields_.camera.ZoomAbout(view_->PartOfFocus(from.x), view_->PartOfFocus(from.y), factor);
    CameraMoved();
}

void SpaceDisplay::LookAlong(int32 axis) {
    constexpr double kRight = 90.0 * kDegree;
    if (axis == 1)
        fields_.camera.LookFrom(0.0, 0.0);
    else if (axis == 2)
        fields_.camera.LookFrom(-kRight, 0.0);
    else
        fields_.camera.LookFrom(-kRight, kRight);
    Repaint();
}

void SpaceDisplay::LookOnto(int64 body) {
    const ViewPlane plane = PlaneAcross(FindPair(Epoch(), kNoSystemID, body).axis);
    if (!plane.IsOn()) return;
    fields_.camera.right = plane.right;
    fields_.camera.up = plane.up;
    Repaint();
}

void SpaceDisplay::TogglePerspective() {
    fields_.camera.isParallel = !fields_.camera.isParallel;
    menus_->ShowOptions(fields_);
    Repaint();
}

void SpaceDisplay::FitAll() {
    needsFit_ = true;
    Repaint();
}

void SpaceDisplay::Follow(int64 system) {
    fields_.followed = system;
    fields_.camera.target = {};
    {
        const ReadGuard guard(Epoch());
        TakeBodies(shown_.Portal().BodiesInMassOrder());
    }
    hands_.ModelChanged();
    menus_->ShowFollowed(shown_.Labels(), fields_.followed);
    if (system == kNoSystemID) needsFit_ = true;
    Repaint();
}

void SpaceDisplay::FollowBody(int32 body) {
    if (body >= 0 && body < static_cast<int32>(scene_.bodies.size()))
        Follow(scene_.bodies[static_cast<std::size_t>(body)].id);
}

void SpaceDisplay::ShowTexts() {
    if (!IsHidden() && !view_->IsEmpty()) view_->ShowTexts();
}

void SpaceDisplay::ToggleOption(bool SpaceOptions::*option) {
    fields_.options.*option = !(fields_.options.*option);
    menus_->ShowOptions(fields_);
    Repaint();
}

// --- Archive ---

status_t SpaceDisplay::MiniArchive(BMessage* archive) const {
    const status_t status = Display::MiniArchive(archive);
    return status == B_OK ? fields_.Write(archive) : status;
}

status_t SpaceDisplay::Regenerate(const BMessage& archive) {
    const status_t status = Display::Regenerate(archive);
    needsFit_ = !fields_.Read(archive);
    menus_->ShowOptions(fields_);
    return status;
}
