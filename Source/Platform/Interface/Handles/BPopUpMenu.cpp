#include "Platform/Interface/Handles/BPopUpMenu.h"

#include <QCursor>
#include <QMenu>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/ViewPart.h"

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

void BPopUpMenu::Go() {
    ChangeWidget<QMenu>(Part(), [](QMenu& menu) { menu.popup(QCursor::pos()); });
}
