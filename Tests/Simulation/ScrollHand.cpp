#include "Tests/Simulation/ScrollHand.h"

#include <QApplication>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "Platform/Interface/Handles/BView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/ViewPart.h"
#include "Platform/Interface/Server/WindowPart.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

QScrollArea* AreaOf(const BWindow& window) {
    return window.Part()->Widget()->findChild<QScrollArea*>();
}

// The list that is in it.
QWidget* FieldOf(const BView& view) {
    return view.Part()->Widget()->findChild<QComboBox*>();
}

}  // namespace

LargeFont::LargeFont()
    : usual_(
          WindowServer::Ask([] { return std::make_unique<const QFont>(QApplication::font()); })) {
    WindowServer::Perform([] {
        QFont large = QApplication::font();
        large.setPointSize(2 * large.pointSize() + 4);
        QApplication::setFont(large);
    });
}

LargeFont::~LargeFont() {
    WindowServer::Perform([&] { QApplication::setFont(*usual_); });
}

bool ScrollHand::CanScroll() const {
    return WindowServer::Ask([&] {
        const QScrollArea* const area = AreaOf(*window_);
        return area != nullptr && area->verticalScrollBar()->maximum() > 0 &&
               area->horizontalScrollBar()->maximum() == 0;
    });
}

bool ScrollHand::SeesLast() const {
    return WindowServer::Ask([&] {
        const QWidget* const port = AreaOf(*window_)->viewport();
        const QWidget* const field = FieldOf(*last_);
        return port->rect().contains(QRect(field->mapTo(port, QPoint()), field->size()));
    });
}

void ScrollHand::TabToLast() const {
    WindowServer::Perform([&] {
        const QWidget* const field = FieldOf(*last_);
        QWidget* const window = window_->Part()->Widget();
        QTest::keyClick(window, Qt::Key_Tab);
        for (int i = 0; i < 60 && window->focusWidget() != field; i++)
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    });
}
