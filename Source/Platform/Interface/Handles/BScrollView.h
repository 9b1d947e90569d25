// Shows a part of a view that may be larger, with scroll bars where they are needed. A view that
// has no size of its own, such as a canvas, fills it, and tells what there is beyond its edges:
// then bars lie over the edges. Rules as for BView.
#pragma once

#include <functional>

#include "Platform/Interface/Handles/BView.h"
#include "Platform/Interface/Server/ScrollRange.h"

class BScrollView : public BView {
public:
    // How large it would be, if there is room: some part, or all of the target.
    enum class Size { kAny, kOfTarget };

    // Takes the target over.
    BScrollView(const char* name, BView* target, Size size = Size::kAny);

    [[nodiscard]] BView* Target() const { return ChildAt(0); }
    // Asks the server.
    [[nodiscard]] float BarWidth() const;

    // --- Over the edges ---
    // A bar goes when all is shown.
    void SetRanges(const ScrollRange& horizontal, const ScrollRange& vertical);
    // What screen readers call the bars.
    void SetBarNames(const char* horizontal, const char* vertical);
    // Is told by how many pixels the user wants to see what is further right, and further down.
    void SetScroller(std::function<void(float right, float down)> scroller) {
        scroller_ = std::move(scroller);
    }

protected:
    void Changed(const BMessage& message) override;

private:
    ScrollRange horizontal_;
    ScrollRange vertical_;
    std::function<void(float, float)> scroller_;
};
