// A menu of which one item is marked, for a menu field; or one that opens at a place. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class BPopUpMenu : public BMenu {
public:
    explicit BPopUpMenu(const char* name, bool isRadioMode = true, bool isLabelFromMarked = true);
    explicit BPopUpMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
};
