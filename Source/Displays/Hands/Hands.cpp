#include "Displays/Hands/Hands.h"

#include <cmath>
#include <utility>

#include "Displays/Base/Display.h"
#include "Displays/Hands/HandEdit.h"
#include "Displays/Hands/HandSight.h"
#include "Displays/Hands/HandTexts.h"
#include "Displays/Projection/DisplayMenus.h"
#include "Displays/Projection/ShownModel.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

constexpr float kClick = 4.0f;      // pixels; a hand that moves less has clicked
constexpr float kHeadReach = 8.0f;  // of the head of an arrow, around it
constexpr int32 kRevolutions = 3;   // that are shown of the coming orbit
constexpr std::size_t kMaxPreviewed =
    2000;  // bodies; of more no copy is made while the mouse moves

// A new body, as the owner makes it.
constexpr double kNewBodyGM = 3.98600448e14;  // m3/s2
constexpr double kNewBodyRadius = 6378137.0;  // m

float Distance(BPoint a, BPoint b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

// -1 for another key.
int32 AxisOf(uint32 key) {
    switch (key) {
        case 'x':
        case 'X':
            return 0;
        case 'y':
        case 'Y':
            return 1;
        case 'z':
        case 'Z':
            return 2;
        default:
            return HandPlane::kAnyWay;
    }
}

}  // namespace

Hands::Hands(Display* display, ShownModel* shown, HandSight* sight, const DisplayContext& context)
    : display_(display),
      shown_(shown),
      sight_(sight),
      context_(context),
      menu_(display, *context.texts),
      measurement_(shown, sight, context),
      preview_(display) {}

Hands::~Hands() = default;

void Hands::SetView(CanvasView* view) {
    view_ = view;
    menu_.SetView(view);
    measurement_.SetView(view);
}

// --- The model ---

HandSystem Hands::ReadSystem() const {
    const ReadGuard guard(display_->Epoch());
    return ReadHandSystem(shown_->Epoch(), shown_->Portal().BodiesInMassOrder(),
                          sight_->Followed());
}

void Hands::ModelChanged() {
    const int64 before = selected_;
    {
        const ReadGuard guard(display_->Epoch());
        selected_ = shown_->Portal().FocusSystem()->ID();
    }
    const bool isRunning = sight_->IsRunning();
    HandSystem now = isRunning ? HandSystem{} : ReadSystem();
    // Bodies that are not what they were: they have merged, moved or gone.
    if (grip_ && !(now == grip_->System())) {
        if (IsNowExact(now))
            TakeHoldAgain(now);
        else
            GiveUp();
    }
    if (press_ && !isRunning && press_->body != kNoSystemID && now.IndexOf(press_->body) < 0)
        GiveUp();
    const bool isOther = selected_ != before || !(now == system_);
    system_ = std::move(now);
    if (isOther) sight_->ShowTexts();
}

// Of a moment between two samples the report has been found: all of it has moved by next to
// nothing, and the gesture goes on from there.
bool Hands::IsNowExact(const HandSystem& now) const {
    const Moment& moment = shown_->GetMoment();
    return press_ && press_->nearRun != nullptr && moment.IsPast() && moment.isExact &&
           moment.run == press_->nearRun && now.HasSameBodies(grip_->System());
}

void Hands::TakeHoldAgain(const HandSystem& system) {
    press_->nearRun = nullptr;
    HandBody body = grip_->Start();
    if (const int32 index = system.IndexOf(press_->body); index >= 0) {
        body = system.bodies[static_cast<std::size_t>(index)];
    } else {
        body.position += system.origin - grip_->System().origin;
        body.velocity = system.drift;
    }
    grip_.emplace(press_->kind, system, body, grip_->Plane());
    Drag();
}

const HandBody* Hands::Selected() const {
    const int32 index = system_.IndexOf(selected_);
    return index < 0 ? nullptr : &system_.bodies[static_cast<std::size_t>(index)];
}

// --- The mouse ---

bool Hands::IsInView(BPoint inView) const {
    const BRect bounds = view_->Bounds();
    return inView.x >= 0.0f && inView.y >= 0.0f && inView.x <= bounds.Width() + 1.0f &&
           inView.y <= bounds.Height() + 1.0f;
}

// Of a still body there is no arrow.
std::optional<BPoint> Hands::HeadOf(const HandBody& body) const {
    const ThreeVector place = body.position - system_.origin;
    const auto from = sight_->PointOf(place);
    const double scale = ArrowScale(system_, body);
    if (!from || scale == 0.0) return std::nullopt;
    const BPoint way = sight_->PlaneThrough(place).See(body.velocity - system_.drift, scale);
    return BPoint{from->x + way.x, from->y + way.y};
}

