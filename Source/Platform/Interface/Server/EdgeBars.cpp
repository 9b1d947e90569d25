#include "Platform/Interface/Server/EdgeBars.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kThickness = 9;
// As little as can be, since the picture goes on below it.
const char* const kLook =
    "QScrollBar { background: rgba(255, 255, 255, 18); border: none; }"
    "QScrollBar::handle { background: rgba(190, 198, 212, 130); border-radius: 3px; margin: 2px;"
    " min-width: 24px; min-height: 24px; }"
    "QScrollBar::handle:hover { background: rgba(215, 222, 234, 200); }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: none; }";
constexpr int kLine = 40;  // pixels, for one notch of the wheel
// A bar counts in whole numbers. What is larger is counted in larger steps.
constexpr double kMaxSteps = 1e6;
// What lies beyond the edge by less is as good as shown.
constexpr double kBeyond = 1.0;

int ToSteps(double pixels, double step) {
    return static_cast<int>(std::lround(pixels / step));
}

}  // namespace

class EdgeBar : public QScrollBar {
public:
    EdgeBar(Qt::Orientation orientation, QWidget* parent) : QScrollBar(orientation, parent) {
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::ArrowCursor);
        setStyleSheet(kLook);
        hide();
        QObject::connect(this, &QScrollBar::sliderReleased, this, [this] { Show(range_); });
    }

    void Show(const ScrollRange& range) {
        range_ = range;
        const double low = std::min(range.low, range.shownLow);
        const double all = std::max(range.high, range.shownHigh) - low;
        const bool isNeeded =
            range.low <= range.high && std::isfinite(all) &&
            (range.low < range.shownLow - kBeyond || range.high > range.shownHigh + kBeyond);
        // A user who is holding the bar would lose it.
        if (isSliderDown()) return;
        setVisible(isNeeded);
        if (!isNeeded) return;
        const double shown = range.shownHigh - range.shownLow;
        step_ = std::max(1.0, all / kMaxSteps);
        const QSignalBlocker blocker(this);
        setRange(0, ToSteps(all - shown, step_));
        setPageStep(std::max(1, ToSteps(shown, step_)));
        setSingleStep(std::max(1, ToSteps(kLine, step_)));
        setValue(ToSteps(range.shownLow - low, step_));
        last_ = value();
    }
    // Pixels since it was last asked.
    double TakeMoved() {
        const double moved = (value() - last_) * step_;
        last_ = value();
        return moved;
    }

private:
    ScrollRange range_;
    double step_ = 1.0;  // pixels
    int last_ = 0;
};

EdgeBars::EdgeBars(QScrollArea* area, std::function<void(double, double)> move)
    : area_(area),
      horizontal_(new EdgeBar(Qt::Horizontal, area)),
      vertical_(new EdgeBar(Qt::Vertical, area)) {
    const auto tell = [this, move = std::move(move)] {
        move(horizontal_->TakeMoved(), vertical_->TakeMoved());
    };
    for (EdgeBar* const bar : {horizontal_, vertical_})
        QObject::connect(bar, &QScrollBar::valueChanged, bar, tell);
    Place();
}

void EdgeBars::Show(const ScrollRange& horizontal, const ScrollRange& vertical) {
    horizontal_->Show(horizontal);
    vertical_->Show(vertical);
}

void EdgeBars::SetNames(const QString& horizontal, const QString& vertical) {
    horizontal_->setAccessibleName(horizontal);
    vertical_->setAccessibleName(vertical);
}

// Neither reaches into the corner.
void EdgeBars::Place() {
    const int right = area_->width() - kThickness;
    const int bottom = area_->height() - kThickness;
    horizontal_->setGeometry(0, bottom, right, kThickness);
    vertical_->setGeometry(right, 0, kThickness, bottom);
    horizontal_->raise();
    vertical_->raise();
}
