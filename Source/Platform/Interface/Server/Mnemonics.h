// Letters that choose menu items, fields and buttons: texts are written without marks for them, in
// whatever language, so that each menu and each window chooses its own. No state; server's thread.
#pragma once

#include <QString>

class QWidget;

// Marks a letter in the text of every item of a menu or menu bar, no letter twice: the first letter
// of the text if it is free, else that of a word, else any. An item without a free letter has none.
void MarkMnemonics(const QWidget& menu);

// The same for the labels of a window's fields and buttons, beside the letters of its menu bar.
// What has a letter keeps it.
void MarkLabels(const QWidget& window);
// After another text was set to a label: gives it a letter again, if its window had been given
// them.
void MarkAgain(const QWidget& label);

// The text as it is seen: one & marks a letter, two are one.
[[nodiscard]] QString WithoutMark(const QString& text);
