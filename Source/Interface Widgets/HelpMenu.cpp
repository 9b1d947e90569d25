#include "Interface Widgets/HelpMenu.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Resources/Help.h"

HelpMenu::HelpMenu(const InterfaceTexts& texts) : BMenu(texts.Text(kTextHelp)) {
    AddItem(new BMenuItem(texts.Text(kTextGuide), new BMessage(kShowGuide), B_HELP_KEY));
    SetTargetForItems(be_app);
}
