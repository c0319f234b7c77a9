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
    glWidgetBase_t();
    ~glWidgetBase_t() override;

    /// Null until the widget is on screen, and where there is no OpenGL.
    QOpenGLContext* context() const;
    void makeCurrent();

protected:
    virtual void initializeGL() = 0;
    virtual void resizeGL(int width, int height) = 0;
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
