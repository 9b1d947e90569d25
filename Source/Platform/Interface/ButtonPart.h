// The window server's half of a push button, check box or radio button.
#pragma once

#include <QAbstractButton>

#include "ViewPart.h"

template <typename ButtonWidget>
class ButtonPart : public ViewPart {
public:
    explicit ButtonPart(const char* label) : label_(label == nullptr ? "" : label) {}

protected:
    QWidget* Make() override {
        auto* const button = new ButtonWidget(ToLabel(label_));
        // Only what the user does, not what the handle sets.
        QObject::connect(button, &QAbstractButton::clicked, button, [this](bool isOn) {
            BMessage message(kViewChanged);
            message.AddInt32("value", isOn ? 1 : 0);
            Tell(message);
        });
        return button;
    }

private:
    const std::string label_;
};
