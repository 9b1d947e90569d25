// The row of menus at the top of a window. Add menus to it, and it to the window. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class BMenuBar : public BMenu {
public:
    explicit BMenuBar(const char* name);
};
