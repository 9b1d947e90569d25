#include "Tests/Simulation/EntryHand.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSlider>
#include <QTest>
#include <QToolTip>

#include "Platform/Interface/Handles/BView.h"
#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/ViewPart.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

// A button may also be named by its label.
template <typename Widget>
Widget* Find(const BView* view, const std::string& name) {
    for (Widget* const widget : view->Part()->Widget()->findChildren<Widget*>()) {
        const auto* const button = qobject_cast<QAbstractButton*>(widget);
        if (widget->accessibleName().toStdString() == name ||
            (button != nullptr && WithoutMark(button->text()).toStdString() == name))
            return widget;
    }
    return nullptr;
}

QColorDialog* OpenColorDialog() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QColorDialog*>(widget);
            dialog != nullptr && dialog->isVisible())
            return dialog;
    return nullptr;
}

}  // namespace

void EntryHand::WaitUntilActive(const BView* view) {
    WindowServer::Perform([&] {
        QWidget* const window = view->Part()->Widget()->window();
        window->activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(window));
    });
}

void EntryHand::Type(const std::string& line, const std::string& text) const {
    WindowServer::Perform([&] {
        auto* const edit = Find<QLineEdit>(view_, line);
        edit->setFocus();
        edit->selectAll();
    });
    Add(line, text);
}

void EntryHand::Add(const std::string& line, const std::string& text) const {
    WindowServer::Perform(
        [&] { QTest::keyClicks(Find<QLineEdit>(view_, line), QString::fromStdString(text)); });
}

void EntryHand::Enter(const std::string& line, const std::string& text) const {
    Type(line, text);
    WindowServer::Perform([&] { QTest::keyClick(Find<QLineEdit>(view_, line), Qt::Key_Return); });
}

void EntryHand::PressEnterSoon(const std::string& line) const {
    WindowServer::Queue(
        [view = view_, line] { QTest::keyClick(Find<QLineEdit>(view, line), Qt::Key_Return); });
}

void EntryHand::Escape(const std::string& line) const {
    WindowServer::Perform([&] { QTest::keyClick(Find<QLineEdit>(view_, line), Qt::Key_Escape); });
}

void EntryHand::PressKey(char key) const {
    WindowServer::Perform([&] {
        QWidget* const window = view_->Part()->Widget()->window();
        QWidget* const field = window->focusWidget();
        QTest::keyClick(field == nullptr ? window : field, key);
    });
}

std::string EntryHand::Text(const std::string& line) const {
    return WindowServer::Ask([&] { return Find<QLineEdit>(view_, line)->text().toStdString(); });
}

bool EntryHand::IsEnabled(const std::string& widget) const {
    return WindowServer::Ask([&] { return Find<QWidget>(view_, widget)->isEnabled(); });
}

bool EntryHand::IsRefused(const std::string& line) const {
    return WindowServer::Ask([&] {
        const auto* const edit = Find<QLineEdit>(view_, line);
        return edit->palette().color(QPalette::Base) !=
               QApplication::palette().color(QPalette::Base);
    });
}

std::string EntryHand::Hint() const {
    return WindowServer::Ask([&] { return QToolTip::text().toStdString(); });
}

void EntryHand::Choose(const std::string& field, const std::string& text) const {
    WindowServer::Perform([&] {
        auto* const box = Find<QComboBox>(view_, field);
        box->setFocus();
        for (QAction* const action : box->findChildren<QAction*>())
            if (action->text().toStdString() == text) return action->trigger();
        const int index = box->findText(QString::fromStdString(text));
        box->setCurrentIndex(index);
        emit box->activated(index);
    });
}

std::string EntryHand::Chosen(const std::string& field) const {
    return WindowServer::Ask(
        [&] { return Find<QComboBox>(view_, field)->currentText().toStdString(); });
}

int EntryHand::CountChoices(const std::string& field) const {
    return WindowServer::Ask([&] { return Find<QComboBox>(view_, field)->count(); });
}

void EntryHand::Click(const std::string& button) const {
    WindowServer::Perform([&] { Find<QAbstractButton>(view_, button)->click(); });
}

void EntryHand::Grab(const std::string& slider, int over, int to) const {
    WindowServer::Perform([&] {
        auto* const widget = Find<QSlider>(view_, slider);
        widget->setSliderDown(true);
        widget->setSliderPosition(over);
        widget->setSliderPosition(to);
    });
}

void EntryHand::LetGo(const std::string& slider) const {
    WindowServer::Perform([&] { Find<QSlider>(view_, slider)->setSliderDown(false); });
}

void EntryHand::HoldRightArrow(const std::string& slider, int repeats) const {
    WindowServer::Perform([&] {
        auto* const widget = Find<QSlider>(view_, slider);
        widget->setFocus();
        for (int i = 0; i <= repeats; i++) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Right, {}, QString(), i > 0);
            QCoreApplication::sendEvent(widget, &press);
        }
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Right, {});
        QCoreApplication::sendEvent(widget, &release);
    });
}

int EntryHand::Knob(const std::string& slider) const {
    return WindowServer::Ask([&] { return Find<QSlider>(view_, slider)->value(); });
}

void EntryHand::TryColor(unsigned rgb) {
    WindowServer::Perform([&] { OpenColorDialog()->setCurrentColor(QColor::fromRgb(rgb)); });
}

void EntryHand::EndColorDialog(bool isAccepted) {
    WindowServer::Perform([&] {
        QColorDialog* const dialog = OpenColorDialog();
        isAccepted ? dialog->accept() : dialog->reject();
    });
}
