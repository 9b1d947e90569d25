#include "Platform/Interface/Handles/BEntryControl.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QStyleOptionFrame>
#include <QToolTip>
#include <algorithm>
#include <functional>

#include "Platform/Interface/Server/FieldLine.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

constexpr int kRefusalShown = 4000;  // ms
constexpr int kRefusalTint = 0x60;   // of 255

constexpr QKeySequence::StandardKey kOwnKeys[] = {QKeySequence::Cut, QKeySequence::Copy,
                                                  QKeySequence::Paste, QKeySequence::SelectAll};

// The widget, for the keys that it must not take and those that its window must not get.
class EntryLine : public FieldLine {
public:
    std::function<bool()> isOwn;  // whether the line holds something of the user's
    std::function<void()> giveUp;
    std::function<void()> keyboardComes;
    std::function<void()> keyboardGoes;
    QString refusal;  // why the line is marked; empty: it is not
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
        if (event->type() == QEvent::ToolTip && !refusal.isEmpty()) {
            QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), refusal, this);
            return true;
        }
        return FieldLine::event(event);
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape && isOwn())
            giveUp();
        else
            FieldLine::keyPressEvent(event);
    }

    // Before the line selects what it holds.
    void focusInEvent(QFocusEvent* event) override {
        keyboardComes();
        FieldLine::focusInEvent(event);
    }

    // After what was typed has been told.
    void focusOutEvent(QFocusEvent* event) override {
        FieldLine::focusOutEvent(event);
        if (!HasKeyboard()) keyboardGoes();
    }

private:
    // The toolkit's lines would take Control with some letters, as D and E, from the menus. These
    // are a line's own; without a menu that has them, it gets the others, too.
    [[nodiscard]] bool IsForWindow(const QKeyEvent& key) const {
        const bool isLetter = key.key() >= Qt::Key_A && key.key() <= Qt::Key_Z;
        if (!isLetter || (key.modifiers() & Qt::ControlModifier) == 0) return false;
        // With nothing typed there is nothing of its own to undo.
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) return !isOwn();
        return std::none_of(std::begin(kOwnKeys), std::end(kOwnKeys),
                            [&key](QKeySequence::StandardKey own) { return key.matches(own); });
    }
};

struct EntryText {
    EntryText() = default;
    explicit EntryText(const BEntryControl::Writing& writing)
        : full(ToText(writing.full)), brief(ToText(writing.brief)) {}

    QString full;
    QString brief;
};

class EntryPart : public ViewPart {
public:
    explicit EntryPart(std::string label) : label_(std::move(label)) {}

    QPointer<EntryLine> line;  // asked for even when the widget is gone

    void SetText(const EntryText& text) {
        isTyping_ = false;
        isTaken_ = false;
        taken_.reset();
        text_ = text;
        isFull_ = line->HasKeyboard();
        Unmark();
        Write();
    }

    void ShowText(const EntryText& text) {
        // An answer comes yet; and what is no news changes nothing, not even another writing.
        if (isTaken_ || text.full == text_.full) return;
        if (IsOwn())
            text_ = text;
        else
            SetText(text);
    }

    std::optional<std::string> Take() {
        if (line == nullptr || !IsPending()) return std::nullopt;
        taken_ = line->text();
        isTaken_ = true;
        return taken_->toStdString();
    }

    void Accept(const EntryText& text) {
        isTaken_ = false;
        text_ = text;
        if (!isTyping_ && !IsPending()) SetText(text);
    }

