// A tip that is in nobody's way: what is clicked is what lies below it. Server's thread.
#pragma once

class QPoint;
class QString;
class QWidget;

// At that place on the screen, for `owner`; until the toolkit thinks that it was read, or for so
// many milliseconds. An empty text hides it.
void ShowPassingTip(QPoint place, const QString& text, QWidget* owner, int milliseconds = -1);
