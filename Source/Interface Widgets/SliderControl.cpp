#include "Interface Widgets/SliderControl.h"

#include <algorithm>
#include <cmath>

#include "Interface Widgets/NumberTextControl.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BSlider.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"

namespace {

constexpr int32 kColumns = 8;
constexpr int32 kPage = 10;  // steps of the arrow keys to one of the page keys

DimValue Plain(double value) {
    return {value, 1.0};
}

}  // namespace

SliderControl::SliderControl(const char* name, const Texts& labels, std::vector<double> stops,
                             EpochPortal* portal, const InterfaceTexts& texts)
    : ValueEntry(name, B_VERTICAL, portal),
      stops_(std::move(stops)),
      slider_(new BSlider("slider", labels.title.c_str(), new BMessage(kMoved), 0,
                          static_cast<int32>(stops_.size()) - 1)),
      number_(new NumberTextControl("number", labels.before.c_str(), nullptr, texts,
                                    new BMessage(kEntered))) {
    slider_->SetModificationMessage(new BMessage(kMoving));
    slider_->SetLimitLabels(labels.left.c_str(), labels.right.c_str());
    slider_->SetSteps(1, kPage);
    AddChild(slider_);
    auto* const row = new BGroupView("sentence", B_HORIZONTAL);
    number_->SetColumns(kColumns);
    auto* const before = new BStringView("before", labels.before.c_str());
    before->SetField(*number_);
    row->AddChild(before);
    row->AddChild(number_);
    row->AddChild(new BStringView("after", labels.after.c_str()));
    row->AddStretch();
    AddChild(row);
}

void SliderControl::AttachedToWindow() {
    slider_->SetTarget(this);
    number_->SetTarget(this);
}

void SliderControl::ShowEnabled(bool isEnabled) {
    // A knob that is held when it is disabled does not report its release.
    if (!isEnabled && std::exchange(isHeld_, false)) Present(Shown().value, true);
    slider_->SetEnabled(isEnabled);
    number_->SetEnabled(isEnabled);
}

int32 SliderControl::NearestStop(double value) const {
    const auto distance = [value](double stop) { return std::fabs(std::log(stop / value)); };
    const auto nearest = std::min_element(stops_.begin(), stops_.end(), [&](double a, double b) {
        return distance(a) < distance(b);
    });
    return static_cast<int32>(nearest - stops_.begin());
}

double SliderControl::StopAt(const BMessage& message) const {
    int32 index = 0;
    message.FindInt32(kValueField, &index);
    return stops_[static_cast<std::size_t>(index)];
}

void SliderControl::Present(const std::optional<double>& value, bool replacesAll) {
    if (isHeld_) return;
    if (!value) return number_->ShowValue(std::nullopt, replacesAll);
    slider_->SetValue(NearestStop(*value));
    number_->ShowValue(Plain(*value), replacesAll);
}

bool SliderControl::CommitPending() {
    std::optional<std::string> typed;
    const Source source = TakePending([&] { typed = number_->TakeText(); });
    if (!typed || !source) return false;
    const DimValue inForce = Plain(*source.value);
    const std::optional<DimValue> value = number_->Read(*typed, inForce);
    if (!value) return false;
    if (CommitEntry(Portal(), *source.factory, value->Value())) return true;
    if (!(*value == inForce)) number_->RefuseRange(inForce);
    return false;
}

void SliderControl::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kMoving:
            isHeld_ = true;
            number_->ShowValue(Plain(StopAt(*message)), true);
            break;
        case kMoved: {
            isHeld_ = false;
            const Source source = Shown();
            if (source && !CommitEntry(Portal(), *source.factory, StopAt(*message)))
                Present(source.value, true);
            break;
        }
        default:
            Entry::MessageReceived(message);
    }
}
