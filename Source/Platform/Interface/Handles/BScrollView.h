// Shows a part of a view that may be larger, with scroll bars where they are needed. A view that
// has no size of its own, such as a canvas, fills it. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BScrollView : public BView {
public:
    // Takes the target over.
    BScrollView(const char* name, BView* target);

    [[nodiscard]] BView* Target() const { return ChildAt(0); }
};
