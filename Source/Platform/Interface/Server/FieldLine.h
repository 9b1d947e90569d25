// The widget of a field: a line of text in which the first click selects all, as the Tab key does,
// so that typing replaces what is there; and so does Enter. Server's thread.
#pragma once

#include <QLineEdit>

class FieldLine : public QLineEdit {
public:
    FieldLine();

    // It is where the keyboard is in its window, whether or not that is the active one.
    [[nodiscard]] bool HasKeyboard() const;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    // The text comes into the line as it is when it has the keyboard.
    void dropEvent(QDropEvent* event) override;

private:
    bool isEntered_ = false;     // by the mouse or with its window, and not yet clicked
    bool isFirstClick_ = false;  // that is going on
};
