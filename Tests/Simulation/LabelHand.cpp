#include "Tests/Simulation/LabelHand.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include "Platform/Interface/Server/WindowServer.h"

void ClickLabel(const std::string& text) {
    WindowServer::Perform([&] {
        for (QWidget* const window : QApplication::topLevelWidgets())
            for (QLabel* const label : window->findChildren<QLabel*>())
                if (label->isVisible() && label->text().toStdString() == text)
                    return QTest::mouseClick(label, Qt::LeftButton);
    });
}
