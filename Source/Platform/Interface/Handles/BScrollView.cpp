#include "Platform/Interface/Handles/BScrollView.h"

#include <QEvent>
#include <QScrollArea>
#include <QStyle>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class FittingArea : public QScrollArea {
public:
    [[nodiscard]] QSize sizeHint() const override {
        return widget() == nullptr ? QScrollArea::sizeHint()
                                   : widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (object == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
        return QScrollArea::eventFilter(object, event);
    }
};

class ScrollPart : public ViewPart {
public:
    explicit ScrollPart(BScrollView::Size size) : size_(size) {}

    void Place(ViewPart& child) override {
        auto* const area = static_cast<QScrollArea*>(Widget());
        if (area != nullptr && child.Widget() != nullptr) area->setWidget(child.Widget());
    }

protected:
    QWidget* Make() override {
        QScrollArea* const area =
            size_ == BScrollView::Size::kOfTarget ? new FittingArea : new QScrollArea;
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        // The target has the keyboard, not the frame around it.
        area->setFocusPolicy(Qt::NoFocus);
        return area;
    }

private:
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
