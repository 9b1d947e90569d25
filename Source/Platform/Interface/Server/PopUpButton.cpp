#include "Platform/Interface/Server/PopUpButton.h"

#include <QKeyEvent>
#include <algorithm>

#include "Platform/Interface/Server/Mnemonics.h"

namespace {

// Between two letters of one text.
constexpr qint64 kMaxTypingPause = 1500;  // ms

}  // namespace

PopUpButton::PopUpButton() {
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PopUpButton::SetMenu(QMenu* menu) {
    menu_ = menu;
    // A child is placed relative to the button where windows cannot place themselves.
    menu_->setParent(this, menu_->windowFlags());
    menu_->installEventFilter(this);
}

void PopUpButton::SetTexts(const QString& shown, const QStringList& all) {
    QStringList texts = all;
    if (!texts.contains(shown)) texts.prepend(shown);
    clear();
    addItems(texts);
    setCurrentIndex(static_cast<int>(texts.indexOf(shown)));
}

void PopUpButton::showPopup() {
    if (menu_ == nullptr || menu_->isEmpty()) return;
    menu_->setMinimumWidth(width());
    QAction* const marked = Marked();
    menu_->popup(mapToGlobal(marked == nullptr ? QPoint(0, height()) : QPoint(0, 0)), marked);
    if (marked != nullptr) menu_->setActiveAction(marked);
}

void PopUpButton::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    switch (event->key()) {
        case Qt::Key_Up:
            isPlain ? Step(-1) : showPopup();
            return;
        case Qt::Key_Down:
            isPlain ? Step(1) : showPopup();
            return;
        case Qt::Key_Space:
        case Qt::Key_F4:
            showPopup();
            return;
        default:
            break;
    }
    if (event->text().isEmpty() || !event->text().front().isLetterOrNumber())
        return event->ignore();
    if (QAction* const found = FindTyped(event->text(), Marked());
        found != nullptr && !found->isChecked())
        found->trigger();
}

bool PopUpButton::eventFilter(QObject* object, QEvent* event) {
    if (object != menu_ || event->type() != QEvent::KeyPress)
        return QComboBox::eventFilter(object, event);
    const QString text = static_cast<QKeyEvent*>(event)->text();
    if (text.isEmpty() || !text.front().isDigit()) return false;
    if (QAction* const found = FindTyped(text, menu_->activeAction()); found != nullptr)
        menu_->setActiveAction(found);
    return true;
}

void PopUpButton::Step(int direction) {
    const QList<QAction*> choices = Choices();
    const qsizetype next = choices.indexOf(Marked()) + direction;
    if (next >= 0 && next < choices.size()) choices[next]->trigger();
}

QAction* PopUpButton::FindTyped(const QString& letter, QAction* current) {
    const bool isContinued = sinceTyped_.isValid() && sinceTyped_.elapsed() < kMaxTypingPause;
    sinceTyped_.start();
    const QList<QAction*> choices = Choices();
    const qsizetype at = choices.indexOf(current);
    const auto find = [&](const QString& text, qsizetype next) {
        QAction* found = nullptr;
        for (qsizetype i = 0; i < choices.size(); i++) {
            QAction* const choice =
                choices[(std::max(at + next, qsizetype{0}) + i) % choices.size()];
            const QString label = WithoutMark(choice->text());
            // "2" is not the beginning of "20" where there is a 2.
            if (label.compare(text, Qt::CaseInsensitive) == 0) return choice;
            if (found == nullptr && label.startsWith(text, Qt::CaseInsensitive)) found = choice;
        }
        return found;
    };
    // More of the same text may mean the current one.
    if (isContinued)
        if (QAction* const found = find(typed_ + letter, 0); found != nullptr) {
            typed_ += letter;
            return found;
        }
    typed_ = letter;
    return find(letter, 1);
}

QList<QAction*> PopUpButton::Choices() const {
    QList<QAction*> choices;
    if (menu_ == nullptr) return choices;
    for (QAction* const action : menu_->actions())
        if (!action->isSeparator() && action->isEnabled() && action->menu() == nullptr)
            choices.append(action);
    return choices;
}

QAction* PopUpButton::Marked() const {
    if (menu_ == nullptr) return nullptr;
    for (QAction* const action : menu_->actions())
        if (action->isChecked()) return action;
    return nullptr;
}
