#include "BEntryControl.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QStyleOptionFrame>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <functional>

#include "ViewPart.h"

namespace {

constexpr int kRefusalShown = 4000;  // ms
constexpr int kRefusalTint = 0x60;   // of 255

constexpr QKeySequence::StandardKey kOwnKeys[] = {QKeySequence::Cut, QKeySequence::Copy,
                                                  QKeySequence::Paste, QKeySequence::SelectAll};

// The widget, for the keys that it must not take and those that its window must not get.
class EntryLine : public QLineEdit {
public:
    std::function<bool()> isPending;
    std::function<void()> giveUp;
    int columns = 0;  // 0: as wide as the toolkit thinks best

    [[nodiscard]] QSize sizeHint() const override {
        const QSize hint = QLineEdit::sizeHint();
        if (columns == 0) return hint;
        const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
        // Some styles draw wide frames.
        QStyleOptionFrame option;
        initStyleOption(&option);
        const QSize framed = style()->sizeFromContents(
            QStyle::CT_LineEdit, &option, QSize(character * (columns + 1), hint.height()), this);
        return {std::max(character * (columns + 2), framed.width()), hint.height()};
    }
    [[nodiscard]] QSize minimumSizeHint() const override {
        return columns == 0 ? QLineEdit::minimumSizeHint() : sizeHint();
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride &&
            IsForWindow(static_cast<QKeyEvent&>(*event))) {
            event->ignore();
            return true;
        }
        return QLineEdit::event(event);
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape && isPending())
            giveUp();
        else
            QLineEdit::keyPressEvent(event);
    }

private:
    // The toolkit's lines would take Control with some letters, as D and E, from the menus. These
    // are a line's own; without a menu that has them, it gets the others, too.
    [[nodiscard]] bool IsForWindow(const QKeyEvent& key) const {
        const bool isLetter = key.key() >= Qt::Key_A && key.key() <= Qt::Key_Z;
        if (!isLetter || (key.modifiers() & Qt::ControlModifier) == 0) return false;
        // With nothing typed there is nothing of its own to undo.
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) return !isPending();
        return std::none_of(std::begin(kOwnKeys), std::end(kOwnKeys),
                            [&key](QKeySequence::StandardKey own) { return key.matches(own); });
    }
};

class EntryPart : public ViewPart {
public:
    explicit EntryPart(std::string label) : label_(std::move(label)) {}

    QPointer<EntryLine> line;  // asked for even when the widget is gone

    void SetText(const QString& text) {
        isTyping_ = false;
        isTaken_ = false;
        taken_.reset();
        shown_ = text;
        Unmark();
        if (line->text() == text) return;
        const bool isAllSelected = line->hasSelectedText() && line->selectedText() == line->text();
        line->setText(text);
        if (isAllSelected)
            line->selectAll();
        else if (!line->hasFocus())
            line->setCursorPosition(0);
    }

    void ShowText(const QString& text) {
        // An answer comes yet; and what is no news changes nothing, not even another writing.
        if (isTaken_ || text == shown_) return;
        if (IsPending())
            shown_ = text;
        else
            SetText(text);
    }

    std::optional<std::string> Take() {
        if (line == nullptr || !IsPending()) return std::nullopt;
        taken_ = line->text();
        isTaken_ = true;
        return taken_->toStdString();
    }

    void Accept(const QString& text) {
        isTaken_ = false;
        shown_ = text;
        if (!isTyping_ && !IsPending()) SetText(text);
    }

    void Refuse(const QString& text, const QString& why) {
        isTaken_ = false;
        if (isTyping_) {
            taken_.reset();
            shown_ = text;
            return;
        }
        if (!IsPending()) SetText(text);
        Mark();
        if (line->isVisible())
            QToolTip::showText(line->mapToGlobal(QPoint(0, line->height() / 2)), why, line, {},
                               kRefusalShown);
    }

