#include "Platform/Interface/Handles/BSlider.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>
#include <utility>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

// The line with the knob. A key held down moves it many times: that is one movement, as a drag is.
class Knob : public QSlider {
public:
    Knob() : QSlider(Qt::Horizontal) {}

    std::function<void()> released;  // the last of the keys that moved it, or the keyboard is gone

    [[nodiscard]] bool IsHeld() const { return isSliderDown() || isKeyDown_; }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        isKeyDown_ = true;
        QSlider::keyPressEvent(event);
        // Not a key of the slider's.
        if (!event->isAccepted()) isKeyDown_ = false;
    }
    void keyReleaseEvent(QKeyEvent* event) override {
        QSlider::keyReleaseEvent(event);
        if (!event->isAutoRepeat()) Release();
    }
    void focusOutEvent(QFocusEvent* event) override {
        QSlider::focusOutEvent(event);
        Release();
    }
    // Only the hand on the knob or a key changes a value: the wheel is for the window around it.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

private:
    void Release() {
        if (std::exchange(isKeyDown_, false)) released();
    }

    bool isKeyDown_ = false;
};

class SliderPart : public ViewPart {
public:
    SliderPart(std::string label, int32 minimum, int32 maximum)
        : label_(std::move(label)), minimum_(minimum), maximum_(maximum) {}

    Knob* slider = nullptr;
    QLabel* title = nullptr;
    QLabel* leftEnd = nullptr;
    QLabel* rightEnd = nullptr;

protected:
    QWidget* Make() override {
        auto* const widget = new QWidget;
        auto* const layout = new QGridLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        slider = new Knob;
        slider->setRange(minimum_, maximum_);
        slider->setAccessibleName(ToText(label_));
        title = new QLabel(ToText(label_));
        title->setVisible(!label_.empty());
        leftEnd = new QLabel;
        rightEnd = new QLabel;
        rightEnd->setAlignment(Qt::AlignRight);
        leftEnd->hide();
        rightEnd->hide();
        layout->addWidget(title, 0, 0, 1, 2);
        layout->addWidget(slider, 1, 0, 1, 2);
        layout->addWidget(leftEnd, 2, 0, Qt::AlignLeft);
        layout->addWidget(rightEnd, 2, 1, Qt::AlignRight);
        widget->setFocusProxy(slider);
        QObject::connect(slider, &QSlider::valueChanged, widget, [this] {
            isMoved_ = true;
            TellValue(!slider->IsHeld());
        });
        // A knob that was only touched is where it was, even if the value lies between two places.
        const auto release = [this] {
            if (isMoved_) TellValue(true);
        };
        QObject::connect(slider, &QSlider::sliderReleased, widget, release);
        slider->released = release;
        return widget;
    }

private:
    void TellValue(bool isFinal) {
        if (isFinal) isMoved_ = false;
        Tell(ValueChange{slider->value(), isFinal}.ToMessage());
    }

    const std::string label_;
    const int32 minimum_;
    const int32 maximum_;
    bool isMoved_ = false;  // since a final value was told
};

}  // namespace

BSlider::BSlider(const char* name, const char* label, BMessage* message, int32 minimum,
                 int32 maximum)
    : BControl(name, label, message,
               std::make_shared<SliderPart>(label == nullptr ? "" : label, minimum, maximum)),
      minimum_(minimum),
      maximum_(maximum) {
    TakeValue(minimum);
}

void BSlider::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ChangePart<SliderPart>(Part(), [text = ToText(Label())](SliderPart& part) {
        part.title->setText(text);
        part.title->setVisible(!text.isEmpty());
        part.slider->setAccessibleName(text);
    });
}

void BSlider::SetValue(int32 value) {
    BControl::SetValue(std::clamp(value, minimum_, maximum_));
    ChangePart<SliderPart>(Part(), [value = Value()](SliderPart& part) {
        const QSignalBlocker blocker(part.slider);
        part.slider->setValue(value);
    });
}

void BSlider::SetLimitLabels(const char* minimum, const char* maximum) {
    ChangePart<SliderPart>(Part(),
                           [low = ToText(minimum), high = ToText(maximum)](SliderPart& part) {
                               part.leftEnd->setText(low);
                               part.leftEnd->setVisible(!low.isEmpty());
                               part.rightEnd->setText(high);
                               part.rightEnd->setVisible(!high.isEmpty());
                           });
}

void BSlider::SetSteps(int32 arrow, int32 page) {
    ChangePart<SliderPart>(Part(), [=](SliderPart& part) {
        part.slider->setSingleStep(arrow);
        part.slider->setPageStep(page);
    });
}

void BSlider::Changed(const BMessage& message) {
    const ValueChange change = ValueChange::From(message);
    TakeValue(change.value);
    if (!IsEnabled()) return;
    if (modification_ != nullptr) Invoke(modification_.get());
    if (change.isFinal) Invoke();
}
