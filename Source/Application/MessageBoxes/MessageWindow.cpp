#include "Application/MessageBoxes/MessageWindow.h"

#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BCheckBox.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/CommonTexts.h"

namespace {

constexpr uint32 kPressed[] = {FourCC("left"), FourCC("midl"), FourCC("rght")};
// Longer lines of the text are broken; in logical pixels.
constexpr float kWidestText = 560.0f;
constexpr float kSpaceAboveButtons = 8.0f;

std::string TitleFor(const char* ownerName, const InterfaceTexts& texts) {
    if (ownerName == nullptr) return texts.Label(kLabelMessage);
    return texts.Label(kLabelMessageBefore) + ownerName + texts.Label(kLabelMessageAfter);
}

std::optional<error_option> CopyOf(const error_option* option) {
    return option == nullptr ? std::nullopt : std::optional(*option);
}

}  // namespace

MessageWindow::MessageWindow(int32 id, BLooper* owner, BPoint where, const char* ownerName,
                             bool isCentered, const char* text, const error_option* left,
                             const error_option* middle, const error_option* right,
                             const char* checkBoxLabel, const InterfaceTexts& texts)
    : BWindow({where.x, where.y, where.x - 1.0f, where.y - 1.0f},
              TitleFor(ownerName, texts).c_str(), B_MODAL_WINDOW,
              B_NOT_RESIZABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE | B_CLOSE_ON_ESCAPE),
      id_(id),
      owner_(owner),
      options_{CopyOf(left), CopyOf(middle), CopyOf(right)} {
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    auto* const message = new BStringView("text", text);
    message->SetSelectable(true);
    message->LimitWidth(kWidestText);
    message->SetStretch(1, 1);
    column->AddChild(message);
    if (checkBoxLabel != nullptr) {
        checkBox_ = new BCheckBox("check box", checkBoxLabel, nullptr);
        column->AddChild(checkBox_);
    }
    column->AddSpace(kSpaceAboveButtons);
    BButton* usual = nullptr;
    column->AddChild(MakeButtons(&usual));
    AddChild(column);
    if (usual != nullptr) {
        SetDefaultButton(usual);
        // Only what is in a window can have its keyboard.
        usual->MakeFocus();
    }
    if (be_app != nullptr) AddShortcut(B_HELP_KEY, 0, new BMessage(HelpMenu::kShowGuide), be_app);
    if (isCentered) CenterOnScreen();
}

BView* MessageWindow::MakeButtons(BButton** last) const {
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    row->AddStretch();
    for (std::size_t i = 0; i < options_.size(); i++) {
        if (!options_[i]) continue;
        *last = new BButton("button", options_[i]->label.c_str(), new BMessage(kPressed[i]));
        row->AddChild(*last);
    }
    return row;
}

void MessageWindow::DoMessage(const error_option& option) {
    if (isDone_) return;
    if (option.target.IsValid()) {
        BMessage answer(option.message);
        if (checkBox_ != nullptr)
            answer.AddBool(kCheckBoxField, checkBox_->Value() == B_CONTROL_ON);
        WindowServer::Deliver(option.target, answer);
    }
    QuitRequested();
}

void MessageWindow::MessageReceived(BMessage* message) {
    for (std::size_t i = 0; i < options_.size(); i++)
        if (message->what == kPressed[i] && options_[i]) return DoMessage(*options_[i]);
    if (message->what == kShowSelf) {
        if (!isDone_ && IsHidden()) Show();
        return;
    }
    BWindow::MessageReceived(message);
}

bool MessageWindow::QuitRequested() {
    isDone_ = true;
    Hide();
    BMessage closed(kDeleteMessageWindow);
    closed.AddPointer(kDoomedMessageWindow, this);
    WindowServer::Deliver(owner_, closed);
    return false;
}
