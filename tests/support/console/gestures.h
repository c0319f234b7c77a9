#pragma once
#include <QPoint>

class QWidget;

namespace survey_console {

/// Presses the left button at \p from, moves with it held to \p to, and releases it there.
void drag(QWidget* widget, const QPoint& from, const QPoint& to);

/// Moves the pointer with the left button held, which QTest::mouseMove() doesn't.
void dragTo(QWidget* widget, const QPoint& to);

/// Turns the wheel over \p at by a notch, up or down.
void turnWheel(QWidget* widget, const QPoint& at, bool isUp);
} // namespace survey_console
