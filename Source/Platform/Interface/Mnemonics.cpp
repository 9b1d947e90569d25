#include "Mnemonics.h"

#include <QAction>
#include <QSet>
#include <QWidget>

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

// Where the mark goes; -1: nowhere.
qsizetype PlaceOfMark(const QString& text, const QSet<QChar>& taken) {
    const auto isFree = [&](qsizetype at) {
        return text[at].isLetterOrNumber() && !taken.contains(text[at].toLower());
    };
    for (qsizetype i = 0; i < text.size(); i++) {
        const bool beginsWord = i == 0 || text[i - 1].isSpace();
        if (beginsWord && isFree(i)) return i;
    }
    for (qsizetype i = 0; i < text.size(); i++)
        if (isFree(i)) return i;
    return -1;
}

}  // namespace

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
