#include "Interface Widgets/MyMenuField.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"

MyMenuField::MyMenuField(const char* name, const char* label, EpochPortal* portal,
                         std::vector<int32> numbers, const std::vector<std::string>& texts)
    : ValueEntry(name, B_HORIZONTAL, portal), numbers_(std::move(numbers)) {
    menu_ = new BPopUpMenu("numbers");
    for (std::size_t i = 0; i < numbers_.size(); i++) {
        const std::string text = texts.empty() ? std::to_string(numbers_[i]) : texts[i];
        menu_->AddItem(new BMenuItem(text.c_str(), new BMessage(kChosen)));
    }
    field_ = new BMenuField("menu", nullptr, menu_);
    field_->SetAccessibleName(label);
    AddChild(field_);
}

void MyMenuField::AttachedToWindow() {
    menu_->SetTargetForItems(this);
}

void MyMenuField::ShowEnabled(bool isEnabled) {
    field_->SetEnabled(isEnabled);
}

void MyMenuField::Present(const std::optional<int32>& value, bool /*replacesAll*/) {
    if (!value) return;
    const auto next = std::lower_bound(numbers_.begin(), numbers_.end() - 1, *value);
    menu_->ItemAt(static_cast<int32>(next - numbers_.begin()))->SetMarked(true);
}

void MyMenuField::MessageReceived(BMessage* message) {
    if (message->what != kChosen) return Entry::MessageReceived(message);
    int32 index = 0;
    message->FindInt32(kIndexField, &index);
    const Source source = Shown();
    const int32 number = numbers_.at(static_cast<std::size_t>(index));
    if (source && !CommitEntry(Portal(), *source.factory, number)) Present(source.value, false);
}
