#pragma once
#include <QtGlobal>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QOpenGLWidget>
#else
#include <QGLWidget>
#endif

namespace zorbin_qt_gui {

/// The widget class of the Qt version in use that paints through OpenGL.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using glWidgetBase_t = QOpenGLWidget;
#else
using glWidgetBase_t = QGLWidget;
#endif

} // namespace zorbin_qt_gui
