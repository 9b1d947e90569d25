#include "HelpMenu.h"

#include "BApplication.h"
#include "BMessage.h"
#include "HelpKey.h"
#include "HelpTexts.h"
#include "InterfaceTexts.h"

HelpMenu::HelpMenu(const InterfaceTexts& texts) : BMenu(texts.Text(kTextHelp)) {
    AddItem(new BMenuItem(texts.Text(kTextGuide), new BMessage(kShowGuide), B_HELP_KEY));
    SetTargetForItems(static_cast<BHandler*>(be_app));
}
