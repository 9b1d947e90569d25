#include "Platform/Interface/Server/PopUpButton.h"

#include <QKeyEvent>

PopUpButton::PopUpButton() {
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PopUpButton::SetMenu(QMenu* menu) {
    menu_ = menu;
    // A child is placed relative to the button where windows cannot place themselves.
    menu_->setParent(this, menu_->windowFlags());
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
    if (!event->text().isEmpty() && event->text().front().isLetterOrNumber())
        ChooseByLetter(event->text());
    else
        event->ignore();
}

void PopUpButton::Step(int direction) {
    const QList<QAction*> choices = Choices();
    const qsizetype next = choices.indexOf(Marked()) + direction;
    if (next >= 0 && next < choices.size()) choices[next]->trigger();
}

void PopUpButton::ChooseByLetter(const QString& letter) {
    const QList<QAction*> choices = Choices();
    const qsizetype start = choices.indexOf(Marked());
    for (qsizetype i = 1; i <= choices.size(); i++) {
        QAction* const choice = choices[(start + i + choices.size()) % choices.size()];
        if (!choice->text().startsWith(letter, Qt::CaseInsensitive)) continue;
        choice->trigger();
        return;
    }
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
