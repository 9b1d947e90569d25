// The window server's half of a menu item: an action in the widget of its menu. Shared like a
// ViewPart; for the server's thread, except for the identifier.
#pragma once

#include <QAction>
#include <QIcon>
#include <QPointer>
#include <memory>

#include "Platform/Interface/Server/ViewPart.h"

class MenuItemPart : public std::enable_shared_from_this<MenuItemPart> {
public:
    struct Look {
        QString label;
        QString tip;
        QKeySequence shortcut;
        bool isEnabled = true;
        bool isMarked = false;
        bool isMarkable = false;
        bool isRadio = false;  // one of several that exclude each other
    };

    explicit MenuItemPart(bool isSeparator);

    // Names the item in what its menu is told.
    static constexpr const char* kItemField = "item";  // int64
    [[nodiscard]] int64 Id() const { return id_; }

    // `submenu` may be null.
    void Insert(ViewPart& menu, int32 index, ViewPart* submenu);
    void Remove();
    void SetLook(const Look& look);
    // `fine` may be null.
    void SetIcon(const QImage& icon, const QImage& fine);

private:
    void Chosen(const ViewPart& menu) const;
    void ShowTip() const;
    void ShowLook();

    const int64 id_;
    const bool isSeparator_;
    Look look_;
    QIcon icon_;
    QPointer<QAction> action_;
};