    void Refuse(const EntryText& text, const QString& why) {
        isTaken_ = false;
        text_ = text;
        if (isTyping_) return taken_.reset();
        Mark(why);
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
        line->isOwn = [this] { return IsOwn(); };
        line->giveUp = [this] {
            SetText(text_);
            line->selectAll();
        };
        // What is the user's stays, and is compared with the full text from now on: who types the
        // brief one means just that.
        line->keyboardComes = [this] {
            const bool isOwn = IsOwn() || isTaken_ || isTyping_;
            isFull_ = true;
            if (!isOwn) Write();
        };
        line->keyboardGoes = [this] {
            if (IsOwn() || isTaken_) return;
            isFull_ = false;
            Write();
        };
        // Whoever insists hears again why not.
        QObject::connect(line, &QLineEdit::returnPressed, line, [this] {
            if (IsRefused()) taken_.reset();
        });
        QObject::connect(line, &QLineEdit::editingFinished, line, [this] { Finish(); });
        QObject::connect(line, &QLineEdit::textEdited, line, [this] {
            isTyping_ = true;
            Unmark();
        });
        return line;
    }

private:
    // What the line holds when nothing is the user's.
    [[nodiscard]] const QString& Written() const { return isFull_ ? text_.full : text_.brief; }

    [[nodiscard]] bool IsPending() const {
        return line->text() != Written() && (!taken_ || line->text() != *taken_);
    }
    [[nodiscard]] bool IsRefused() const { return !line->refusal.isEmpty(); }
    [[nodiscard]] bool IsOwn() const { return IsPending() || IsRefused(); }

    void Write() {
        // The toolkit leaves a selection where the keyboard goes while another window is active.
        if (!line->HasKeyboard()) line->deselect();
        if (line->text() == Written()) return;
        const bool isAllSelected = line->hasSelectedText() && line->selectedText() == line->text();
        line->setText(Written());
        if (isAllSelected)
            line->selectAll();
        else if (!line->hasFocus())
            line->setCursorPosition(0);
    }

    void Finish() {
        isTyping_ = false;
        if (IsPending())
            Tell(BMessage(kViewChanged));
        else if (!isTaken_ && !IsRefused())
            SetText(text_);
    }

    // One that can only be read looks like the window that it is a text of.
    [[nodiscard]] QPalette OwnPalette() const {
        QPalette palette;
        if (line->isReadOnly()) palette.setBrush(QPalette::Base, palette.window());
        return palette;
    }

    void Mark(const QString& why) {
        QPalette palette;
        const QColor base = palette.color(QPalette::Base);
        const auto mix = [](int from, int to) { return from + (to - from) * kRefusalTint / 255; };
        palette.setColor(QPalette::Base,
                         QColor(mix(base.red(), 255), mix(base.green(), 0), mix(base.blue(), 0)));
        line->setPalette(palette);
        line->refusal = why;
        line->setAccessibleDescription(why);
    }

    void Unmark() {
        if (!IsRefused()) return;
        line->refusal.clear();
        line->setAccessibleDescription({});
        line->setPalette(OwnPalette());
    }

    const std::string label_;
    EntryText text_;                // how the value is written
    bool isFull_ = false;           // in the line: the full text
    std::optional<QString> taken_;  // what the line still holds of the user's, or of a refusal
    bool isTaken_ = false;          // and has not been answered
    bool isTyping_ = false;         // the user has not finished, even if what is there was taken
};

}  // namespace

BEntryControl::BEntryControl(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<EntryPart>(label == nullptr ? "" : label)) {}

void BEntryControl::SetText(const Writing& text) {
    ChangePart<EntryPart>(Part(),
                          [text = EntryText(text)](EntryPart& part) { part.SetText(text); });
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

void BEntryControl::SelectAll() {
    ChangePart<EntryPart>(Part(), [](const EntryPart& part) { part.line->selectAll(); });
}

void BEntryControl::ShowText(const Writing& text) {
    ChangePart<EntryPart>(Part(),
                          [text = EntryText(text)](EntryPart& part) { part.ShowText(text); });
}

std::optional<std::string> BEntryControl::TakeText() {
    return WindowServer::Ask([part = Part()] { return static_cast<EntryPart&>(*part).Take(); });
}

void BEntryControl::AcceptText(const Writing& text) {
    ChangePart<EntryPart>(Part(), [text = EntryText(text)](EntryPart& part) { part.Accept(text); });
}

void BEntryControl::RefuseText(const Writing& text, const char* why) {
    ChangePart<EntryPart>(Part(), [text = EntryText(text), why = ToText(why)](EntryPart& part) {
        part.Refuse(text, why);
    });
}

void BEntryControl::Changed(const BMessage& /*message*/) {
    Invoke();
}
