#include "Platform/Interface/Handles/BButton.h"

#include <QPushButton>

#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/ButtonPart.h"

BButton::BButton(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ButtonPart<QPushButton>>(label)) {}

void BButton::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ShowLabel(Part(), Label());
}
