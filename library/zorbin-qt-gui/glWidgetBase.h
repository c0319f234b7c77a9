#pragma once
#include "zorbinQtGuiExport.h"

#include <QtGlobal>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QWidget>
#else
#include <QGLWidget>
#endif

class QOpenGLContext;

namespace zorbin_qt_gui {

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
/// A widget that paints through the fixed-function OpenGL. Where that can't be had it stays empty.
class ZORBIN_QT_GUI_EXPORT glWidgetBase_t : public QWidget
{
public:
    /// Makes a widget without a parent. Tries OpenGL out when it is called first in the process.
    glWidgetBase_t();
    ~glWidgetBase_t() override;

    /// Null until the widget is on screen, and where there is no OpenGL.
    QOpenGLContext* context() const;
    /// Makes the context current; nothing where there is none.
    void makeCurrent();

protected:
    /// Called once for each context, which is current, before it is first painted in.
    virtual void initializeGL() = 0;
    /// Called with the context current when the widget's size in pixels has changed, and after
    /// initializeGL().
    virtual void resizeGL(int width, int height) = 0;
    /// Paints the whole widget; the context is current.
    virtual void paintGL() = 0;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class canvas_t;
    canvas_t* m_canvas = nullptr; // a child; null where there is no OpenGL
};
#else
/// A widget that paints through OpenGL, also for QWidget::grab().
class ZORBIN_QT_GUI_EXPORT glWidgetBase_t : public QGLWidget
{
protected:
    void paintEvent(QPaintEvent* event) override;
};
#endif

} // namespace zorbin_qt_gui
