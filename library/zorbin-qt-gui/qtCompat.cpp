#include "qtCompat_p.h"

#include "glWidgetBase.h"

#include <QOpenGLContext>
#include <QPainter>
#include <cmath>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#else
#include <QApplication>
#endif

namespace zorbin_qt_gui {
namespace {

bool hasFixedFunctions(const QOpenGLContext& context)
{
    return !context.isOpenGLES() && context.format().profile() != QSurfaceFormat::CoreProfile;
}

} // namespace

void setPattern(patternValidator_t& validator, const QString& pattern)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    validator.setRegularExpression(
        QRegularExpression(pattern, QRegularExpression::UseUnicodePropertiesOption |
                                        QRegularExpression::DotMatchesEverythingOption));
#else
    validator.setRegExp(QRegExp(pattern));
#endif
}

QSize globalStrut()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return {0, 0}; // no longer asked for
#else
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return QApplication::globalStrut();
    QT_WARNING_POP
#endif
}

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

// Covers the widget that it draws. A window with a QOpenGLWidget anywhere in it crashes where there
// is no OpenGL, in Qt 6.4 at least, so there it isn't made at all.
class glWidgetBase_t::canvas_t : public QOpenGLWidget
{
public:
    explicit canvas_t(glWidgetBase_t* owner) : QOpenGLWidget(owner), m_owner(*owner)
    {
        setFormat(fixedFunctionFormat());
        setTextureFormat(GL_RGB8); // nothing shows through
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    void draw(QPaintEvent* event) { paintEvent(event); }

protected:
    void initializeGL() override { m_owner.initializeGL(); }
    void resizeGL(int width, int height) override { m_owner.resizeGL(width, height); }
    void paintGL() override { m_owner.paintGL(); }

private:
    glWidgetBase_t& m_owner;
};

glWidgetBase_t::glWidgetBase_t()
{
    if (isGlUsable())
        m_canvas = new canvas_t(this);
}

glWidgetBase_t::~glWidgetBase_t()
{
    delete m_canvas;
}

QOpenGLContext* glWidgetBase_t::context() const
{
    return m_canvas != nullptr ? m_canvas->context() : nullptr;
}

void glWidgetBase_t::makeCurrent()
{
    if (m_canvas != nullptr)
        m_canvas->makeCurrent();
}

// Qt doesn't repaint the canvas along with what it covers.
void glWidgetBase_t::paintEvent(QPaintEvent* event)
{
    if (m_canvas != nullptr)
        m_canvas->draw(event);
}

void glWidgetBase_t::resizeEvent(QResizeEvent* /*event*/)
{
    if (m_canvas != nullptr)
        m_canvas->resize(size());
}

QOpenGLContext* glContextOf(const QWidget& glWidget)
{
    QOpenGLContext* const context = static_cast<const glWidgetBase_t&>(glWidget).context();
    return context != nullptr && hasFixedFunctions(*context) ? context : nullptr;
}

QSize resizedGl(QSize told, double /*ratio*/)
{
    return told;
}

// The offscreen platform may have contexts, but crashes in Qt 6.4 as soon as a window is to show
// what a QOpenGLWidget drew.
std::string glVendor()
{
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return {};
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

// QGLWidget counts device pixels and drops fractions of them.
QSize resizedGl(QSize told, double ratio)
{
    constexpr double rounding = 1e-6; // far less than a pixel, far more than the division's
    const auto pixels = [=](int device) {
        return static_cast<int>(std::ceil(device / ratio - rounding));
    };
    return {pixels(told.width()), pixels(told.height())};
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
    const bool isCurrent = QGLContext::currentContext() == probe.context();
    const GLubyte* const vendor = isCurrent ? glGetString(GL_VENDOR) : nullptr;
    return vendor == nullptr ? std::string() : reinterpret_cast<const char*>(vendor);
}
#endif

bool isGlUsable()
{
    static const bool isUsable = !glVendor().empty();
    return isUsable;
}

} // namespace zorbin_qt_gui
