// A window: a looper with a thread of its own, and a tree of views. Made with `new`, hidden and
// locked by the maker; the first Show (or Run) starts its thread and gives up that lock; ends with
// Quit. Its close box sends it B_QUIT_REQUESTED. Calls need the lock, except the ones under "Any
// thread". The calls that place and show it are queued to the window server and return at once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Application/BLooper.h"
#include "Platform/Interface/Handles/BView.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Support/GraphicsDefs.h"

class BBitmap;
class BButton;
class WindowPart;

class BWindow : public BLooper {
public:
    // The frame is that of the content, without borders; right and bottom are its last pixels. With
    // an empty frame (the default one) the content decides about the size.
    BWindow(BRect frame, const char* title, window_type type, uint32 flags = 0);
    ~BWindow() override;

    // --- Any thread ---
    // The first call by the maker runs the looper. Hiding and showing do not nest.
    virtual void Show();
    virtual void Hide();
    [[nodiscard]] bool IsHidden() const;
    virtual void SetTitle(const char* title);
    [[nodiscard]] std::string Title() const;
    // Where the window was last seen by the server, or was put since.
    [[nodiscard]] BRect Frame() const;
    void MoveTo(BPoint leftTop);
    void ResizeTo(float width, float height);  // right - left, bottom - top
    void ResizeToPreferred();
    // What the content wants, as Frame().Width() and Height() would be. Asks the server.
    void GetPreferredSize(float* width, float* height) const;
    void CenterOnScreen();
    // The least and the greatest Frame().Width() and Height().
    void SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight);
    // Brings it to the front and gives it the keyboard.
    void Activate(bool isActive = true);
    [[nodiscard]] bool IsActive() const;
    // Marks the title as that of a document with changes that are not saved.
    void SetModified(bool isModified);
    // Files dropped on the window come to it as B_REFS_RECEIVED.
    void SetAcceptsFiles(bool accepts);
    // B_PULSE comes every so many microseconds while the window is shown; 0: never. A pulse that
    // was not yet handled is not followed by another.
    void SetPulseRate(bigtime_t microseconds);

    // --- With the lock ---
    // Takes the view over and puts it below the others; a menu bar goes to the top.
    void AddChild(BView* view);
    [[nodiscard]] int32 CountChildren() const { return root_->CountChildren(); }
    [[nodiscard]] BView* ChildAt(int32 index) const { return root_->ChildAt(index); }
    [[nodiscard]] BView* FindView(const char* name) const;
    // The button pressed by the Enter key; null for none.
    void SetDefaultButton(BButton* button);
    // The button pressed by the Escape key; null for none.
    void SetCancelButton(BButton* button);

    // `key`: a character; a capital letter means with the shift key. The command key is always part
    // of it. Takes the message over; it goes to `target`, or to this window. Replaces a shortcut of
    // the same key. Shortcuts of menus come before those of the window. At first there is 'W',
    // which sends B_QUIT_REQUESTED to the window, unless it is not closable, and 'Q', which sends
    // it to the application.
    void AddShortcut(uint32 key, uint32 modifiers, BMessage* message,
                     const BHandler* target = nullptr);
    void RemoveShortcut(uint32 key, uint32 modifiers);

    // Calls the hooks below for the window's own messages.
    void DispatchMessage(BMessage* message, BHandler* handler) override;
    // Hooks, on the window's thread. Several changes may come as one; the last one counts.
    virtual void FrameMoved(BPoint leftTop);
    virtual void FrameResized(float width, float height);
    virtual void WindowActivated(bool isActive);
    virtual void ScreenChanged(BRect frame);

    // Shows nothing: runs the thread of a window that is to build itself before it is seen.
    thread_id Run() override;
    void Quit() override;

    // For the classes of this floor.
    [[nodiscard]] const std::shared_ptr<WindowPart>& Part() const { return part_; }

private:
    friend class BView;

    const std::shared_ptr<WindowPart> part_;
    std::unique_ptr<BView> root_;
    const uint32 flags_;
};
