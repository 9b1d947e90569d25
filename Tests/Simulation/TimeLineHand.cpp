#include "Tests/Simulation/TimeLineHand.h"

#include <QApplication>
#include <QTest>

#include "Platform/Interface/Server/WindowServer.h"

namespace {

QWidget* FindBar() {
    for (QWidget* const widget : QApplication::allWidgets())
        if (widget->isVisible() && widget->accessibleName() == "Time line") return widget;
    return nullptr;
}

QPoint PlaceIn(const QWidget& bar, double part) {
    return {static_cast<int>(part * bar.width()), bar.height() / 2};
}

struct Stroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};
// In the order of Key.
const Stroke kStrokes[] = {{Qt::Key_Home, {}},
                           {Qt::Key_End, {}},
                           {Qt::Key_Left, {}},
                           {Qt::Key_Right, {}},
                           {Qt::Key_Left, Qt::ShiftModifier},
                           {Qt::Key_Space, {}},
                           {Qt::Key_Period, {}},
                           {Qt::Key_Escape, {}}};

}  // namespace

namespace TimeLineHand {

std::string Value() {
    return WindowServer::Ask([] {
        const QWidget* const bar = FindBar();
        return bar == nullptr ? std::string() : bar->accessibleDescription().toStdString();
    });
}

void Click(double part) {
    WindowServer::Perform([=] {
        QWidget* const bar = FindBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, PlaceIn(*bar, part));
    });
}

void Drag(double from, double to) {
    WindowServer::Perform([=] {
        QWidget* const bar = FindBar();
        QTest::mousePress(bar, Qt::LeftButton, {}, PlaceIn(*bar, from));
        for (const double part : {to, 0.5 * (from + to)})
            QTest::mouseMove(bar, PlaceIn(*bar, part));
        QTest::mouseRelease(bar, Qt::LeftButton, {}, PlaceIn(*bar, 0.5 * (from + to)));
    });
}

void Press(Key key) {
    WindowServer::Perform([=] {
        QWidget* const bar = FindBar();
        bar->setFocus();
        const Stroke& stroke = kStrokes[static_cast<int>(key)];
        QTest::keyClick(bar, stroke.key, stroke.modifiers);
    });
}

}  // namespace TimeLineHand
