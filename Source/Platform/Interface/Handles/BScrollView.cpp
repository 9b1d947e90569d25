#include "Platform/Interface/Handles/BScrollView.h"

#include <QScrollArea>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class ScrollPart : public ViewPart {
public:
    void Place(ViewPart& child) override {
        auto* const area = static_cast<QScrollArea*>(Widget());
        if (area != nullptr && child.Widget() != nullptr) area->setWidget(child.Widget());
    }

protected:
    QWidget* Make() override {
        auto* const area = new QScrollArea;
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        // The target has the keyboard, not the frame around it.
        area->setFocusPolicy(Qt::NoFocus);
        return area;
    }
};

}  // namespace

BScrollView::BScrollView(const char* name, BView* target)
    : BView(name, std::make_shared<ScrollPart>()) {
    AddChild(target);
}
