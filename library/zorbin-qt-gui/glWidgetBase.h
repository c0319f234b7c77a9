#pragma once
#include "zorbinQtGuiExport.h"

#include <QtGlobal>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QOpenGLWidget>
#else
#include <QGLWidget>
#endif

namespace zorbin_qt_gui {

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
/// The widget class of the Qt version in use that paints through OpenGL.
using glWidgetBase_t = QOpenGLWidget;
#else
/// The widget class of the Qt version in use that paints through OpenGL, also for QWidget::grab().
class ZORBIN_QT_GUI_EXPORT glWidgetBase_t : public QGLWidget
{
protected:
    void paintEvent(QPaintEvent* event) override;
};
#endif

} // namespace zorbin_qt_gui
