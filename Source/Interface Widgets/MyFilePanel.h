// A file panel whose place and size can be remembered for other font sizes: the size is told in
// sizes of the plain font. Rules as for BFilePanel.
#pragma once

#include "BFilePanel.h"

class MyFilePanel : public BFilePanel {
public:
    using BFilePanel::BFilePanel;

    // A panel that never had a place has width and height 0.
    void GetArea(BPoint* at, float* width, float* height) const;
    // A width or height of 0, or what is not a size, changes nothing: there is nothing to remember.
    void SetArea(BPoint at, float width, float height);
};
