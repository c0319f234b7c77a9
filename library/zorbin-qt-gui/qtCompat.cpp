#include "qtCompat_p.h"

#include "glWidgetBase.h"

#include <QOpenGLContext>
#include <QPainter>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QOffscreenSurface>
#include <QOpenGLFunctions>
#endif

namespace zorbin_qt_gui {
namespace {

bool hasFixedFunctions(const QOpenGLContext& context)
{
    return !context.isOpenGLES() && context.format().profile() != QSurfaceFormat::CoreProfile;
}

} // namespace

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
namespace {

QSurfaceFormat fixedFunctionFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    return format;
}

} // namespace

void setUpGlFormat(QWidget& glWidget)
{
    static_cast<glWidgetBase_t&>(glWidget).setFormat(fixedFunctionFormat());
}

QOpenGLContext* glContextOf(const QWidget& glWidget)
{
    QOpenGLContext* const context = static_cast<const glWidgetBase_t&>(glWidget).context();
    return context != nullptr && hasFixedFunctions(*context) ? context : nullptr;
}

std::string glVendor()
{
    QOpenGLContext context;
    context.setFormat(fixedFunctionFormat());
    QOffscreenSurface surface;
    surface.setFormat(fixedFunctionFormat());
    surface.create();
    if (!context.create() || !hasFixedFunctions(context) || !context.makeCurrent(&surface))
        return {};
    const GLubyte* const vendor = context.functions()->glGetString(GL_VENDOR);
    return vendor == nullptr ? std::string() : reinterpret_cast<const char*>(vendor);
}
#else
// QGLWidget draws into its window only, whatever it is asked for.
void glWidgetBase_t::paintEvent(QPaintEvent* event)
{
    QPoint offset;
    const QPaintDevice* const target = redirected(&offset);
    if (target == nullptr || target == this || glContextOf(*this) == nullptr) {
        QGLWidget::paintEvent(event);
        return;
    }
    setAutoBufferSwap(false);
    glDraw();
    setAutoBufferSwap(true);
    const QImage picture = grabFrameBuffer();
    QPainter(this).drawImage(rect(), picture);
}

void setUpGlFormat(QWidget& /*glWidget*/)
{
}

QOpenGLContext* glContextOf(const QWidget& glWidget)
{
    const QGLContext* const context = static_cast<const glWidgetBase_t&>(glWidget).context();
    if (context == nullptr || !context->isValid() || !hasFixedFunctions(*context->contextHandle()))
        return nullptr;
    return context->contextHandle();
}

std::string glVendor()
{
    if (!QGLFormat::hasOpenGL())
        return {};
    QGLWidget probe;
    if (glContextOf(probe) == nullptr)
        return {};
    probe.makeCurrent();
    if (QGLContext::currentContext() != probe.context())
        return {};
    const GLubyte* const vendor = glGetString(GL_VENDOR);
    return vendor == nullptr ? std::string() : reinterpret_cast<const char*>(vendor);
}
#endif

} // namespace zorbin_qt_gui
