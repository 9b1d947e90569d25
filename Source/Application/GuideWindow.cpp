#include "Application/GuideWindow.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BPageView.h"
#include "Resources/Help.h"

namespace {

// In sizes of the plain font: lines that are easily read.
constexpr float kWidth = 62.0f;
constexpr float kHeight = 52.0f;

BRect FirstFrame() {
    const float unit = BFont().Size();
    return {0.0f, 0.0f, kWidth * unit, kHeight * unit};
}

}  // namespace

GuideWindow::GuideWindow(const std::string& path, const InterfaceTexts& texts)
    : BWindow(FirstFrame(), texts.Text(kTextGuideTitle), B_TITLED_WINDOW, B_CLOSE_ON_ESCAPE) {
    auto* const page = new BPageView("page");
    page->SetAccessibleName(texts.Text(kTextGuideContents));
    page->SetStretch(1, 1);
    AddChild(page);
    page->SetFile(path.c_str());
    page->MakeFocus();
    CenterOnScreen();
}

bool GuideWindow::QuitRequested() {
    Hide();
    return false;
}
