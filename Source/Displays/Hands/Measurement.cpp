#include "Displays/Hands/Measurement.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "Displays/Hands/HandSight.h"
#include "Displays/Hands/HandTexts.h"
#include "Displays/Hands/MeasureMenu.h"
#include "Displays/Projection/BodiesMenu.h"
#include "Displays/Projection/ShownModel.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Resources/Hands.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kDigits = 6;
constexpr int kAngleDigits = 5;
constexpr rgb_color kLineColor{120, 200, 255, 255};
constexpr rgb_color kDarkLineColor{10, 90, 160, 255};  // before a light sky

std::string WithUnit(double value, double uval, const UnitTable& units) {
    return print_double(value / uval, kDigits) + " " + units.Abbreviation(uval);
}

}  // namespace

// --- What is measured ---

bool Measurement::Handle(const BMessage& message, const HandSystem& system, int64 selected) {
    switch (message.what) {
        case MeasureMenu::kNothing:
            sight_->Measured() = {};
            break;
        case MeasureMenu::kByClick:
            isWaiting_ = true;
            view_->SetPointer(CanvasView::Pointer::kCrosshair);
            return true;
        case MeasureMenu::kTo: {
            int64 body = kNoSystemID;
            if (message.FindInt64(BodiesMenu::kSystem, &body) == B_OK) MeasureTo(body, selected);
            break;
        }
        default:
            return false;
    }
    StopWaiting();
    const int32 from = system.IndexOf(sight_->Measured().from);
    if (from >= 0) {
        distanceUval_ = system.bodies[static_cast<std::size_t>(from)].positionUval;
        speedUval_ = system.bodies[static_cast<std::size_t>(from)].speedUval;
    }
    sight_->ShowTexts();
    return true;
}

bool Measurement::TakeClick(int32 body, int64 selected) {
    if (!StopWaiting()) return false;
    const std::vector<BodyLabels::Label>& labels = shown_->Labels().bodies;
    if (body >= 0 && body < static_cast<int32>(labels.size()))
        MeasureTo(labels[static_cast<std::size_t>(body)].id, selected);
    sight_->ShowTexts();
    return true;
}

bool Measurement::StopWaiting() {
    if (!std::exchange(isWaiting_, false)) return false;
    view_->SetPointer(CanvasView::Pointer::kArrow);
    return true;
}

void Measurement::MeasureTo(int64 body, int64 selected) {
    int64 from = selected;
    if (IndexOf(from) < 0 || from == body) from = sight_->Followed();
    if (IndexOf(from) < 0 || from == body) {
        const std::vector<BodyLabels::Label>& labels = shown_->Labels().bodies;
        const auto isOther = [body](const BodyLabels::Label& label) { return label.id != body; };
        const auto other = std::find_if(labels.begin(), labels.end(), isOther);
        if (other == labels.end()) return;
        from = other->id;
    }
    sight_->Measured() = {from, body};
}

int32 Measurement::IndexOf(int64 id) const {
    const std::vector<BodyLabels::Label>& labels = shown_->Labels().bodies;
    const auto isIt = [id](const BodyLabels::Label& label) { return label.id == id; };
    const auto found = std::find_if(labels.begin(), labels.end(), isIt);
    return found == labels.end() ? -1 : static_cast<int32>(found - labels.begin());
}

int32 Measurement::FindThird() const {
    const MeasuredPair& pair = sight_->Measured();
    const auto isThird = [&pair](int64 id) { return id != pair.from && id != pair.to; };
    if (const int32 followed = IndexOf(sight_->Followed());
        followed >= 0 && isThird(sight_->Followed()))
        return followed;
    const std::vector<BodyLabels::Label>& labels = shown_->Labels().bodies;
    for (std::size_t i = 0; i < labels.size(); i++)
        if (isThird(labels[i].id)) return static_cast<int32>(i);
    return -1;
}

// --- What is shown ---

std::string Measurement::MakeText(const MeasuredValues& values, int32 third) const {
    std::string apart = FillIn(context_.texts->Label(kTextMeasured),
                               {WithUnit(values.distance, distanceUval_, *context_.distanceUnits),
                                WithUnit(values.speed, speedUval_, *context_.speedUnits)});
    if (!values.angle) return apart;
    const double degrees = *values.angle * 180.0 / std::numbers::pi;
    return FillIn(context_.texts->Label(kTextMeasuredAngle),
                  {apart, print_double(degrees, kAngleDigits),
                   shown_->Labels().bodies[static_cast<std::size_t>(third)].name});
}

void Measurement::AddOverlay(const HandSystem& system, std::vector<OverlayItem>* items) const {
    const MeasuredPair& pair = sight_->Measured();
    if (!pair.IsOn() || view_ == nullptr) return;
    const auto motionOf = [&](int32 body) -> std::optional<BodyMotion> {
        if (body < 0) return std::nullopt;
        const auto index = static_cast<std::size_t>(body);
        if (index < system.bodies.size())
            return BodyMotion{system.bodies[index].position, system.bodies[index].velocity};
        return sight_->MotionOf(body);
    };
    const int32 first = IndexOf(pair.from);
    const int32 second = IndexOf(pair.to);
    const auto from = motionOf(first);
    const auto to = motionOf(second);
    const auto start = sight_->DiscOf(first);
    const auto end = sight_->DiscOf(second);
    if (!from || !to || !start || !end) return;
    const int32 third = FindThird();
    const bool isLight = sight_->TextColor().red < 128;
    AddMeasuredLine(start->center, end->center,
                    MakeText(MeasureBetween(*from, *to, motionOf(third)), third), *view_,
                    isLight ? kDarkLineColor : kLineColor, items);
}
