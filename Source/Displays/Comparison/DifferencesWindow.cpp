#include "Displays/Comparison/DifferencesWindow.h"

#include "Displays/Base/WindowPlacement.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BPageView.h"

namespace {

// In sizes of the plain font.
constexpr float kWidth = 46.0f;
constexpr float kHeight = 20.0f;

BRect FrameAt(BPoint at) {
    const float unit = BFont().Size();
    return {at.x, at.y, at.x + kWidth * unit, at.y + kHeight * unit};
}

}  // namespace

DifferencesWindow::DifferencesWindow(BPoint at, const std::string& text, const std::string& title)
    : BWindow(FrameAt(at), title.c_str(), B_TITLED_WINDOW, B_CLOSE_ON_ESCAPE),
      page_(new BPageView("text")) {
    page_->SetAccessibleName(title.c_str());
    page_->SetStretch(1, 1);
    AddChild(page_);
    page_->SetText(text);
    page_->MakeFocus();
    keep_on_screen(this);
}

void DifferencesWindow::MessageReceived(BMessage* message) {
    std::string text;
    if (message->what == kText && message->FindString(kTextField, &text) == B_OK)
        return page_->SetText(text);
    BWindow::MessageReceived(message);
}
