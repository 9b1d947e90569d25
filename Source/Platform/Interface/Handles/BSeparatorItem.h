// A line between the items of a menu. Rules as for BMenuItem.
#pragma once

#include "Platform/Interface/Handles/BMenuItem.h"

class BSeparatorItem : public BMenuItem {
public:
    BSeparatorItem();
    explicit BSeparatorItem(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
};
