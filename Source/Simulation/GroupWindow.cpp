#include "Simulation/GroupWindow.h"

#include <algorithm>

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BCheckBox.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BScrollView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BTextControl.h"
#include "Resources/CommonTexts.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"

namespace {

constexpr uint32 kPressed = FourCC("prsd");
constexpr uint32 kToggled = FourCC("tggl");

constexpr float kListWidth = 280.0f;
constexpr float kListHeight = 220.0f;

}  // namespace

GroupWindow::GroupWindow(BPoint at, const std::vector<Choice>& choices, BLooper* owner,
                         const InterfaceTexts* texts)
    : SubWindow({at.x, at.y, at.x - 1.0f, at.y - 1.0f}, texts->Text(kTextGroupTitle),
                B_MODAL_WINDOW, B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE | B_CLOSE_ON_ESCAPE, owner,
                texts) {
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    name_ = new BTextControl("name", texts->Text(kLabelName), texts->Text(kTextGroupName), nullptr);
    column->AddChild(name_);
    column->AddChild(new BStringView("of", texts->Text(kTextGroupOf)));
    auto* const list = new BScrollView("list", MakeChoices(choices));
    list->SetExplicitMinSize(kListWidth, kListHeight);
    list->SetStretch(1, 1);
    column->AddChild(list);
    column->AddChild(MakeButtons());
    AddChild(column);
    name_->SelectAll();
    name_->MakeFocus();
    EnableGroup();
}

BGroupView* GroupWindow::MakeChoices(const std::vector<Choice>& choices) {
    auto* const view = new BGroupView("choices", B_VERTICAL, 0.0f);
    for (const Choice& choice : choices) {
        auto* const box = new BCheckBox("system", choice.name.c_str(), new BMessage(kToggled));
        box->SetValue(choice.isChosen ? B_CONTROL_ON : B_CONTROL_OFF);
        view->AddChild(box);
        rows_.push_back({choice.id, box});
    }
    view->AddStretch();
    return view;
}

BView* GroupWindow::MakeButtons() {
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    row->AddStretch();
    row->AddChild(
        new BButton("cancel", Texts().Text(kLabelCancel), new BMessage(B_QUIT_REQUESTED)));
    group_ = new BButton("group", Texts().Text(kTextGroupButton), new BMessage(kPressed));
    row->AddChild(group_);
    SetDefaultButton(group_);
    return row;
}

void GroupWindow::EnableGroup() {
    group_->SetEnabled(std::ranges::any_of(
        rows_, [](const Row& row) { return row.box->Value() == B_CONTROL_ON; }));
}

void GroupWindow::Group() {
    BMessage message(kGroup);
    message.AddString(kNameField, name_->TakePendingText().value_or(name_->Text()));
    for (const Row& row : rows_)
        if (row.box->Value() == B_CONTROL_ON) message.AddInt64(kBodyIDField, row.id);
    SendToOwner(message);
}

void GroupWindow::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kPressed:
            Group();
            QuitRequested();
            break;
        case kToggled:
            EnableGroup();
            break;
        default:
            SubWindow::MessageReceived(message);
    }
}

bool GroupWindow::QuitRequested() {
    Hide();
    SendToOwner(BMessage(kClosed));
    return false;
}
