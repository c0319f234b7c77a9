#pragma once
#include <QImage>
#include <QString>

class QColor;
class QWidget;

/// What \p widget paints when asked for all of itself, shown or not. Format_RGB32.
QImage snapshot(QWidget& widget);

/// Delivers all that the window system has to say of what was asked of it so far, such as sizes and
/// parts of windows that became visible, however busy the machine is, and paints what is pending.
void settle();

/// What the screen shows of \p window, a top-level widget: the outcome of all scrolling and
/// partial painting so far. Settles first. Format_RGB32.
QImage shown(QWidget& window);

/// A picture of the size of \p widget in its palette's QPalette::Window colour, on which texts come
/// out as large as on the widget. Format_RGB32.
QImage blank(const QWidget& widget);

/// Names the first pixel, row by row, in which the pictures differ, and saves both beside the
/// test program's working directory; an empty string when they are equal.
QString firstDifference(const QImage& actual, const QImage& wanted);

/// How many pixels of \p picture have the opaque \p color.
int countOf(const QColor& color, const QImage& picture);
