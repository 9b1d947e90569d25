#include "Platform/Interface/Server/PassingTip.h"

#include <QApplication>
#include <QToolTip>
#include <QWidget>
#include <QWindow>

namespace {

// The toolkit's own window of tips, of which it has one.
constexpr const char* kTipClass = "QTipLabel";

}  // namespace

void ShowPassingTip(QPoint place, const QString& text, QWidget* owner, int milliseconds) {
    QToolTip::showText(place, text, owner, {}, milliseconds);
    for (const QWidget* const window : QApplication::topLevelWidgets())
        if (window->inherits(kTipClass) && window->windowHandle() != nullptr)
            window->windowHandle()->setFlag(Qt::WindowTransparentForInput);
}
