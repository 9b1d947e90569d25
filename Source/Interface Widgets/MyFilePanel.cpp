#include "Interface Widgets/MyFilePanel.h"

#include <cmath>

#include "Interface Widgets/PanelFolder.h"
#include "Platform/Interface/Handles/BFont.h"

namespace {

// More font sizes than any screen has.
constexpr float kMaxSize = 10000.0f;

bool IsSize(float size) {
    return size > 0.0f && size < kMaxSize;
}

}  // namespace

MyFilePanel::MyFilePanel(file_panel_mode mode, const BMessenger& target, const entry_ref* directory)
    : BFilePanel(mode, target) {
    if (directory != nullptr) MyFilePanel::SetPanelDirectory(directory);
}

void MyFilePanel::SetPanelDirectory(const entry_ref* directory) {
    if (directory == nullptr) return BFilePanel::SetPanelDirectory(nullptr);
    const entry_ref folder = PanelFolder(*directory);
    BFilePanel::SetPanelDirectory(&folder);
}

void MyFilePanel::GetArea(BPoint* at, float* width, float* height) const {
    const BRect frame = Frame();
    const float unit = BFont().Size();
    const bool hasFrame = frame.Width() > 0.0f && frame.Height() > 0.0f && unit > 0.0f;
    *at = hasFrame ? BPoint{frame.left, frame.top} : BPoint{};
    *width = hasFrame ? frame.Width() / unit : 0.0f;
    *height = hasFrame ? frame.Height() / unit : 0.0f;
}

void MyFilePanel::SetArea(BPoint at, float width, float height) {
    const float unit = BFont().Size();
    if (!IsSize(width) || !IsSize(height) || !std::isfinite(at.x) || !std::isfinite(at.y)) return;
    // Whole pixels, or the panel would shrink a little each time it is remembered.
    SetFrame({at.x, at.y, at.x + std::round(width * unit), at.y + std::round(height * unit)});
}
