#include "Platform/Interface/Handles/BScrollView.h"

#include <QEvent>
#include <QScrollArea>
#include <QStyle>
#include <optional>

#include "Platform/Interface/Server/EdgeBars.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

constexpr const char* kRight = "right";  // floats
constexpr const char* kDown = "down";

class Area : public QScrollArea {
public:
    explicit Area(BScrollView::Size size) : size_(size) {
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        // The target has the keyboard, not the frame around it.
        setFocusPolicy(Qt::NoFocus);
    }

    [[nodiscard]] QSize sizeHint() const override {
        return size_ == BScrollView::Size::kAny || widget() == nullptr
                   ? QScrollArea::sizeHint()
                   : widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
    }

    std::optional<EdgeBars> bars;

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (size_ == BScrollView::Size::kOfTarget && object == widget() &&
            event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QScrollArea::eventFilter(object, event);
    }
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        if (bars) bars->Place();
    }

private:
    const BScrollView::Size size_;
};

class ScrollPart : public ViewPart {
public:
    explicit ScrollPart(BScrollView::Size size) : size_(size) {}

    void Place(ViewPart& child) override {
        auto* const area = static_cast<Area*>(Widget());
        if (area == nullptr || child.Widget() == nullptr) return;
        area->setWidget(child.Widget());
        if (area->bars) area->bars->Place();
    }
    EdgeBars& Bars() {
        auto* const area = static_cast<Area*>(Widget());
        if (!area->bars)
            area->bars.emplace(area, [this](double right, double down) { TellMoved(right, down); });
        return *area->bars;
    }

protected:
    QWidget* Make() override { return new Area(size_); }

private:
    void TellMoved(double right, double down) const {
        BMessage message(kViewChanged);
        message.AddFloat(kRight, static_cast<float>(right));
        message.AddFloat(kDown, static_cast<float>(down));
        Tell(message);
    }

    const BScrollView::Size size_;
};

}  // namespace

BScrollView::BScrollView(const char* name, BView* target, Size size)
    : BView(name, std::make_shared<ScrollPart>(size)) {
    AddChild(target);
}

float BScrollView::BarWidth() const {
    return WindowServer::Ask([part = Part()] {
        const QWidget* const widget = part->Widget();
        const QStyle* const style = widget == nullptr ? nullptr : widget->style();
        return style == nullptr ? 0.0f
                                : static_cast<float>(style->pixelMetric(QStyle::PM_ScrollBarExtent,
                                                                        nullptr, widget));
    });
}

void BScrollView::SetRanges(const ScrollRange& horizontal, const ScrollRange& vertical) {
    if (horizontal == horizontal_ && vertical == vertical_) return;
    horizontal_ = horizontal;
    vertical_ = vertical;
    ChangePart<ScrollPart>(Part(),
                           [=](ScrollPart& part) { part.Bars().Show(horizontal, vertical); });
}

void BScrollView::SetBarNames(const char* horizontal, const char* vertical) {
    ChangePart<ScrollPart>(Part(), [across = ToText(horizontal), up = ToText(vertical)](
                                       ScrollPart& part) { part.Bars().SetNames(across, up); });
}

void BScrollView::Changed(const BMessage& message) {
    float right = 0.0f;
    float down = 0.0f;
    static_cast<void>(message.FindFloat(kRight, &right));
    static_cast<void>(message.FindFloat(kDown, &down));
    if (scroller_ && (right != 0.0f || down != 0.0f)) scroller_(right, down);
}
