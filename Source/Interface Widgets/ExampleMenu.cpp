#include "Interface Widgets/ExampleMenu.h"

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"

namespace {

const ArchivableClass kClass("ExampleMenu", ExampleMenu::Instantiate);

}  // namespace

ExampleMenu::ExampleMenu(const char* name, const std::vector<Example>& examples) : BMenu(name) {
    for (const Example& example : examples) {
        auto* const message = new BMessage(kOpenExample);
        message->AddString(kPathField, example.path);
        auto* const item = new BMenuItem(example.title.c_str(), message);
        std::string lines;
        for (const std::string& line : example.lines)
            lines += (lines.empty() ? "" : "\n") + line;
        item->SetToolTip(lines);
        AddItem(item);
    }
}

BArchivable* ExampleMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "ExampleMenu") ? new ExampleMenu(archive) : nullptr;
}

void ExampleMenu::AttachedToWindow() {
    SetTargetForItems(be_app);
}
