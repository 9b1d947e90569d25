#include "BButton.h"

#include <QPushButton>

#include "BWindow.h"
#include "ButtonPart.h"

BButton::BButton(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ButtonPart<QPushButton>>(label)) {}

void BButton::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ShowLabel(Part(), Label());
}
