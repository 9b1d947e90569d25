#include "Interface Widgets/ColorControl.h"

#include <cmath>

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BColorControl.h"
#include "Platform/Interface/Handles/BGridView.h"
#include "Platform/Interface/Handles/BSlider.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/SimulationWindow.h"

namespace {

constexpr int32 kMax = 255;
constexpr int32 kPage = 16;
constexpr int32 kColumns = 3;
constexpr std::array<uint8 rgb_color::*, 3> kChannels{&rgb_color::red, &rgb_color::green,
                                                      &rgb_color::blue};

DimValue Plain(uint8 value) {
    return {static_cast<double>(value), 1.0};
}

}  // namespace

ColorControl::ColorControl(const char* name, const char* label, EpochPortal* portal,
                           const InterfaceTexts& texts)
    : ValueEntry(name, B_HORIZONTAL, portal),
      swatch_(new BColorControl("swatch", label, new BMessage(kChosen))) {
    swatch_->SetModificationMessage(new BMessage(kChoosing));
    AddChild(swatch_);
    auto* const grid = new BGridView("channels");
    grid->SetColumnWeight(1, 1);
    for (std::size_t i = 0; i < channels_.size(); i++) {
        const std::string& channel = texts.Label(kLabelRed + static_cast<int32>(i));
        AddChannel(grid, i, std::string(label) + ' ' + channel, channel, texts);
    }
    AddChild(grid);
}

void ColorControl::AddChannel(BGridView* grid, std::size_t index, const std::string& spoken,
                              const std::string& label, const InterfaceTexts& texts) {
    Channel& channel = channels_[index];
    channel.slider = new BSlider(label.c_str(), nullptr, new BMessage(kMoved), 0, kMax);
    channel.slider->SetModificationMessage(new BMessage(kMoving));
    channel.slider->SetSteps(1, kPage);
    channel.slider->SetAccessibleName(spoken.c_str());
    channel.number =
        new NumberTextControl("number", spoken.c_str(), nullptr, texts, new BMessage(kEntered));
    channel.number->SetColumns(kColumns);
    channel.number->SetRightAligned(true);
    const auto row = static_cast<int32>(index);
    grid->AddView(new BStringView("label", label.c_str()), 0, row);
    grid->AddView(channel.slider, 1, row);
    grid->AddView(channel.number, 2, row);
}

void ColorControl::AttachedToWindow() {
    swatch_->SetTarget(this);
    for (const Channel& channel : channels_) {
        channel.slider->SetTarget(this);
        channel.number->SetTarget(this);
    }
}

void ColorControl::ShowEnabled(bool isEnabled) {
    // A knob that is held when it is disabled does not report its release.
    if (!isEnabled) begun_ = {};
    swatch_->SetEnabled(isEnabled);
    for (const Channel& channel : channels_) {
        channel.slider->SetEnabled(isEnabled);
        channel.number->SetEnabled(isEnabled);
    }
}

// --- What is shown ---

void ColorControl::Present(const std::optional<rgb_color>& value, bool replacesAll) {
    if (begun_) return;
    const rgb_color color = value.value_or(rgb_color{});
    swatch_->SetValue(color);
    ShowSliders(color);
    ShowNumbers(color, replacesAll);
}

void ColorControl::ShowSliders(rgb_color color) {
    for (std::size_t i = 0; i < channels_.size(); i++)
        channels_[i].slider->SetValue(color.*kChannels[i]);
}

void ColorControl::ShowNumbers(rgb_color color, bool replacesAll) {
    for (std::size_t i = 0; i < channels_.size(); i++)
        channels_[i].number->ShowValue(Plain(color.*kChannels[i]), replacesAll);
    shown_ = color;
    if (Window() != nullptr) WindowServer::Deliver(Window(), BMessage(kColorShown));
}

rgb_color ColorControl::SliderColor() const {
    rgb_color color = shown_;
    for (std::size_t i = 0; i < channels_.size(); i++)
        color.*kChannels[i] = static_cast<uint8>(channels_[i].slider->Value());
    return color;
}

// --- Edits ---

void ColorControl::Try(rgb_color color) {
    if (!begun_) begun_ = Shown();
    ShowNumbers(color, true);
}

void ColorControl::Take(rgb_color color) {
    const Source source = begun_ ? std::exchange(begun_, {}) : Shown();
    // The old colour may be back, or another system be in focus by now.
    if (!source || !CommitEntry(Portal(), *source.factory, color)) Present(Shown().value, true);
}

bool ColorControl::CommitPending() {
    std::array<std::optional<std::string>, 3> typed;
    const Source source = TakePending([&] {
        for (std::size_t i = 0; i < typed.size(); i++)
            typed[i] = channels_[i].number->TakeText();
    });
    if (!source) return false;
    std::array<std::optional<uint8>, 3> values;
    for (std::size_t i = 0; i < typed.size(); i++)
        if (typed[i]) values[i] = ReadChannel(i, *typed[i], (*source.value).*kChannels[i]);
    if (!values[0] && !values[1] && !values[2]) return false;

    if (!Portal()->PrepareForEdit()) return false;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(Portal());
        rgb_color color = source.factory->Current(*Portal());
        for (std::size_t i = 0; i < values.size(); i++)
            if (values[i]) color.*kChannels[i] = *values[i];
        command = source.factory->MakeCommand(Portal(), color);
    }
    return ExecuteFiled(Portal(), std::move(command));
}

std::optional<uint8> ColorControl::ReadChannel(std::size_t index, const std::string& typed,
                                               uint8 inForce) {
    NumberTextControl& line = *channels_[index].number;
    const std::optional<DimValue> value = line.Read(typed, Plain(inForce));
    if (!value) return std::nullopt;
    const double number = value->Value();
    if (number >= 0.0 && number <= kMax && number == std::floor(number))
        return static_cast<uint8>(number);
    line.RefuseRange(Plain(inForce));
    return std::nullopt;
}

void ColorControl::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kMoving:
            swatch_->SetValue(SliderColor());
            Try(SliderColor());
            break;
        case kMoved:
            Take(SliderColor());
            break;
        case kChoosing:
            ShowSliders(swatch_->ValueAsColor());
            Try(swatch_->ValueAsColor());
            break;
        case kChosen:
            Take(swatch_->ValueAsColor());
            break;
        default:
            Entry::MessageReceived(message);
    }
}
