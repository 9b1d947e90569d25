// Base of the windows that belong to one simulation: knows the looper that owns the simulation and
// passes on to it, or to the application, what concerns them. Made by the owner's thread; otherwise
// the rules of BWindow.
#pragma once

#include "Platform/Interface/Handles/BWindow.h"

class InterfaceTexts;

class SubWindow : public BWindow {
public:
    // Owner and texts must outlive the window. Adds the shortcuts of the messages above.
    SubWindow(BRect frame, const char* title, window_type look, uint32 flags, BLooper* owner,
              const InterfaceTexts* texts);

    [[nodiscard]] BLooper* Owner() const { return owner_; }
    [[nodiscard]] const InterfaceTexts& Texts() const { return *texts_; }

    void MessageReceived(BMessage* message) override;

protected:
    // Sends it without waiting; a full port of the owner delays the message and loses nothing.
    void SendToOwner(const BMessage& message) const;

private:
    void AddKey(char key, uint32 what);

    BLooper* const owner_;
    const InterfaceTexts* const texts_;
};
