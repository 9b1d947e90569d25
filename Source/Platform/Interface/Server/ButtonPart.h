// The window server's half of a push button, check box or radio button.
#pragma once

#include <QAbstractButton>

#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/ViewPart.h"

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
            message.AddInt32(kValueField, isOn ? 1 : 0);
            Tell(message);
        });
        return button;
    }

private:
    const std::string label_;
};

// Any thread.
inline void ShowLabel(const std::shared_ptr<ViewPart>& part, const std::string& label) {
    ChangeWidget<QAbstractButton>(part, [text = ToLabel(label)](QAbstractButton& button) {
        button.setText(text);
        MarkAgain(button);
    });
}
