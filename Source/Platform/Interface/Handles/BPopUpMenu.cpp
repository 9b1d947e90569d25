#include "Platform/Interface/Handles/BPopUpMenu.h"

#include "Platform/Application/BMessage.h"

namespace {

const ArchivableClass kClass("BPopUpMenu", BPopUpMenu::Instantiate);

}  // namespace

BPopUpMenu::BPopUpMenu(const char* name, bool isRadioMode, bool isLabelFromMarked) : BMenu(name) {
    SetRadioMode(isRadioMode);
    SetLabelFromMarked(isLabelFromMarked);
}

BPopUpMenu::BPopUpMenu(BMessage* archive) : BMenu(archive) {}

BArchivable* BPopUpMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BPopUpMenu") ? new BPopUpMenu(archive) : nullptr;
}
