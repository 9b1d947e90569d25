#include "Platform/Interface/Handles/BStringView.h"

#include <QLabel>
#include <QMouseEvent>
#include <functional>

#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

// Tells of clicks, once somebody wants to know.
class ClickLabel : public QLabel {
public:
    using QLabel::QLabel;
    std::function<void()> clicked;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        const bool isHere = event->button() == Qt::LeftButton && rect().contains(event->pos());
        if (clicked && isHere) return clicked();
        QLabel::mouseReleaseEvent(event);
    }
    // Else the release would go to what it lies on.
    void mousePressEvent(QMouseEvent* event) override {
        if (!clicked) QLabel::mousePressEvent(event);
    }
};

class StringPart : public ViewPart {
public:
    explicit StringPart(std::string text) : text_(std::move(text)) {}

    void TellClicks() {
        auto* const label = static_cast<ClickLabel*>(Widget());
        label->clicked = [this] { Tell(BMessage(kViewChanged)); };
        label->setCursor(Qt::PointingHandCursor);
    }

protected:
    QWidget* Make() override {
        auto* const label = new ClickLabel(ToText(text_));
        label->setTextFormat(Qt::PlainText);
        return label;
    }

private:
    const std::string text_;
};

// What takes the keyboard: the widget, or the first one in it.
QWidget* FieldIn(QWidget* widget) {
    const auto takesKeyboard = [](const QWidget* candidate) {
        return (candidate->focusPolicy() & Qt::TabFocus) != 0;
    };
    if (takesKeyboard(widget)) return widget;
    for (QWidget* const child : widget->findChildren<QWidget*>())
        if (takesKeyboard(child)) return child;
    return nullptr;
}

std::string StringOf(const char* text) {
    return text == nullptr ? "" : text;
}

}  // namespace

BStringView::BStringView(const char* name, const char* text)
    : BView(name, std::make_shared<StringPart>(StringOf(text))), text_(StringOf(text)) {}

void BStringView::SetText(const char* text) {
    if (text_ == StringOf(text)) return;
    text_ = StringOf(text);
    ChangeWidget<QLabel>(Part(), [text = text_](QLabel& label) {
        if (label.buddy() == nullptr) return label.setText(ToText(text));
        label.setText(ToLabel(text));
        MarkAgain(label);
    });
}

void BStringView::SetField(const BView& field) {
    ChangeWidget<QLabel>(Part(), [text = ToLabel(text_), part = field.Part()](QLabel& label) {
        if (part->Widget() == nullptr) return;
        label.setText(text);
        label.setBuddy(FieldIn(part->Widget()));
    });
}

void BStringView::LimitWidth(float width) {
    ChangeWidget<QLabel>(Part(), [width = static_cast<int>(width)](QLabel& label) {
        if (label.sizeHint().width() <= width) return;
        label.setWordWrap(true);
        label.setMinimumSize(width, label.heightForWidth(width));
    });
}

void BStringView::SetClickMessage(uint32 what) {
    click_ = what;
    ChangePart<StringPart>(Part(), [](StringPart& part) { part.TellClicks(); });
}

void BStringView::Changed(const BMessage& /*message*/) {
    if (click_ != 0 && Window() != nullptr) static_cast<void>(Window()->PostMessage(click_));
}

void BStringView::SetSelectable(bool isSelectable) {
    ChangeWidget<QLabel>(Part(), [=](QLabel& label) {
        label.setTextInteractionFlags(isSelectable
                                          ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                          : Qt::NoTextInteraction);
    });
}
