// Where a display keeps one of its dialogs while it is open, and where that dialog stood when it
// was last closed. Owned and used by the display, on its thread; Place() by whoever holds its lock.
#pragma once

#include <functional>

#include "Platform/Support/GraphicsDefs.h"

class BWindow;

class RequesterSlot {
public:
    [[nodiscard]] BWindow* Requester() const { return requester_; }
    // Where an open dialog is now, or where the closed one was: `place`.
    [[nodiscard]] BPoint Place(BPoint place) const;
    // Makes the dialog and shows it at `place`, on the display's screen, or over the display if it
    // was never placed; one that is open comes to the front instead.
    void Open(const BWindow* display, BPoint place, const std::function<BWindow*()>& make);
    // Quits the dialog and notes where it stood; false if there is none.
    bool Close(BPoint* place);

private:
    BWindow* requester_ = nullptr;
};
