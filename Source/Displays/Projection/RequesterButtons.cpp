#include "Displays/Projection/RequesterButtons.h"

#include <utility>

#include "Displays/Base/Display.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Resources/CommonTexts.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"

namespace {

// Those of the simulation: the dialog asks nothing that they would have to wait for.
void AddSimulationKeys(BWindow* dialog, const Display& display) {
    const InterfaceTexts& texts = display.Texts();
    if (be_app != nullptr)
        dialog->AddShortcut(B_HELP_KEY, 0, new BMessage(HelpMenu::kShowGuide), be_app);
    const std::pair<int32, uint32> keys[] = {{kLabelGoKey, kTogglePause},
                                             {kLabelNewBodyKey, kNewBody},
                                             {kLabelAnimationKey, kShowAnimation},
                                             {kLabelEpochsKey, kShowEpochs}};
    for (const auto& [label, what] : keys)
        if (const char key = texts.LowerKey(label); key != '\0')
            dialog->AddShortcut(static_cast<uint8>(key), 0, new BMessage(what), display.Owner());
}

}  // namespace

void AddRequesterContent(BWindow* dialog, BView* content, Display* display, uint32 cancel) {
    const InterfaceTexts& texts = display->Texts();
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    column->AddChild(content);
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    column->AddChild(row);
    auto* const no = new BButton("cancel", texts.Text(kLabelCancel), new BMessage(cancel));
    no->SetTarget(display);
    auto* const use = new BButton("use", texts.Text(kLabelUse), new BMessage(B_QUIT_REQUESTED));
    row->AddStretch();
    row->AddChild(no);
    row->AddChild(use);
    dialog->AddChild(column);
    dialog->SetDefaultButton(use);
    dialog->SetCancelButton(no);
    AddSimulationKeys(dialog, *display);
}
