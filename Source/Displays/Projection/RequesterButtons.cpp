#include "Displays/Projection/RequesterButtons.h"

#include "Displays/Base/Display.h"
#include "Interface Widgets/InterfaceLabels.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BWindow.h"

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
}
