// A menu of which one item is marked, for a menu field; or one that opens at a place. Rules as for
// BMenu.
#pragma once

#include "BMenu.h"

class BPopUpMenu : public BMenu {
public:
    explicit BPopUpMenu(const char* name, bool isRadioMode = true, bool isLabelFromMarked = true);
    explicit BPopUpMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

    // Opens the menu with its left-top corner at a point of `view` (in its window coordinates, as
    // mouse input gives it) and returns at once. The menu must have been attached with
    // `view->Attach...`; items send their messages as usual.
    void Go(BView* view, BPoint where);
};
