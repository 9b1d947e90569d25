#include "Platform/Interface/Handles/BColorControl.h"

#include <QColorDialog>
#include <QHideEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

constexpr int kMargin = 5;
constexpr double kRounding = 2.0;
constexpr int kDistance = 10;
constexpr int32 kMask = 0xffffff;

QColor ToQColor(int32 value) {
    return QColor::fromRgb(static_cast<QRgb>(value) | 0xff000000U);
}

class SwatchButton : public QPushButton {
public:
    QColor color;
    std::function<void()> hidden;

    [[nodiscard]] QSize sizeHint() const override {
        const int height = QPushButton::sizeHint().height();
        return {2 * height, height};
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPushButton::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(palette().color(QPalette::Mid));
        QColor shown = color;
        if (!isEnabled()) shown.setAlpha(0x60);
        painter.setBrush(shown);
        const QRectF swatch = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
        painter.drawRoundedRect(swatch.adjusted(0.5, 0.5, -0.5, -0.5), kRounding, kRounding);
    }
    void hideEvent(QHideEvent* event) override {
        QPushButton::hideEvent(event);
        if (!event->spontaneous()) hidden();
    }
};

class ColorPart : public ViewPart {
public:
    explicit ColorPart(std::string title) : title_(std::move(title)) {}

    void SetColor(int32 value) {
        value_ = value;
        button_->color = ToQColor(value);
        button_->update();
    }

protected:
    QWidget* Make() override {
        button_ = new SwatchButton;
        button_->setAccessibleName(ToText(title_));
        button_->setToolTip(ToText(title_));
        // The dialog goes with the window that it was opened from.
        button_->hidden = [this] { CloseDialog(); };
        QObject::connect(button_, &QAbstractButton::clicked, button_, [this] { OpenDialog(); });
        return button_;
    }

private:
    void CloseDialog() {
        if (dialog_ != nullptr) dialog_->reject();
    }

    void OpenDialog() {
        if (dialog_ != nullptr) return dialog_->activateWindow();
        before_ = value_;
        dialog_ = new QColorDialog(ToQColor(value_), button_->window());
        dialog_->setAttribute(Qt::WA_DeleteOnClose);
        dialog_->setWindowTitle(ToText(title_));
        dialog_->setWindowModality(Qt::NonModal);
        QObject::connect(dialog_, &QColorDialog::currentColorChanged, button_,
                         [this](const QColor& color) { Choose(color, false); });
        QObject::connect(dialog_, &QColorDialog::finished, button_, [this](int result) {
            const bool isTaken = result == QDialog::Accepted;
            Choose(isTaken ? dialog_->selectedColor() : ToQColor(before_), true);
        });
        PlaceDialog();
        dialog_->show();
    }

    // Beside the window, where what the colour is for can be seen.
    void PlaceDialog() {
        const QRect window = button_->window()->frameGeometry();
        const QRect screen = button_->screen()->availableGeometry();
        const int width = dialog_->sizeHint().width();
        if (window.right() + kDistance + width <= screen.right())
            dialog_->move(window.right() + kDistance, window.top());
        else if (window.left() - kDistance - width >= screen.left())
            dialog_->move(window.left() - kDistance - width, window.top());
    }

    void Choose(const QColor& color, bool isFinal) {
        SetColor(static_cast<int32>(color.rgb()) & kMask);
        Tell(ValueChange{value_, isFinal}.ToMessage());
    }

    const std::string title_;
    SwatchButton* button_ = nullptr;
    QPointer<QColorDialog> dialog_;
    int32 value_ = 0;
    int32 before_ = 0;
};

}  // namespace

BColorControl::BColorControl(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ColorPart>(label == nullptr ? "" : label)) {}

rgb_color BColorControl::ValueAsColor() const {
    const auto value = static_cast<uint32>(Value());
    return {static_cast<uint8>(value >> 16), static_cast<uint8>(value >> 8),
            static_cast<uint8>(value), 255};
}

void BColorControl::SetValue(int32 value) {
    BControl::SetValue(value & kMask);
    ChangePart<ColorPart>(Part(), [value = Value()](ColorPart& part) { part.SetColor(value); });
}

void BColorControl::SetValue(rgb_color color) {
    SetValue(color.red << 16 | color.green << 8 | color.blue);
}

void BColorControl::Changed(const BMessage& message) {
    const ValueChange change = ValueChange::From(message);
    TakeValue(change.value);
    if (!IsEnabled()) return;
    if (change.isFinal)
        Invoke();
    else if (modification_ != nullptr)
        Invoke(modification_.get());
}
