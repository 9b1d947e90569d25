// Shows a part of a view that may be larger, with scroll bars where they are needed. A view that
// has no size of its own, such as a canvas, fills it. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BScrollView : public BView {
public:
    // How large it would be, if there is room: some part, or all of the target.
    enum class Size { kAny, kOfTarget };

    // Takes the target over.
    BScrollView(const char* name, BView* target, Size size = Size::kAny);

    [[nodiscard]] BView* Target() const { return ChildAt(0); }
    // Asks the server.
    [[nodiscard]] float BarWidth() const;
};
