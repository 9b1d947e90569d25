#include "Platform/Interface/Server/AccessibleRoles.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "Platform/Interface/Server/PopUpButton.h"

namespace {

class AccessibleWindow : public QAccessibleWidget {
public:
    explicit AccessibleWindow(QWidget* window)
        : QAccessibleWidget(window, window->windowType() == Qt::Dialog ? QAccessible::Dialog
                                                                       : QAccessible::Window) {}
};

// The toolkit's own has no name but what is chosen, and a list that nobody sees: here the menu
// stands below the field.
class AccessiblePopUp : public QAccessibleWidget {
public:
    explicit AccessiblePopUp(PopUpButton* button)
        : QAccessibleWidget(button, QAccessible::ComboBox), button_(button) {}

    [[nodiscard]] QString text(QAccessible::Text which) const override {
        QString chosen = button_->currentText();
        if (which == QAccessible::Value) return chosen;
        if (which != QAccessible::Name) return QAccessibleWidget::text(which);
        return (button_->accessibleName() + QLatin1Char(' ') + chosen).trimmed();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = true;
        return state;
    }

    [[nodiscard]] int childCount() const override { return button_->Menu() == nullptr ? 0 : 1; }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(button_->Menu()) : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == button_->Menu() ? 0 : -1;
    }

    [[nodiscard]] QStringList actionNames() const override {
        return {showMenuAction(), setFocusAction()};
    }
    void doAction(const QString& name) override {
        if (name != showMenuAction()) return QAccessibleWidget::doAction(name);
        if (button_->isEnabled()) button_->showPopup();
    }

private:
    PopUpButton* const button_;
};

QAccessibleInterface* MakeAccessible(const QString& className, QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) return nullptr;
    // Only windows of our own have no class but this one.
    if (className == QLatin1String("QWidget") && widget->isWindow())
        return new AccessibleWindow(widget);
    auto* const button = dynamic_cast<PopUpButton*>(widget);
    return button == nullptr ? nullptr : new AccessiblePopUp(button);
}

}  // namespace

void InstallAccessibleRoles() {
    QAccessible::installFactory(MakeAccessible);
}
