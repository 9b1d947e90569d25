// One line of a menu: sends a message or opens a submenu. The menu that it is in owns it, and the
// window's lock guards it; before that it belongs to the thread that made it.
#pragma once

#include <memory>
#include <string>

#include "Platform/Interface/Handles/BInvoker.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Support/BArchivable.h"

class BBitmap;
class BMenu;
class MenuItemPart;

class BMenuItem : public BArchivable, public BInvoker {
public:
    // Takes the message over. `shortcut`: a letter in either case, together with the command key
    // and the further `modifiers`; 0 for none.
    BMenuItem(const char* label, BMessage* message, char shortcut = 0, uint32 modifiers = 0);
    // Takes the submenu over; its name is the label.
    explicit BMenuItem(BMenu* submenu, BMessage* message = nullptr);
    explicit BMenuItem(BMessage* archive);
    ~BMenuItem() override;
    BMenuItem(const BMenuItem&) = delete;
    BMenuItem& operator=(const BMenuItem&) = delete;

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // "class" (the object's own class, once), "_label", "_disable" and "_marked" where true,
    // "_shortcut" and "_mods", "_tip", "_msg", and deep "_submenu". Targets are not stored.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    [[nodiscard]] const std::string& Label() const { return label_; }
    virtual void SetLabel(const char* label);
    // What a menu field shows when this item is the marked one; here: the label.
    [[nodiscard]] virtual std::string MarkedLabel() const { return label_; }
    [[nodiscard]] bool IsEnabled() const { return isEnabled_; }
    virtual void SetEnabled(bool isEnabled);
    [[nodiscard]] bool IsMarked() const { return isMarked_; }
    // In a menu in radio mode, marking one item unmarks the others.
    virtual void SetMarked(bool isMarked);
    [[nodiscard]] char Shortcut(uint32* modifiers = nullptr) const;
    virtual void SetShortcut(char shortcut, uint32 modifiers);
    // Shown beside the label, or instead of it in a menu bar. `fine` is the same picture with more
    // pixels, for screens that have more of them. Copies the bitmaps.
    void SetIcon(const BBitmap* icon, const BBitmap* fine = nullptr);
    // Shown below the menu while the item is the one that would be chosen.
    [[nodiscard]] const std::string& ToolTip() const { return tip_; }
    void SetToolTip(const std::string& text);

    [[nodiscard]] BMenu* Submenu() const { return submenu_.get(); }
    // The menu that it is in, or null.
    [[nodiscard]] BMenu* Menu() const { return menu_; }

    // Adds int64 "when" (microseconds), pointer "source" and int32 "index", the item's place. An
    // item without a target of its own sends to its menu's window.
    status_t Invoke(const BMessage* message = nullptr) override;

protected:
    struct Separator {};
    explicit BMenuItem(Separator);
    BMenuItem(Separator, BMessage* archive);

    [[nodiscard]] BMessenger DefaultTarget() const override;

private:
    friend class BMenu;

    // Shows the item as it is now.
    void UpdatePart();

    std::shared_ptr<MenuItemPart> part_;
    std::string label_;
    std::string tip_;
    char shortcut_ = 0;
    uint32 modifiers_ = 0;
    bool isEnabled_ = true;
    bool isMarked_ = false;
    std::unique_ptr<BMenu> submenu_;
    BMenu* menu_ = nullptr;
};

// A line between the items of a menu.
class BSeparatorItem : public BMenuItem {
public:
    BSeparatorItem();
    explicit BSeparatorItem(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
};
