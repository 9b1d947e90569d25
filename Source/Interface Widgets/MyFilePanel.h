// A file panel whose place and size can be remembered for other font sizes: the size counts in
// sizes of the plain font. It begins where users keep documents (PanelFolder.h). Rules as for
// BFilePanel.
#pragma once

#include "Platform/Interface/Handles/BFilePanel.h"

class MyFilePanel : public BFilePanel {
public:
    // `directory` may be null.
    explicit MyFilePanel(file_panel_mode mode = B_OPEN_PANEL, const BMessenger& target = {},
                         const entry_ref* directory = nullptr);

    void SetPanelDirectory(const entry_ref* directory) override;

    // A panel that never had a place has width and height 0.
    void GetArea(BPoint* at, float* width, float* height) const;
    // A width or height of 0, or what is not a size, changes nothing: there is nothing to remember.
    void SetArea(BPoint at, float width, float height);
};
