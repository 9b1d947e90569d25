// A page of text with pictures, from an HTML file. Its links lead to places in it, to pages beside
// it, or out of the program, to the desktop's own browser. It is read with the keyboard: arrows and
// Page Up/Down scroll, Tab goes from link to link, Enter follows one, Alt+Left goes back. Pictures
// are no wider than the view. Rules as for BView.
#pragma once

#include <string>

#include "Platform/Interface/Handles/BView.h"

class BPageView : public BView {
public:
    explicit BPageView(const char* name);

    void SetFile(const char* path);
    // Plain text instead, with its lines as they are.
    void SetText(const std::string& text);
};
