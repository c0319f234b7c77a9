#pragma once
#include <QMouseEvent>
#include <QSize>
#include <string>

class QByteArray;
class QOpenGLContext;

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

/// The text of an XML file, by its byte order mark or the encoding that it declares, else as UTF-8.
/// Parsers disagree about the encoding of some bytes, so they get them decoded: one parser's word
/// about a text then holds for the other.
QString xmlText(const QByteArray& file);

/// The least size that the application asks for of all widgets.
QSize globalStrut();

/// What resizeGL() of a glWidgetBase_t is told, in pixels of the widget; \p ratio is how many
/// device pixels make one.
QSize resizedGl(QSize told, double ratio);
/// The context of a glWidgetBase_t; null as long as it has none with the fixed-function OpenGL.
QOpenGLContext* glContextOf(const QWidget& glWidget);
/// What such a context says of its vendor; empty if none can be had.
std::string glVendor();
/// Whether one can be had in this process; found out once.
bool isGlUsable();

} // namespace zorbin_qt_gui
