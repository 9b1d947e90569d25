// A list of items that the user chooses from. Lies in a menu bar, in a menu field or in another
// menu, which owns it, and owns its items. Rules as for BView; archives can be made and read
// without a window or a window server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Interface/Handles/BMenuItem.h"
#include "Platform/Interface/Handles/BView.h"

class BMenu : public BView {
public:
    // The name is also the title.
    explicit BMenu(const char* name);
    explicit BMenu(BMessage* archive);
    ~BMenu() override;

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // "class" (the object's own class, once), "_name", "_radio", "_dyn_label" and "_disable" where
    // true, and deep the items as nested "_items".
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    // Take the item or submenu over; at the end unless there is an index. False for null, an item
    // that is in a menu, or an index out of range.
    virtual bool AddItem(BMenuItem* item);
    virtual bool AddItem(BMenuItem* item, int32 index);
    bool AddItem(BMenu* submenu);
    bool AddItem(BMenu* submenu, int32 index);
    bool AddSeparatorItem();
    // The item belongs to the caller again. False or null if there is none.
    bool RemoveItem(BMenuItem* item);
    BMenuItem* RemoveItem(int32 index);
    // Deletes all items.
    void RemoveItems();

    [[nodiscard]] int32 CountItems() const { return static_cast<int32>(items_.size()); }
    // Null if there is none.
    [[nodiscard]] BMenuItem* ItemAt(int32 index) const;
    [[nodiscard]] BMenu* SubmenuAt(int32 index) const;
    // -1 if it is not in this menu.
    [[nodiscard]] int32 IndexOf(const BMenuItem* item) const;
    // The first in this menu and its submenus, or null.
    [[nodiscard]] BMenuItem* FindItem(const char* label) const;
    [[nodiscard]] BMenuItem* FindItem(uint32 command) const;
    // The first marked item, or null.
    [[nodiscard]] BMenuItem* FindMarked() const;

    // Choosing an item marks it and unmarks the others.
    void SetRadioMode(bool isRadioMode);
    [[nodiscard]] bool IsRadioMode() const { return isRadioMode_; }
    // A menu field shows the marked item instead of the menu's name.
    void SetLabelFromMarked(bool isLabelFromMarked);
    [[nodiscard]] bool IsLabelFromMarked() const { return isLabelFromMarked_; }
    void SetEnabled(bool isEnabled);
    [[nodiscard]] bool IsEnabled() const { return isEnabled_; }

    // Of the items that are in this menu now, not of its submenus.
    void SetTargetForItems(const BHandler* target);
    void SetTargetForItems(const BMessenger& target);

    // The item in another menu that opens this one, or null.

protected:
    BMenu(const char* name, std::shared_ptr<ViewPart> part);

    void Changed(const BMessage& message) override;
    BMenu(BMessage* archive, std::shared_ptr<ViewPart> part);

private:
    friend class BMenuItem;

    // An item was marked or has another label: the menu field around the menu may show it.
    void UpdateField();
    void UnmarkOthers(const BMenuItem* marked);
    void ReadArchive(BMessage* archive);

    std::vector<std::unique_ptr<BMenuItem>> items_;
    BMenuItem* superitem_ = nullptr;
    bool isRadioMode_ = false;
    bool isLabelFromMarked_ = false;
    bool isEnabled_ = true;
};

// A menu of which one item is marked, for a menu field; or one that opens at a place.
class BPopUpMenu : public BMenu {
public:
    explicit BPopUpMenu(const char* name, bool isRadioMode = true, bool isLabelFromMarked = true);
    explicit BPopUpMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

    // Opens the menu where the mouse is and returns at once. It must be in a window (BView::Adopt).
    void Go();
};
