#include "Interface Widgets/ExampleMenu.h"

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"

namespace {

const ArchivableClass kClass("ExampleMenu", ExampleMenu::Instantiate);

constexpr const char* kIndent = "      ";

}  // namespace

ExampleMenu::ExampleMenu(const char* name, const std::vector<Example>& examples) : BMenu(name) {
    for (const Example& example : examples) {
        if (CountItems() > 0) AddSeparatorItem();
        Add(example.path, example.title);
        // Whatever is chosen of an example opens it; what cannot be chosen is hard to read, and no
        // screen reader gets there.
        for (const std::string& line : example.lines)
            Add(example.path, kIndent + line);
    }
}

void ExampleMenu::Add(const std::string& path, const std::string& label) {
    auto* const message = new BMessage(kOpenExample);
    message->AddString(kPathField, path);
    AddItem(new BMenuItem(label.c_str(), message));
}

BArchivable* ExampleMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "ExampleMenu") ? new ExampleMenu(archive) : nullptr;
}

void ExampleMenu::AttachedToWindow() {
    SetTargetForItems(be_app);
}