bool Hands::MouseDown(const MouseInput& input) {
    if (press_) {  // another button
        GiveUp();
        return true;
    }
    if (input.buttons != B_PRIMARY_MOUSE_BUTTON || input.clicks > 1 || sight_->IsTurning())
        return false;
    if ((input.modifiers & B_COMMAND_KEY) != 0) {
        Begin(BodyGrip::Kind::kThrow, kNoSystemID, input);
        return true;
    }
    // During a run only what is selected can be found, by its disc.
    if (sight_->IsRunning()) {
        const int32 body = sight_->BodyAt(input.where);
        if (body < 0) return false;
        const HandSystem system = ReadSystem();
        if (body >= static_cast<int32>(system.bodies.size()) ||
            system.bodies[static_cast<std::size_t>(body)].id != selected_)
            return false;
        Begin(BodyGrip::Kind::kMove, selected_, input);
        return true;
    }
    const HandBody* const body = Selected();
    if (body == nullptr) return false;
    const auto disc = sight_->DiscOf(system_.IndexOf(selected_));
    const auto head = HeadOf(*body);
    const float fromHead = head ? Distance(input.where, *head) : 2.0f * kHeadReach;
    if (fromHead <= kHeadReach && (!disc || Distance(input.where, disc->center) > fromHead)) {
        Begin(BodyGrip::Kind::kSteer, selected_, input);
        return true;
    }
    if (sight_->BodyAt(input.where) != system_.IndexOf(selected_)) return false;
    Begin(BodyGrip::Kind::kMove, selected_, input);
    return true;
}

void Hands::Begin(BodyGrip::Kind kind, int64 body, const MouseInput& input) {
    press_ = Press{kind, body, input.inView, input.where};
    bounds_ = {HandPlane::kAnyWay, (input.modifiers & B_SHIFT_KEY) != 0};
    way_ = {};
    if (!sight_->IsRunning()) TakeHold(input.inView);
}

// The mouse drags from here on: during a run the body has gone on a little.
void Hands::TakeHold(BPoint inView) {
    HandSystem system = ReadSystem();
    press_->at = inView;
    HandBody body;
    if (press_->kind == BodyGrip::Kind::kThrow) {
        body = MakeBody(system, press_->pointer);
    } else {
        const int32 index = system.IndexOf(press_->body);
        if (index < 0) return GiveUp();
        body = system.bodies[static_cast<std::size_t>(index)];
    }
    const HandPlane plane = sight_->PlaneThrough(body.position - system.origin);
    const Moment& moment = shown_->GetMoment();
    if (moment.IsPast() && !moment.isExact) press_->nearRun = moment.run;
    grip_.emplace(press_->kind, std::move(system), body, plane);
    Drag();
}

HandBody Hands::MakeBody(const HandSystem& system, BPoint at) const {
    HandBody body;
    body.gm = kNewBodyGM;
    body.radius = kNewBodyRadius;
    body.position = sight_->PlaceAt(at) + system.origin;
    body.velocity = system.drift;
    if (const HandBody* const other = Selected(); other != nullptr) {
        body.positionUval = other->positionUval;
        body.speedUval = other->speedUval;
    }
    return body;
}

