// A piece of a window. The handle of a widget that the window server owns: calls that change
// something are queued and return at once, and what was set is answered from the handle's own copy.
// A view belongs to its parent view or window, which deletes it. Every call needs the lock of the
// window that the view is in; before that it belongs to the thread that made it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Application/BHandler.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Support/GraphicsDefs.h"

class BWindow;
class ViewPart;

class BView : public BHandler {
public:
    // A plain area; its children lie one below the other.
    explicit BView(const char* name);
    // Leaves its parent and deletes its children.
    ~BView() override;

    // Takes the child over and puts it at the end. Not for a view that has a parent.
    void AddChild(BView* child);
    // The same for a child that has no place among the others: a menu that pops up.
    void Adopt(BView* child);
    // The child belongs to the caller again. False if it is none of this view's.
    bool RemoveChild(BView* child);
    [[nodiscard]] BView* Parent() const { return parent_; }
    [[nodiscard]] BWindow* Window() const { return window_; }
    [[nodiscard]] int32 CountChildren() const { return static_cast<int32>(children_.size()); }
    // Null if there is none.
    [[nodiscard]] BView* ChildAt(int32 index) const;
    // This view or the first one below it that has the name, or null.
    [[nodiscard]] BView* FindView(const char* name);

    virtual void Hide();
    virtual void Show();
    // What was asked for, whether or not parent and window are visible.
    [[nodiscard]] bool IsHidden() const { return isHidden_; }

    virtual void MakeFocus(bool isFocus = true);
    void SetToolTip(const char* text);
    // What a screen reader says; controls with a label need none. A text that is read is its own
    // name: what it is about is a description.
    void SetAccessibleName(const char* text);
    void SetAccessibleDescription(const char* text);
    // Sizes in logical pixels; negative: as the toolkit thinks best.
    void SetExplicitMinSize(float width, float height);
    void SetExplicitMaxSize(float width, float height);
    // Takes up what is left over in this direction, with `weight` parts of it.
    void SetStretch(int32 horizontal, int32 vertical);

    // Its area, from (0, 0). Asks the server; at the queue's end.
    [[nodiscard]] virtual BRect Bounds() const;

    // Called when the view has come into a window (parents first) and before it leaves it. Not
    // called by the destructor.
    virtual void AttachedToWindow() {}
    virtual void DetachedFromWindow() {}

    void MessageReceived(BMessage* message) override;

    // For the classes of this floor.
    [[nodiscard]] const std::shared_ptr<ViewPart>& Part() const { return part_; }

protected:
    BView(const char* name, std::shared_ptr<ViewPart> part);
    BView(BMessage* archive, std::shared_ptr<ViewPart> part);

    // The user changed something; `message` holds what, in fields of the class's own.
    virtual void Changed(const BMessage& message);

private:
    friend class BWindow;

    void Attach(BWindow* window);
    void Detach();

    std::shared_ptr<ViewPart> part_;
    BView* parent_ = nullptr;
    BWindow* window_ = nullptr;
    std::vector<BView*> children_;
    bool isHidden_ = false;
};
