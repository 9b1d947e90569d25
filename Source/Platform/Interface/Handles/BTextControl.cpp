#include "Platform/Interface/Handles/BTextControl.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>

#include "Platform/Interface/Server/FieldLine.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

constexpr const char* kEnteredField = "entered";  // string
constexpr const char* kSilentField = "silent";    // bool: no message is to be sent for it

class TextPart : public ViewPart {
public:
    TextPart(std::string label, std::string text)
        : label_(std::move(label)), text_(std::move(text)) {}

    QPointer<FieldLine> line;  // asked for even when the widget is gone
    QLabel* title = nullptr;

    void SetText(const QString& text) {
        told_ = known_ = text;
        if (line->text() != text) line->setText(text);
    }

    // The handle has taken over what it was told.
    void SetKnown(const QString& text) { known_ = text; }

    [[nodiscard]] std::optional<std::string> Pending() const {
        if (line == nullptr || line->text() == known_) return std::nullopt;
        return line->text().toStdString();
    }

    // What is pending becomes what was entered, and the caller's.
    std::optional<std::string> Take() {
        std::optional<std::string> text = Pending();
        if (!text) return text;
        known_ = line->text();
        TellEntered(true);
        return text;
    }

protected:
    QWidget* Make() override {
        auto* const widget = new QWidget;
        auto* const layout = new QHBoxLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        title = new QLabel(ToText(label_));
        title->setVisible(!label_.empty());
        told_ = known_ = ToText(text_);
        line = new FieldLine;
        line->setText(told_);
        line->setAccessibleName(ToText(label_));
        layout->addWidget(title);
        layout->addWidget(line, 1);
        widget->setFocusProxy(line);
        QObject::connect(line, &QLineEdit::editingFinished, widget, [this] {
            if (line->text() != told_) TellEntered(false);
        });
        return widget;
    }

private:
    void TellEntered(bool isSilent) {
        told_ = line->text();
        BMessage message(kViewChanged);
        message.AddString(kEnteredField, told_.toStdString());
        message.AddBool(kSilentField, isSilent);
        Tell(message);
    }

    const std::string label_;
    const std::string text_;
    QString told_;   // to the handle, or by it
    QString known_;  // to the handle: what it was told may be on its way still
};

}  // namespace

BTextControl::BTextControl(const char* name, const char* label, const char* text, BMessage* message)
    : BControl(
          name, label, message,
          std::make_shared<TextPart>(label == nullptr ? "" : label, text == nullptr ? "" : text)),
      text_(text == nullptr ? "" : text) {}

void BTextControl::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ChangePart<TextPart>(Part(), [label = ToText(Label())](TextPart& part) {
        part.title->setText(label);
        part.title->setVisible(!label.isEmpty());
        part.line->setAccessibleName(label);
    });
}

void BTextControl::SetText(const char* text) {
    text_ = text == nullptr ? "" : text;
    ChangePart<TextPart>(Part(), [text = ToText(text_)](TextPart& part) { part.SetText(text); });
}

std::optional<std::string> BTextControl::TakePendingText() {
    return WindowServer::Ask([part = Part()] { return static_cast<TextPart&>(*part).Take(); });
}

void BTextControl::SelectAll() {
    ChangePart<TextPart>(Part(), [](TextPart& part) { part.line->selectAll(); });
}

void BTextControl::Changed(const BMessage& message) {
    std::string text;
    if (message.FindString(kEnteredField, &text) != B_OK) return;
    bool isSilent = false;
    message.FindBool(kSilentField, &isSilent);
    text_ = text;
    ChangePart<TextPart>(Part(), [text = ToText(text_)](TextPart& part) { part.SetKnown(text); });
    if (!isSilent) Invoke();
}
