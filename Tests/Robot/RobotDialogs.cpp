#include "Tests/Robot/RobotDialogs.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

void RobotDialogs::Note(const std::string& what, const QWidget* where) {
    journal_->Note(what + " in " + where->window()->windowTitle().toStdString());
}

bool RobotDialogs::Wants(const QAction& item) {
    const std::string text = TextOf(item);
    if (text == "Quit Orvek") return dice_->Chance(2);
    if (text == "Close" || text == "Close then Open…")
        return CountSimulations(VisibleWindows()) > 1 || dice_->Chance(10);
    return true;
}

// --- What must be answered ---

bool RobotDialogs::AnswerModal() {
    if (QWidget* const modal = QApplication::activeModalWidget(); modal != nullptr)
        UseDialog(modal);
    else if (QWidget* const popup = QApplication::activePopupWidget(); popup != nullptr)
        UsePopup(popup);
    else
        return false;
    return true;
}

void RobotDialogs::UsePopup(QWidget* popup) {
    auto* const menu = qobject_cast<QMenu*>(popup);
    if (menu != nullptr && dice_->Chance(70)) return UseMenu(menu);
    const Qt::Key key =
        dice_->Any<Qt::Key>({Qt::Key_Down, Qt::Key_Up, Qt::Key_Escape, Qt::Key_Home});
    journal_->Note("key " + std::to_string(key) + " in a popup");
    QWidget* const focus = popup->focusWidget() == nullptr ? popup : popup->focusWidget();
    QTest::keyClick(focus, key);
    // A list of choices, not a menu.
    if (menu == nullptr && popup->isVisible()) QTest::keyClick(focus, Qt::Key_Return);
}

void RobotDialogs::UseMenu(QMenu* menu) {
    std::vector<QAction*> items;
    for (QAction* const item : menu->actions())
        if (item->isEnabled() && !item->isSeparator()) items.push_back(item);
    QAction* const item = items.empty() ? nullptr : dice_->Any(items);
    if (item == nullptr || (item->menu<QMenu*>() == nullptr && !Wants(*item))) {
        journal_->Note("leave the menu");
        QTest::keyClick(menu, Qt::Key_Escape);
        return;
    }
    journal_->Note("item " + TextOf(*item) + " clicked");
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());
}

// --- Dialogs ---

bool RobotDialogs::AnswerOne(const Windows& windows) {
    std::vector<QWidget*> dialogs;
    for (QWidget* const window : windows)
        if (IsToolkitDialog(window) || IsQuestion(window)) dialogs.push_back(window);
    if (dialogs.empty()) return false;
    UseDialog(dice_->Any(dialogs));
    return true;
}

void RobotDialogs::UseDialog(QWidget* dialog) {
    if (auto* const panel = qobject_cast<QFileDialog*>(dialog); panel != nullptr)
        return UsePanel(panel);
    if (auto* const colors = qobject_cast<QColorDialog*>(dialog);
        colors != nullptr && dice_->Chance(50)) {
        Note("color", colors);
        colors->setCurrentColor(QColor::fromRgb(static_cast<QRgb>(dice_->Number(0, 0xffffff))));
        return;
    }
    std::vector<QAbstractButton*> buttons;
    for (QAbstractButton* const button : dialog->findChildren<QAbstractButton*>())
        // Picking a color from the screen waits for a mouse.
        if (CanBeUsed(button) && (qobject_cast<QColorDialog*>(dialog) == nullptr ||
                                  qobject_cast<QDialogButtonBox*>(button->parent()) != nullptr))
            buttons.push_back(button);
    if (buttons.empty() || dice_->Chance(20)) {
        Note("close", dialog);
        dialog->close();
        return;
    }
    QAbstractButton* const button = dice_->Any(buttons);
    Note("button " + TextOf(*button), dialog);
    button->click();
}

// Names are typed with the whole path: nothing outside the folder is touched.
void RobotDialogs::UsePanel(QFileDialog* panel) {
    const bool isSave = panel->acceptMode() == QFileDialog::AcceptSave;
    auto* const line = panel->findChild<QLineEdit*>("fileNameEdit");
    auto* const buttons = panel->findChild<QDialogButtonBox*>();
    QPushButton* const accept =
        buttons->button(isSave ? QDialogButtonBox::Save : QDialogButtonBox::Open);
    if (dice_->Chance(25)) {
        Note("cancel the panel", panel);
        return panel->reject();
    }
    // What is no document stays as it is.
    const std::string name = dice_->Any<std::string>(
        isSave ? std::vector<std::string>{"one", "two", "three", "four words in it", "fünf"}
               : std::vector<std::string>{"one", "two", "three", "fünf", "notes.txt", "damaged",
                                          "no folder/six"});
    QString text = QString::fromStdString(folder_ + '/' + name);
    if (!isSave && dice_->Chance(30))
        text = QString("\"%1/one\" \"%1/two\" \"%1/three\"").arg(QString::fromStdString(folder_));
    Note((isSave ? "save as " : "open ") + name, panel);
    line->setText(text);
    if (accept->isEnabled())
        accept->click();
    else
        panel->reject();
}

// --- The end ---

void RobotDialogs::AnswerToEnd() {
    if (QWidget* const popup = QApplication::activePopupWidget(); popup != nullptr) {
        journal_->Note("close a popup");
        popup->close();
        return;
    }
    if (AnswerModal()) return;
    for (QWidget* const window : VisibleWindows()) {
        if (auto* const panel = qobject_cast<QFileDialog*>(window); panel != nullptr)
            return UsePanel(panel);
        if (!IsQuestion(window)) continue;
        for (QAbstractButton* const button : window->findChildren<QAbstractButton*>())
            if (const std::string text = TextOf(*button);
                text == "Don't Save" || (text == "Save" && dice_->Chance(50))) {
                Note("answer " + text, window);
                return button->click();
            }
    }
    journal_->Note("nothing to answer");
}
