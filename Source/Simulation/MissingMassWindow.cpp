#include "Simulation/MissingMassWindow.h"

#include <cmath>
#include <string>

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Model/Units/DimValue.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/CommonTexts.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr uint32 kPressed = FourCC("mspr");
constexpr uint32 kTyped = FourCC("mstp");

// None: they move as test bodies.
DimValue Former() {
    return {0.0, MASS_UVAL_PREF};
}

}  // namespace

MissingMassWindow::MissingMassWindow(BPoint at, std::size_t bodies, const UnitTable* units,
                                     BLooper* owner, const InterfaceTexts* texts)
    : SubWindow({at.x, at.y, at.x - 1.0f, at.y - 1.0f}, texts->Text(kTextImportTitle),
                B_MODAL_WINDOW, B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE | B_CLOSE_ON_ESCAPE, owner,
                texts),
      units_(units),
      mass_(new NumberTextControl(
          "mass", FillIn(texts->Label(kTextAskMass), {std::to_string(bodies)}).c_str(), units_,
          *texts, new BMessage(kTyped))) {
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    auto* const label = new BStringView(
        "label", FillIn(texts->Label(kTextAskMass), {std::to_string(bodies)}).c_str());
    label->SetField(*mass_);
    column->AddChild(label);
    mass_->SetShowsUnit(true);
    mass_->ShowValue(Former(), true);
    column->AddChild(mass_);
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    auto* const cancel =
        new BButton("cancel", texts->Text(kLabelCancel), new BMessage(B_QUIT_REQUESTED));
    auto* const give = new BButton("give", texts->Text(kTextGiveMass), new BMessage(kPressed));
    row->AddStretch();
    row->AddChild(cancel);
    row->AddChild(give);
    column->AddChild(row);
    AddChild(column);
    SetDefaultButton(give);
    mass_->SelectAll();
    mass_->MakeFocus();
}

// What cannot be read keeps the window open.
void MissingMassWindow::Answer() {
    DimValue mass = Former();
    if (const auto typed = mass_->TakeText()) {
        const auto value = mass_->Read(*typed, Former());
        if (!value) return;
        if (!(value->Value() >= 0.0) || !std::isfinite(value->Value()))
            return mass_->RefuseRange(Former());
        mass = *value;
    }
    BMessage given(kGiven);
    given.AddDouble(kMass, mass.Value());
    SendToOwner(given);
    QuitRequested();
}

void MissingMassWindow::MessageReceived(BMessage* message) {
    if (message->what == kPressed) return Answer();
    // The text stays with the line until the answer.
    if (message->what != kTyped) SubWindow::MessageReceived(message);
}

bool MissingMassWindow::QuitRequested() {
    Hide();
    SendToOwner(BMessage(kClosed));
    return false;
}
