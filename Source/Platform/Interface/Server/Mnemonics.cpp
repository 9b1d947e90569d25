#include "Platform/Interface/Server/Mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QSet>
#include <QWidget>
#include <utility>

namespace {

constexpr QLatin1Char kMark('&');  // before a letter; twice for itself

QString Unmarked(const QString& text) {
    QString plain;
    for (qsizetype i = 0; i < text.size(); i++) {
        if (text[i] == kMark && i + 1 < text.size() && text[i + 1] != kMark) continue;
        plain += text[i];
        if (text[i] == kMark) plain += text[++i];
    }
    return plain;
}

// Null for none.
QChar MarkedLetter(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); i++) {
        if (text[i] != kMark) continue;
        if (text[++i] != kMark) return text[i].toLower();
    }
    return {};
}

// Where the mark goes; -1: nowhere.
qsizetype PlaceOfMark(const QString& text, const QSet<QChar>& taken) {
    const auto isFree = [&](qsizetype at) {
        return text[at].isLetter() && !taken.contains(text[at].toLower());
    };
    for (qsizetype i = 0; i < text.size(); i++) {
        const bool beginsWord = i == 0 || text[i - 1].isSpace();
        if (beginsWord && isFree(i)) return i;
    }
    for (qsizetype i = 0; i < text.size(); i++)
        if (isFree(i)) return i;
    return -1;
}

// Labels and buttons alike.
constexpr const char* kText = "text";

QString TextOf(const QWidget& label) {
    return label.property(kText).toString();
}

// Fields before buttons: a button can be reached without its letter, too.
QList<QWidget*> LabelsOf(const QWidget& window) {
    QList<QWidget*> labels;
    for (QLabel* const label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr) labels.append(label);
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        if (!button->text().isEmpty()) labels.append(button);
    return labels;
}

}  // namespace

QString WithoutMark(const QString& text) {
    return Unmarked(text).replace(QLatin1String("&&"), QLatin1String("&"));
}

void MarkMnemonics(const QWidget& menu) {
    QSet<QChar> taken;
    for (QAction* const action : menu.actions()) {
        if (action->isSeparator()) continue;
        QString text = Unmarked(action->text());
        if (const qsizetype at = PlaceOfMark(text, taken); at >= 0) {
            taken.insert(text[at].toLower());
            text.insert(at, kMark);
        }
        action->setText(text);
    }
}

// First letters come first: a field is not to lose its own to another one's second choice.
void MarkLabels(const QWidget& window) {
    QSet<QChar> taken;
    for (const QMenuBar* const bar : window.findChildren<QMenuBar*>())
        for (const QAction* const action : bar->actions())
            taken.insert(MarkedLetter(action->text()));
    QList<QWidget*> unmarked;
    for (QWidget* const label : LabelsOf(window))
        if (const QChar letter = MarkedLetter(TextOf(*label)); letter.isNull())
            unmarked.append(label);
        else
            taken.insert(letter);
    for (const bool isFirstOnly : {true, false})
        for (QWidget* const label : std::exchange(unmarked, {})) {
            QString text = TextOf(*label);
            const qsizetype at = PlaceOfMark(text, taken);
            if (at < 0 || (isFirstOnly && at > 0)) {
                unmarked.append(label);
                continue;
            }
            taken.insert(text[at].toLower());
            label->setProperty(kText, text.insert(at, kMark));
        }
}

void MarkAgain(const QWidget& label) {
    if (label.window()->isVisible()) MarkLabels(*label.window());
}
