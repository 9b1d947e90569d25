#include "Interface Widgets/SubWindow.h"

#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"

SubWindow::SubWindow(BRect frame, const char* title, window_type look, uint32 flags, BLooper* owner,
                     const InterfaceTexts* texts)
    : BWindow(frame, title, look, flags), owner_(owner), texts_(texts) {
    if (be_app != nullptr) AddShortcut(B_HELP_KEY, 0, new BMessage(HelpMenu::kShowGuide), be_app);
    AddKey(Texts().LowerKey(kLabelNewSimulationKey), kNewSimulation);
    AddKey(Texts().LowerKey(kLabelOpenKey), kOpen);
    AddKey(Texts().LowerKey(kLabelSaveKey), kSave);
    AddKey(Texts().LowerKey(kLabelUndoKey), kUndo);
    AddKey(Texts().UpperKey(kLabelUndoKey), kRedo);
    AddKey(Texts().LowerKey(kLabelGoKey), kTogglePause);
    AddKey(Texts().LowerKey(kLabelNewBodyKey), kNewBody);
    AddKey(Texts().LowerKey(kLabelAnimationKey), kShowAnimation);
    AddKey(Texts().LowerKey(kLabelEpochsKey), kShowEpochs);
    SetAcceptsFiles(true);
}

void SubWindow::AddKey(char key, uint32 what) {
    if (key != '\0') AddShortcut(static_cast<uint8>(key), 0, new BMessage(what));
}

void SubWindow::SendToOwner(const BMessage& message) const {
    WindowServer::Deliver(owner_, message);
}

void SubWindow::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kNewSimulation:
        case kOpen:
            if (be_app != nullptr) WindowServer::Deliver(be_app, *message);
            break;
        case kSave:
        case kUndo:
        case kRedo:
        case kTogglePause:
        case kNewBody:
        case kShowAnimation:
        case kShowEpochs:
        case B_REFS_RECEIVED:  // files were dropped on the window
            SendToOwner(*message);
            break;
        default:
            break;
    }
}
