#include "Platform/Interface/Server/MenuItemPart.h"

#include <QActionGroup>
#include <QMenu>
#include <QPixmap>
#include <atomic>

#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

// Where the toolkit puts a tip, seen from the place that it is asked for.
constexpr QPoint kTipOffset{2, 14};

int64 NewId() {
    static std::atomic<int64> last{0};
    return ++last;
}

// The group of a menu's items that exclude each other.
QActionGroup* MarksOf(QObject& menu) {
    auto* const group = menu.findChild<QActionGroup*>(QString(), Qt::FindDirectChildrenOnly);
    return group != nullptr ? group : new QActionGroup(&menu);
}

}  // namespace

MenuItemPart::MenuItemPart(bool isSeparator) : id_(NewId()), isSeparator_(isSeparator) {}

void MenuItemPart::Insert(ViewPart& menu, int32 index, ViewPart* submenu) {
    QWidget* const widget = menu.Widget();
    if (widget == nullptr) return;
    action_ = new QAction(widget);
    action_->setSeparator(isSeparator_);
    // "Quit" and "About" stay where they were put.
    action_->setMenuRole(QAction::NoRole);
    if (submenu != nullptr && submenu->Widget() != nullptr)
        action_->setMenu(static_cast<QMenu*>(submenu->Widget()));
    // The widget holds the menu's part.
    QObject::connect(action_, &QAction::triggered, widget,
                     [self = shared_from_this(), &menu] { self->Chosen(menu); });
    QObject::connect(action_, &QAction::hovered, widget, [self = shared_from_this()] {
        if (!self->look_.tip.isEmpty()) self->ShowTip();
    });
    const QList<QAction*> actions = widget->actions();
    widget->insertAction(index < actions.size() ? actions[index] : nullptr, action_);
    ShowLook();
}

void MenuItemPart::Chosen(const ViewPart& menu) const {
    // The toolkit has turned the mark over; that is for the menu to decide. Among those of which
    // one is marked the menu will decide the same.
    if (action_ != nullptr && !look_.isRadio) action_->setChecked(look_.isMarked);
    BMessage message(kViewChanged);
    message.AddInt64(kItemField, id_);
    menu.Tell(message);
}

// Below the menu, whether the mouse or the keyboard has come to the item.
void MenuItemPart::ShowTip() const {
    auto* const menu = qobject_cast<QMenu*>(action_->parent());
    if (menu == nullptr || !menu->isVisible()) return;
    ShowPassingTip(menu->mapToGlobal(menu->rect().bottomLeft() - kTipOffset), look_.tip, menu);
}

void MenuItemPart::Remove() {
    if (action_ == nullptr) return;
    for (QObject* const object : action_->associatedObjects())
        if (auto* const widget = qobject_cast<QWidget*>(object); widget != nullptr)
            widget->removeAction(action_);
    action_->deleteLater();
    action_ = nullptr;
}

void MenuItemPart::SetLook(const Look& look) {
    look_ = look;
    ShowLook();
}

void MenuItemPart::SetIcon(const QImage& icon, const QImage& fine) {
    icon_ = QIcon(QPixmap::fromImage(icon));
    if (!fine.isNull()) icon_.addPixmap(QPixmap::fromImage(fine));
    ShowLook();
}

void MenuItemPart::ShowLook() {
    if (action_ == nullptr) return;
    action_->setText(look_.label);
    action_->setToolTip(look_.tip);
    action_->setShortcut(look_.shortcut);
    action_->setEnabled(look_.isEnabled);
    action_->setCheckable(look_.isMarkable);
    action_->setActionGroup(look_.isRadio ? MarksOf(*action_->parent()) : nullptr);
    action_->setChecked(look_.isMarked);
    action_->setIcon(icon_);
    action_->setIconVisibleInMenu(!icon_.isNull());
    // A menu that is not seen is marked when it is shown.
    if (const auto* const menu = qobject_cast<QWidget*>(action_->parent());
        menu != nullptr && (qobject_cast<const QMenu*>(menu) == nullptr || menu->isVisible()))
        MarkMnemonics(*menu);
}
