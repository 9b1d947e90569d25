// The window that shows the examples with their pictures, and has the application open a copy of
// the one that is chosen. It is no simulation, and nothing waits for it. Made and ended by the
// application; closing it only hides it.
#pragma once

#include <vector>

#include "Interface Widgets/ExampleMenu.h"
#include "Platform/Interface/Handles/BWindow.h"

class BColumnListView;
class BView;
class InterfaceTexts;

class GalleryWindow : public BWindow {
public:
    GalleryWindow(std::vector<Example> examples, const InterfaceTexts& texts);

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

private:
    [[nodiscard]] static BView* MakeFoot(const InterfaceTexts& texts);
    void FillList(const InterfaceTexts& texts);

    const std::vector<Example> examples_;  // a row's key is the place of its example here
    BColumnListView* const list_;
};
