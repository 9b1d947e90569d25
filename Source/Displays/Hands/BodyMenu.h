// The menu of a body, which a right click on it opens. Owned by the hands of a display, and used
// with the display's lock.
#pragma once

#include "Displays/Projection/BodyLabels.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class BPopUpMenu;
class BView;
class Display;
class InterfaceTexts;

class BodyMenu {
public:
    // None is owned.
    BodyMenu(Display* display, const InterfaceTexts& texts);

    // In which it opens; not owned either.
    void SetView(BView* view);
    // In mass order.
    void OpenFor(int32 body, const BodyLabels& labels);
    // Sends the owner what an item of the menu asks for; false for any other message.
    [[nodiscard]] bool Handle(const BMessage& message);

private:
    void AddItem(int32 label, uint32 what);
    void AddReferences(const BodyLabels& labels);

    Display* const display_;
    const InterfaceTexts& texts_;
    BPopUpMenu* menu_ = nullptr;
    int64 body_ = -1;
};
