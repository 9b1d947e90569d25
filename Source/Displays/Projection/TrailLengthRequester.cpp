#include "Displays/Projection/TrailLengthRequester.h"

#include <cmath>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/RequesterButtons.h"
#include "Displays/Projection/TrailMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/TypedNumber.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BEntryControl.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/SettingsFeatures.h"
#include "Resources/Views.h"

namespace {

constexpr uint32 kEntered = FourCC("tltx");
constexpr int32 kColumns = 14;
// What is proposed where trails have no end.
constexpr TrailLength kProposed{.turns = 3.0};

std::string_view WithoutSpaces(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

}  // namespace

TrailLengthRequester::TrailLengthRequester(const TrailLength& length, Display* display,
                                           const DisplayContext& context)
    : BWindow(BRect{}, context.texts->Text(kLabelTrailTitle), B_MODAL_WINDOW,
              B_NOT_RESIZABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE),
      display_(display),
      context_(context),
      line_(new BEntryControl("length", context.texts->Text(kLabelTrailLine),
                              new BMessage(kEntered))),
      length_(length) {
    if (!length_.IsLimited()) length_.turns = kProposed.turns;
    auto* const row = new BGroupView("length", B_HORIZONTAL);
    auto* const label = new BStringView("label", context.texts->Text(kLabelTrailLine));
    label->SetField(*line_);
    row->AddChild(label);
    row->AddChild(line_);
    line_->SetColumns(kColumns);
    line_->SetToolTip(context.texts->Text(kTextTrailTip));
    line_->SetText(Write(length_));
    auto* const column = new BGroupView("lines", B_VERTICAL);
    column->AddChild(row);
    column->AddChild(new BStringView("tip", context.texts->Text(kTextTrailTip)));
    AddRequesterContent(this, column, display, kCancel);
    line_->SelectAll();
    line_->MakeFocus();
}

std::string TrailLengthRequester::Write(const TrailLength& length) const {
    if (length.time > 0.0) return InFittingUnit(*context_.timeUnits, length.time, kReadableDigits);
    return print_double(length.turns) + ' ' +
           context_.texts->Label(length.turns == 1.0 ? kTextOrbit : kTextOrbits);
}

bool TrailLengthRequester::MeansOrbits(std::string_view word) const {
    return word.empty() || word == context_.texts->Label(kTextOrbit) ||
           word == context_.texts->Label(kTextOrbits);
}

std::optional<TrailLength> TrailLengthRequester::Read(const std::string& typed) {
    TrailLength length{.isFading = length_.isFading};
    int32 why = kTextNotANumber;
    std::string_view rest = typed;
    if (const auto number = TakeTypedNumber(&rest)) {
        why = kTextOutOfRange;
        if (MeansOrbits(WithoutSpaces(rest))) {
            length.turns = *number;
        } else if (const auto time = context_.timeUnits->ParseTyped(typed)) {
            length.time = time.value;
        } else {
            why = kTextUnknownUnit;
        }
    }
    if (length.IsLimited() && std::isfinite(length.time)) return length;
    line_->RefuseText(Write(length_), context_.texts->Text(why));
    return std::nullopt;
}

bool TrailLengthRequester::QuitRequested() {
    if (const auto typed = line_->TakeText()) {
        const auto length = Read(*typed);
        if (!length) return false;
        length_ = *length;
    }
    if (!IsHidden()) Hide();
    WindowServer::Deliver(display_, TrailMenu::MessageFor(length_));
    return false;
}
