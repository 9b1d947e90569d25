#include "Platform/Interface/Handles/BEntryControl.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QStyleOptionFrame>
#include <QToolTip>
#include <algorithm>
#include <functional>
#include <utility>

#include "Platform/Interface/Server/FieldLine.h"
#include "Platform/Interface/Server/LineText.h"
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
            ShowPassingTip(static_cast<QHelpEvent*>(event)->globalPos(), refusal, this);
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

    // After what was typed has been reported.
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

class EntryPart : public ViewPart {
public:
    explicit EntryPart(std::string label) : label_(std::move(label)) {}

    QPointer<EntryLine> line;  // asked for even when the widget is gone

    // Shared with the handle.
    LineText text;

    void SetText(const LineText::Writing& writing) {
        text.Replace(writing, line->HasKeyboard());
        Rewrite();
    }

    void ShowText(const LineText::Writing& writing) {
        if (text.Show(writing, line->HasKeyboard(), IsRefused())) Rewrite();
    }

    void Accept(const LineText::Writing& writing) {
        if (text.Accept(writing, line->HasKeyboard())) Rewrite();
    }

    void Refuse(const LineText::Writing& writing, const QString& why) {
        if (!text.Refuse(writing)) return;
        Mark(why);
        if (line->isVisible())
            ShowPassingTip(line->mapToGlobal(QPoint(0, line->height() / 2)), why, line,
                           kRefusalShown);
    }

    void SetEditable(bool isEditable) {
        if (line->isReadOnly() == !isEditable) return;
        line->setReadOnly(!isEditable);
        line->setPalette(OwnPalette());
    }

    void SetFaded(bool isFaded) {
        if (std::exchange(isFaded_, isFaded) != isFaded && !IsRefused())
            line->setPalette(OwnPalette());
    }

protected:
    QWidget* Make() override {
        line = new EntryLine;
        line->setAccessibleName(ToText(label_));
        line->isOwn = [this] { return IsOwn(); };
        line->giveUp = [this] {
            text.Restore(line->HasKeyboard());
            Rewrite();
            line->selectAll();
        };
        line->keyboardComes = [this] {
            if (text.KeyboardComes(IsRefused())) Write();
        };
        line->keyboardGoes = [this] {
            if (text.KeyboardGoes(IsRefused())) Write();
        };
        // A user who insists is told again why not.
        QObject::connect(line, &QLineEdit::returnPressed, line, [this] {
            if (IsRefused()) text.Insist();
        });
        QObject::connect(line, &QLineEdit::editingFinished, line, [this] { Finish(); });
        QObject::connect(line, &QLineEdit::textEdited, line, [this](const QString& typed) {
            text.Typed(typed.toStdString());
            Unmark();
        });
        QObject::connect(line, &QLineEdit::textChanged, line,
                         [this](const QString& now) { text.LineIs(now.toStdString()); });
        QObject::connect(line, &QObject::destroyed, [this] { text.LineIsGone(); });
        return line;
    }

private:
    [[nodiscard]] bool IsRefused() const { return !line->refusal.isEmpty(); }
    [[nodiscard]] bool IsOwn() const { return text.IsPending() || IsRefused(); }

    void Rewrite() {
        Unmark();
        Write();
    }

    void Write() {
        // The toolkit leaves a selection where the keyboard goes while another window is active.
        if (!line->HasKeyboard()) line->deselect();
        const QString written = ToText(text.Written());
        if (line->text() == written) return;
        const bool isAllSelected = line->hasSelectedText() && line->selectedText() == line->text();
        line->setText(written);
        if (isAllSelected)
            line->selectAll();
        else if (!line->hasFocus())
            line->setCursorPosition(0);
    }

    void Finish() {
        switch (text.FinishTyping(line->HasKeyboard(), IsRefused())) {
            case LineText::Finished::kPending:
                return Tell(BMessage(kViewChanged));
            case LineText::Finished::kToBeWritten:
                return Rewrite();
            case LineText::Finished::kNothing:
                return;
        }
    }

    // One that can only be read looks like the window that it is a text of.
    [[nodiscard]] QPalette OwnPalette() const {
        QPalette palette;
        if (line->isReadOnly()) palette.setBrush(QPalette::Base, palette.window());
        if (isFaded_) palette.setBrush(QPalette::Text, palette.placeholderText());
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
        if (QToolTip::text() == line->refusal) QToolTip::hideText();
        line->refusal.clear();
        line->setAccessibleDescription({});
        line->setPalette(OwnPalette());
    }

    const std::string label_;
    bool isFaded_ = false;
};

// As the line will hold it, which changes text that is not valid.
LineText::Writing InLine(const LineText::Writing& writing) {
    return {ToText(writing.full).toStdString(), ToText(writing.brief).toStdString()};
}

}  // namespace

BEntryControl::BEntryControl(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<EntryPart>(label == nullptr ? "" : label)) {}

void BEntryControl::SetText(const Writing& text) {
    static_cast<EntryPart&>(*Part()).text.ExpectReplace();
    ChangePart<EntryPart>(Part(), [text = InLine(text)](EntryPart& part) { part.SetText(text); });
}

void BEntryControl::SetEditable(bool isEditable) {
    ChangePart<EntryPart>(Part(), [=](EntryPart& part) { part.SetEditable(isEditable); });
}

void BEntryControl::SetFaded(bool isFaded) {
    ChangePart<EntryPart>(Part(), [=](EntryPart& part) { part.SetFaded(isFaded); });
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
    ChangePart<EntryPart>(Part(), [text = InLine(text)](EntryPart& part) { part.ShowText(text); });
}

std::optional<std::string> BEntryControl::TakeText() {
    return static_cast<EntryPart&>(*Part()).text.Take();
}

void BEntryControl::AcceptText(const Writing& text) {
    ChangePart<EntryPart>(Part(), [text = InLine(text)](EntryPart& part) { part.Accept(text); });
}

void BEntryControl::RefuseText(const Writing& text, const char* why) {
    ChangePart<EntryPart>(Part(), [text = InLine(text), why = ToText(why)](EntryPart& part) {
        part.Refuse(text, why);
    });
}

// Whoever is in the same window is called at once: the server's message was the one through its
// port.
void BEntryControl::Changed(const BMessage& /*message*/) {
    const BMessenger target = HasTarget() ? Messenger() : DefaultTarget();
    BHandler* const handler = target.LockedTarget();
    if (handler == nullptr || Message() == nullptr) {
        Invoke();
        return;
    }
    BMessage message = Invocation(*Message());
    handler->MessageReceived(&message);
}
