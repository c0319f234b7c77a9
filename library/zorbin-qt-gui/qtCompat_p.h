#pragma once
#include <QMouseEvent>

// All that differs between Qt 5 and Qt 6 for this library.

namespace zorbin_qt_gui {

/// The pointer's position in whole pixels of the widget.
inline QPoint pointerPos(const QMouseEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

} // namespace zorbin_qt_gui