// Without a mouse: on a circle through the middle of the picture, or beside what is there.
void Hands::ThrowIn() {
    if (press_ || sight_->IsTurning()) return;
    const BRect bounds = view_->Bounds();
    BPoint at{(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
    const float step = bounds.Width() / 8;
    for (int32 i = 0; i < 3 && sight_->BodyAt(at) >= 0; i++)
        at.x += step;
    const HandSystem system = ReadSystem();
    HandBody body = MakeBody(system, at);
    body.velocity = system.CircularVelocity(body);
    Send(BodyGrip::Kind::kThrow, body);
}

bool Hands::MouseMoved(const MouseInput& input, CanvasView::Transit transit) {
    if (!press_) return false;
    if (transit == CanvasView::Transit::kExited || !IsInView(input.inView)) {
        GiveUp();
        return true;
    }
    press_->pointer = input.where;
    bounds_.isCircular = (input.modifiers & B_SHIFT_KEY) != 0;
    if (!grip_) {
        // A drag pauses the run and waits until it rests; a click lets it go on.
        const bool isFar =
            std::abs(input.inView.x - press_->at.x) + std::abs(input.inView.y - press_->at.y) >=
            kClick;
        if (!sight_->IsRunning())
            TakeHold(input.inView);
        else if (isFar && !std::exchange(press_->isDrag, true))
            WindowServer::Deliver(display_->Owner(), BMessage(kPauseForUser));
        return true;
    }
    way_ = {input.inView.x - press_->at.x, input.inView.y - press_->at.y};
    if (std::abs(way_.x) + std::abs(way_.y) >= kClick) press_->hasMoved = true;
    Drag();
    return true;
}

void Hands::Drag() {
    if (!press_ || !grip_) return;
    if (!press_->hasMoved) return;
    grip_->DragBy(way_, bounds_);
    ShowPreview();
    sight_->ShowTexts();
}

bool Hands::MouseUp(const MouseInput& input) {
    if (!press_) return false;
    if ((input.buttons & B_PRIMARY_MOUSE_BUTTON) != 0) return true;
    LetGo();
    return true;
}

void Hands::LetGo() {
    if (grip_ && press_->hasMoved)
        Send(press_->kind, grip_->Body());
    else if (press_->kind == BodyGrip::Kind::kMove && !press_->isDrag)
        Click(press_->pointer);
    GiveUp();
}

void Hands::Send(BodyGrip::Kind kind, const HandBody& body) {
    if (!IsFinite(body.position) || !IsFinite(body.velocity)) return;
    WindowServer::Deliver(display_->Owner(), MakeHandEdit(kind, body));
}

void Hands::GiveUp() {
    if (!press_) return;
    press_.reset();
    grip_.reset();
    preview_.WantNothing();
    sight_->ShowTexts();
}

// --- Keys ---

bool Hands::TakeKey(const KeyInput& input, bool isDown) {
    if (!press_) return false;
    const int32 axis = AxisOf(input.key);
    if (axis == HandPlane::kAnyWay) return false;
    if (isDown)
        bounds_.axis = axis;
    else if (bounds_.axis == axis)
        bounds_.axis = HandPlane::kAnyWay;
    Drag();
    return true;
}

bool Hands::KeyDown(const KeyInput& input) {
    if (input.key == B_ESCAPE && measurement_.StopWaiting()) return true;
    if (press_ && input.key == B_ESCAPE) {
        GiveUp();
        return true;
    }
    return TakeKey(input, true);
}

bool Hands::KeyUp(const KeyInput& input) {
    return TakeKey(input, false);
}

// --- Clicks ---

void Hands::Click(BPoint point) {
    const int32 body = sight_->BodyAt(point);
    if (measurement_.TakeClick(body, selected_)) return;
    const std::vector<BodyLabels::Label>& labels = shown_->Labels().bodies;
    if (body < 0 || body >= static_cast<int32>(labels.size())) return;
    BMessage edit(kEditBody);
    edit.AddInt64(kBodyIDField, labels[static_cast<std::size_t>(body)].id);
    WindowServer::Deliver(display_->Owner(), edit);
}

void Hands::RightClick(BPoint point) {
    const int32 body = sight_->BodyAt(point);
    if (body >= 0 && body < static_cast<int32>(shown_->Labels().bodies.size()))
        menu_.OpenFor(body, shown_->Labels());
}

bool Hands::Handle(const BMessage& message) {
    if (message.what == kThrowIn) {
        ThrowIn();
        return true;
    }
    if (message.what != OrbitPreview::kNews)
        return measurement_.Handle(message, system_, selected_) || menu_.Handle(message);
    if (press_) sight_->ShowTexts();
    return true;
}

// --- What is shown meanwhile ---

void Hands::ShowPreview() {
    const HandBody& body = grip_->Body();
    const double period = grip_->System().PeriodOf(body);
    if (!(period > 0.0) || grip_->System().bodies.size() > kMaxPreviewed)
        return preview_.WantNothing();
    std::unique_ptr<Epoch> epoch;
    {
        const ReadGuard guard(display_->Epoch());
        epoch.reset(dynamic_cast<Epoch*>(shown_->Epoch().Copy()));
    }
    if (!epoch) return;
    preview_.Want({std::move(epoch), body, grip_->System(), kRevolutions * period});
}

void Hands::AddSelection(std::vector<OverlayItem>* items) const {
    const HandBody* const body = Selected();
    if (body == nullptr || sight_->IsTurning()) return;
    const auto disc = sight_->DiscOf(system_.IndexOf(selected_));
    const auto head = HeadOf(*body);
    if (disc && head) AddArrow(disc->center, *head, sight_->TextColor(), items);
}

// During a run, too.
void Hands::AddSelectionRing(std::vector<OverlayItem>* items) const {
    const std::vector<BodyLabels::Label>& bodies = shown_->Labels().bodies;
    for (std::size_t i = 0; i < bodies.size(); i++) {
        if (bodies[i].id != selected_) continue;
        if (const auto disc = sight_->DiscOf(static_cast<int32>(i)))
            AddRing(disc->center, disc->radius, sight_->TextColor(), items);
        return;
    }
}

void Hands::AddOverlay(std::vector<OverlayItem>* items) const {
    measurement_.AddOverlay(system_, items);
    if (!sight_->HasRing()) AddSelectionRing(items);
    if (!grip_) {
        if (!sight_->IsRunning()) AddSelection(items);
        return;
    }
    AddGrip(*grip_, *sight_, press_->pointer, *view_, context_, items);
    AddPath(preview_.GetPath(), *sight_, *view_, context_, items);
}
