// Letters that choose menu items and fields: texts are written without marks for them, in whatever
// language, so that each menu and each window chooses its own. No state; server's thread.
#pragma once

class QWidget;

// Marks a letter in the text of every item of a menu or menu bar, no letter twice: the first letter
// of the text if it is free, else that of a word, else any. An item without a free letter has none.
void MarkMnemonics(const QWidget& menu);

// The same for the labels of a window's fields, beside the letters of its menu bar.
void MarkLabels(const QWidget& window);
