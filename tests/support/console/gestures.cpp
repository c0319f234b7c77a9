#include "gestures.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

namespace survey_console {

void drag(QWidget* widget, const QPoint& from, const QPoint& to)
{
    QTest::mousePress(widget, Qt::LeftButton, Qt::KeyboardModifiers(), from);
    dragTo(widget, to);
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::KeyboardModifiers(), to);
}

void dragTo(QWidget* widget, const QPoint& to)
{
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
}

void turnWheel(QWidget* widget, const QPoint& at, bool isUp)
{
    constexpr int notch = 120; // eighths of a degree
    QWheelEvent turn(at, widget->mapToGlobal(at), QPoint(), QPoint(0, isUp ? notch : -notch),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &turn);
}
} // namespace survey_console
