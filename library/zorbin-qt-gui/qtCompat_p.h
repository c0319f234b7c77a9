#pragma once
#include <QCheckBox>
#include <QDropEvent>
#include <QMouseEvent>
#include <QSize>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QRegularExpressionValidator>
#else
#include <QRegExpValidator>
#endif
#include <string>

class QOpenGLContext;

// All that differs between Qt 5 and Qt 6 for this library, but for XML (xmlReader_p.h).

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

/// The same for something that is dropped.
inline QPoint pointerPos(const QDropEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

/// The signal of a check box whose state has changed.
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
constexpr auto checkStateChanged = &QCheckBox::checkStateChanged;
#else
constexpr auto checkStateChanged = &QCheckBox::stateChanged;
#endif

/// Checks a text against a pattern, which is to be set by setPattern().
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using patternValidator_t = QRegularExpressionValidator;
#else
using patternValidator_t = QRegExpValidator;
#endif

/// Sets a pattern for the whole text, whose "\d" stands for a digit of any script, and whose point
/// for any character.
void setPattern(patternValidator_t& validator, const QString& pattern);

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
