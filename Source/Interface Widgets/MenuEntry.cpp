#include "Interface Widgets/MenuEntry.h"

#include <string>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BPopUpMenu.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"

MenuEntry::MenuEntry(const char* name, const char* label, EpochPortal* portal, int32 least,
                     int32 greatest)
    : ValueEntry(name, B_HORIZONTAL, portal), least_(least) {
    menu_ = new BPopUpMenu("numbers");
    for (int32 number = least; number <= greatest; number++)
        menu_->AddItem(new BMenuItem(std::to_string(number).c_str(), new BMessage(kChosen)));
    field_ = new BMenuField("menu", nullptr, menu_);
    field_->SetAccessibleName(label);
    AddChild(field_);
}

void MenuEntry::AttachedToWindow() {
    menu_->SetTargetForItems(this);
}

void MenuEntry::ShowEnabled(bool isEnabled) {
    field_->SetEnabled(isEnabled);
}

void MenuEntry::Present(const std::optional<int32>& value, bool /*replacesAll*/) {
    BMenuItem* const item = value ? menu_->ItemAt(*value - least_) : nullptr;
    if (item != nullptr) item->SetMarked(true);
}

void MenuEntry::MessageReceived(BMessage* message) {
    if (message->what != kChosen) return Entry::MessageReceived(message);
    int32 index = 0;
    message->FindInt32(kIndexField, &index);
    const Source source = Shown();
    if (source && !CommitEntry(Portal(), *source.factory, least_ + index))
        Present(source.value, false);
}
