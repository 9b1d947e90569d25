// A menu of which one item is marked, for a menu field; or one that opens at a place. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class BPopUpMenu : public BMenu {
public:
    explicit BPopUpMenu(const char* name, bool isRadioMode = true, bool isLabelFromMarked = true);
    explicit BPopUpMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

    // Opens the menu where the mouse is and returns at once. It must be in a window (BView::Adopt).
    void Go();
};
