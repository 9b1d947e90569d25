// The widget of a menu field: looks like a combo box and opens the field's own menu, so that menus
// have their separators, marks and shortcuts wherever they are. Server's thread.
#pragma once

#include <QComboBox>
#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>
#include <QWheelEvent>

class PopUpButton : public QComboBox {
public:
    PopUpButton();

    void SetMenu(QMenu* menu);
    // Null before there is one, and after it has gone.
    [[nodiscard]] QMenu* Menu() const { return menu_; }
    // What is shown, and everything that may be: the button is wide enough for each.
    void SetTexts(const QString& shown, const QStringList& all);

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    // Numbers are typed in the open menu, too; letters are those that its items are marked with.
    bool eventFilter(QObject* object, QEvent* event) override;
    // Only a click or a key changes a choice: the wheel is for the window around it.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

private:
    // Chooses the next item that can be chosen, upwards or downwards.
    void Step(int direction);
    // The item that begins with what was typed in one go, from `current` on; else with the last
    // letter. Null: none.
    [[nodiscard]] QAction* FindTyped(const QString& letter, QAction* current);
    [[nodiscard]] QList<QAction*> Choices() const;
    [[nodiscard]] QAction* Marked() const;

    QPointer<QMenu> menu_;
    QString typed_;
    QElapsedTimer sinceTyped_;
};
