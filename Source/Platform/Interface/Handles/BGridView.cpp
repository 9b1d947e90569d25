#include "Platform/Interface/Handles/BGridView.h"

#include <QGridLayout>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class GridPart : public ViewPart {
public:
    GridPart(float horizontalSpacing, float verticalSpacing)
        : horizontalSpacing_(static_cast<int>(horizontalSpacing)),
          verticalSpacing_(static_cast<int>(verticalSpacing)) {}

protected:
    QWidget* Make() override {
        auto* const widget = new QWidget;
        auto* const layout = new QGridLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setHorizontalSpacing(horizontalSpacing_);
        layout->setVerticalSpacing(verticalSpacing_);
        return widget;
    }

private:
    const int horizontalSpacing_;
    const int verticalSpacing_;
};

QGridLayout& LayoutOf(const QWidget& widget) {
    return static_cast<QGridLayout&>(*widget.layout());
}

Qt::Alignment ToAlignment(BGridView::Align align) {
    switch (align) {
        case BGridView::Align::kLeft:
            return Qt::AlignLeft | Qt::AlignVCenter;
        case BGridView::Align::kCenter:
            return Qt::AlignCenter;
        case BGridView::Align::kRight:
            return Qt::AlignRight | Qt::AlignVCenter;
        default:
            return {};
    }
}

}  // namespace

BGridView::BGridView(const char* name, float horizontalSpacing, float verticalSpacing)
    : BView(name, std::make_shared<GridPart>(horizontalSpacing, verticalSpacing)) {}

void BGridView::AddView(BView* view, int32 column, int32 row, int32 columnCount, int32 rowCount,
                        Align align) {
    Adopt(view);
    ChangeWidget<QWidget>(Part(), [=, part = view->Part()](QWidget& widget) {
        if (part->Widget() != nullptr)
            LayoutOf(widget).addWidget(part->Widget(), row, column, rowCount, columnCount,
                                       ToAlignment(align));
    });
}

void BGridView::SetColumnWeight(int32 column, int32 weight) {
    ChangeWidget<QWidget>(
        Part(), [=](QWidget& widget) { LayoutOf(widget).setColumnStretch(column, weight); });
}