    void SetEditable(bool isEditable) {
        if (line->isReadOnly() == !isEditable) return;
        line->setReadOnly(!isEditable);
        line->setPalette(OwnPalette());
    }

protected:
    QWidget* Make() override {
        line = new EntryLine;
        line->setAccessibleName(ToText(label_));
        line->isPending = [this] { return IsPending(); };
        line->giveUp = [this] {
            SetText(shown_);
            line->selectAll();
        };
        unmark_ = new QTimer(line);
        unmark_->setSingleShot(true);
        QObject::connect(unmark_, &QTimer::timeout, line,
                         [this] { line->setPalette(OwnPalette()); });
        QObject::connect(line, &QLineEdit::editingFinished, line, [this] { Finish(); });
        QObject::connect(line, &QLineEdit::textEdited, line, [this] {
            isTyping_ = true;
            Unmark();
        });
        return line;
    }

private:
    [[nodiscard]] bool IsPending() const {
        return line->text() != shown_ && (!taken_ || line->text() != *taken_);
    }

    void Finish() {
        isTyping_ = false;
        if (IsPending())
            Tell(BMessage(kViewChanged));
        else if (!isTaken_)
            SetText(shown_);
    }

    // One that can only be read looks like the window that it is a text of.
    [[nodiscard]] QPalette OwnPalette() const {
        QPalette palette;
        if (line->isReadOnly()) palette.setBrush(QPalette::Base, palette.window());
        return palette;
    }

    void Mark() {
        QPalette palette;
        const QColor base = palette.color(QPalette::Base);
        const auto mix = [](int from, int to) { return from + (to - from) * kRefusalTint / 255; };
        palette.setColor(QPalette::Base,
                         QColor(mix(base.red(), 255), mix(base.green(), 0), mix(base.blue(), 0)));
        line->setPalette(palette);
        unmark_->start(kRefusalShown);
    }

    void Unmark() {
        if (!unmark_->isActive()) return;
        unmark_->stop();
        line->setPalette(OwnPalette());
    }

    const std::string label_;
    QString shown_;                 // how the value is written
    std::optional<QString> taken_;  // what the line still holds of it
    bool isTaken_ = false;          // and has not been answered
    bool isTyping_ = false;         // the user has not finished, even if what is there was taken
    QTimer* unmark_ = nullptr;      // the line's; ends a refusal's mark
};

}  // namespace

BEntryControl::BEntryControl(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<EntryPart>(label == nullptr ? "" : label)) {}

void BEntryControl::SetText(const char* text) {
    ChangePart<EntryPart>(Part(), [text = ToText(text)](EntryPart& part) { part.SetText(text); });
}

void BEntryControl::SetEditable(bool isEditable) {
    ChangePart<EntryPart>(Part(), [=](EntryPart& part) { part.SetEditable(isEditable); });
}

void BEntryControl::SetColumns(int32 count) {
    ChangePart<EntryPart>(Part(), [=](const EntryPart& part) {
        part.line->columns = count;
        part.line->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    });
}

void BEntryControl::SetRightAligned(bool isRightAligned) {
    ChangePart<EntryPart>(Part(), [=](const EntryPart& part) {
        part.line->setAlignment((isRightAligned ? Qt::AlignRight : Qt::AlignLeft) |
                                Qt::AlignVCenter);
    });
}

void BEntryControl::ShowText(const char* text) {
    ChangePart<EntryPart>(Part(), [text = ToText(text)](EntryPart& part) { part.ShowText(text); });
}

std::optional<std::string> BEntryControl::TakeText() {
    return WindowServer::Ask([part = Part()] { return static_cast<EntryPart&>(*part).Take(); });
}

void BEntryControl::AcceptText(const char* text) {
    ChangePart<EntryPart>(Part(), [text = ToText(text)](EntryPart& part) { part.Accept(text); });
}

void BEntryControl::RefuseText(const char* text, const char* why) {
    ChangePart<EntryPart>(Part(), [text = ToText(text), why = ToText(why)](EntryPart& part) {
        part.Refuse(text, why);
    });
}

void BEntryControl::Changed(const BMessage& /*message*/) {
    Invoke();
}
