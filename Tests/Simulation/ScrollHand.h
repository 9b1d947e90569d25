// A user whose font is large, in a window that scrolls for it. Its time is that of the test.
#pragma once

#include <memory>

class BView;
class BWindow;
class QFont;

// As long as it lives everything new is written in large letters.
class LargeFont {
public:
    LargeFont();
    ~LargeFont();
    LargeFont(const LargeFont&) = delete;
    LargeFont& operator=(const LargeFont&) = delete;

private:
    std::unique_ptr<const QFont> usual_;
};

class ScrollHand {
public:
    // `last`: the field that the keyboard comes to last.
    ScrollHand(const BWindow* window, const BView* last) : window_(window), last_(last) {}

    // Up and down, and not sideways.
    [[nodiscard]] bool CanScroll() const;
    [[nodiscard]] bool SeesLast() const;
    void TabToLast() const;

private:
    const BWindow* const window_;
    const BView* const last_;
};
