#include "Simulation/MessageBoxes.h"

#include <algorithm>

#include "Application/MessageBoxes/MessageWindow.h"
#include "Application/MessageBoxes/StandingAnswer.h"
#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/CommonTexts.h"
#include "Resources/Menus.h"
#include "Resources/MessageBoxes.h"
#include "Simulation/SimulationHost.h"

namespace {

constexpr BPoint kConfirmationPlace{50.0f, 50.0f};

}  // namespace

// --- Whether to save ---

void MessageBoxes::MakeQuitConfirm(const std::string& simulationName) {
    if (MessageWindow* const box = MessageWindowFromID(MessageWindow::kSaveConfirmation))
        return box->Activate();
    const InterfaceTexts& texts = *host_->Context().texts;
    const BMessenger target(owner_);
    const error_option dontSave{texts.Label(kLabelDontSave), BMessage(kReallyQuit), target};
    const error_option cancel{texts.Label(kLabelCancel), BMessage(kCancelQuit), target};
    const error_option save{texts.Label(kLabelSave), BMessage(kSaveThenQuit), target};
    const std::string question =
        texts.Label(kLabelSaveChanges) + simulationName + texts.Label(kLabelQuestion);
    auto* const box = new MessageWindow(
        MessageWindow::kSaveConfirmation, owner_, kConfirmationPlace, simulationName.c_str(), false,
        question.c_str(), &dontSave, &cancel, &save, texts.Text(kLabelNeverAsk), texts);
    boxes_.push_back(box);
    box->Show();
}

void MessageBoxes::HandleDefaultResponse(const BMessage& reply, int32 windowID, uint32 command) {
    bool isForGood = false;
    if (reply.FindBool(MessageWindow::kCheckBoxField, &isForGood) != B_OK || !isForGood) return;
    BMessage response(kSetDefaultResponse);
    StandingAnswer{windowID, command}.AddTo(&response);
    WindowServer::Deliver(host_->Application(), response);
}

// --- Building ---

void MessageBoxes::MakeBuilding() {
    const InterfaceTexts& texts = *host_->Context().texts;
    auto* const box =
        new MessageWindow(MessageWindow::kBuilding, owner_, {}, nullptr, true,
                          texts.Text(kLabelBuilding), nullptr, nullptr, nullptr, nullptr, texts);
    boxes_.push_back(box);
    // Or its lock would stay with this thread, and another one that ends the simulation would wait.
    box->Run();
}

BMessenger MessageBoxes::Building() const {
    MessageWindow* const box = MessageWindowFromID(MessageWindow::kBuilding);
    return box == nullptr ? BMessenger() : BMessenger(box);
}

bool MessageBoxes::EndBuilding() {
    const MessageWindow* const box = MessageWindowFromID(MessageWindow::kBuilding);
    const bool isAwaited = box == nullptr || box->IsHidden() || box->IsActive();
    DeleteMessageWindow(box);
    return isAwaited;
}

// --- The list ---

MessageWindow* MessageBoxes::MessageWindowFromID(int32 id) const {
    const auto found = std::find_if(boxes_.begin(), boxes_.end(),
                                    [id](const MessageWindow* box) { return box->ID() == id; });
    return found == boxes_.end() ? nullptr : *found;
}

void MessageBoxes::DeleteMessageWindow(const MessageWindow* box) {
    const auto found = std::find(boxes_.begin(), boxes_.end(), box);
    if (found == boxes_.end()) return;
    MessageWindow* const doomed = *found;
    boxes_.erase(found);
    BLooper::QuitIfAlive(doomed);
}

void MessageBoxes::DeleteAll() {
    while (!boxes_.empty())
        DeleteMessageWindow(boxes_.back());
}
