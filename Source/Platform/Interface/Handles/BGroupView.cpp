#include "Platform/Interface/Handles/BGroupView.h"

#include <QBoxLayout>
#include <QStyle>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class GroupPart : public ViewPart {
public:
    GroupPart(orientation direction, float spacing)
        : isRow_(direction == B_HORIZONTAL), spacing_(static_cast<int>(spacing)) {}

protected:
    QWidget* Make() override {
        auto* const widget = new QWidget;
        auto* const layout =
            new QBoxLayout(isRow_ ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(spacing_);
        return widget;
    }

private:
    const bool isRow_;
    const int spacing_;
};

QBoxLayout& LayoutOf(const QWidget& widget) {
    return static_cast<QBoxLayout&>(*widget.layout());
}

}  // namespace

BGroupView::BGroupView(const char* name, orientation direction, float spacing)
    : BView(name, std::make_shared<GroupPart>(direction, spacing)) {}

void BGroupView::AddStretch(int32 weight) {
    ChangeWidget<QWidget>(Part(), [=](QWidget& widget) { LayoutOf(widget).addStretch(weight); });
}

void BGroupView::AddSpace(float size) {
    ChangeWidget<QWidget>(Part(), [size = static_cast<int>(size)](QWidget& widget) {
        LayoutOf(widget).addSpacing(size);
    });
}

void BGroupView::SetWindowInsets() {
    ChangeWidget<QWidget>(Part(), [](QWidget& widget) {
        const QStyle& style = *widget.style();
        LayoutOf(widget).setContentsMargins(style.pixelMetric(QStyle::PM_LayoutLeftMargin),
                                            style.pixelMetric(QStyle::PM_LayoutTopMargin),
                                            style.pixelMetric(QStyle::PM_LayoutRightMargin),
                                            style.pixelMetric(QStyle::PM_LayoutBottomMargin));
    });
}
