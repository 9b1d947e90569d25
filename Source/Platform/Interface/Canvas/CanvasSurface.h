// The widget of a canvas view: paints the front buffer, and notes what the user does. Server's
// thread.
#pragma once

#include <QMouseEvent>
#include <QWidget>

#include "Platform/Interface/Canvas/CanvasPart.h"

class CanvasPart::Surface : public QWidget {
public:
    explicit Surface(CanvasPart& part);

    [[nodiscard]] QSize sizeHint() const override { return {480, 360}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {80, 60}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void Note(MouseEvent::Kind kind, const QSinglePointEvent& event, int32 clicks);
    void NotePinch(QPointF where, double factor);
    // The screen's scale can change without any other sign.
    void CheckScale();

    CanvasPart& part_;  // held by the widget
};
