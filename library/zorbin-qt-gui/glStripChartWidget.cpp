#include "glStripChartWidget.h"

#include "glCurveRenderer.h"
#include "glStripChartImpl.h"
#include "qtCompat_p.h"
#include "stripChartCurve.h"

#include <QOpenGLContext>
#include <QPointer>
#include <algorithm>
#include <limits>
#include <qopengl.h>

namespace zorbin_qt_gui {

glStripChartWidget_t::glStripChartWidget_t(glStripChartImpl_t* impl) : m_impl(impl)
{
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    const auto repaint = qOverload<>(&QWidget::update);
    connect(m_impl, &stripChartImpl_t::timeBoundsChanged, this, repaint);
    connect(m_impl, &stripChartImpl_t::valueBoundsChanged, this, repaint);
}

glStripChartWidget_t::~glStripChartWidget_t()
{
    if (m_context != nullptr)
        disconnect(m_context, nullptr, this, nullptr);
    const std::set<glCurveRenderer_t*> renderers = m_renderers;
    for (glCurveRenderer_t* const renderer : renderers)
        renderer->prepareToDelete();
}

bool glStripChartWidget_t::removeCurve(stripChartCurve_t* curve)
{
    return m_impl->removeCurve(curve);
}

void glStripChartWidget_t::updateChart(double /*fromTime*/, double /*toTime*/)
{
    if (m_impl->recalculateBounds())
        update();
}

void glStripChartWidget_t::leaveEvent(QEvent* /*event*/)
{
    m_pointerInView = false;
    publishPointerPos();
}

void glStripChartWidget_t::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pos = pointerPos(event);
    m_pointerInView = true;
    m_lastPointerX = pos.x();
    m_lastPointerY = pos.y();
    publishPointerPos();
}

void glStripChartWidget_t::resizeEvent(QResizeEvent* event)
{
    glWidgetBase_t::resizeEvent(event);
    if (glContextOf(*this) == nullptr) // resizeGL() won't come
        m_impl->updateSize(static_cast<unsigned>(width()), static_cast<unsigned>(height()));
}

void glStripChartWidget_t::initializeGL()
{
    if (!makeOwnContextCurrent())
        return;
    const QColor& canvas = m_impl->canvasColor();
    const auto part = [](int component) { return static_cast<float>(component / 255.0); };
    glClearColor(part(canvas.red()), part(canvas.green()), part(canvas.blue()),
                 part(canvas.alpha()));
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glShadeModel(GL_FLAT); // every line has one colour
    setUpView(size());     // a new context needn't come with a new size
}

void glStripChartWidget_t::resizeGL(int width, int height)
{
    const QSize size = resizedGl(QSize(width, height), devicePixelRatioF());
    if (makeOwnContextCurrent())
        setUpView(size);
    m_impl->updateSize(static_cast<unsigned>(size.width()), static_cast<unsigned>(size.height()));
}

// Makes coordinates pixels of a widget of that size, counted from its centre.
void glStripChartWidget_t::setUpView(QSize size)
{
    const QSize devicePixels = size * devicePixelRatioF();
    glViewport(0, 0, devicePixels.width(), devicePixels.height());
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    const double halfWidth = size.width() * 0.5;
    const double halfHeight = size.height() * 0.5;
    glOrtho(-halfWidth, halfWidth, -halfHeight, halfHeight, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
}

void glStripChartWidget_t::paintGL()
{
    if (!makeOwnContextCurrent())
        return;
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScaled(m_impl->xScaleFactor(), m_impl->yScaleFactor(), 1.0);
    const double reach = visibleReach();
    const std::set<stripChartCurve_t*> curves = m_impl->curves();
    for (stripChartCurve_t* const curve : curves) {
        // Curves have renderers of the back end that the process has chosen; a chart that was made
        // by name may be of the other one.
        auto* const renderer = qobject_cast<glCurveRenderer_t*>(curve->renderer());
        if (renderer == nullptr)
            continue;
        glPushMatrix();
        renderer->draw(m_impl->xCenter(), m_impl->yCenter(), reach);
        glPopMatrix();
    }
    publishPointerPos();
}

void glStripChartWidget_t::publishPointerPos()
{
    if (m_pointerInView) {
        Q_EMIT mousePos(m_lastPointerX / m_impl->xScaleFactor() + m_impl->minTimeBound(),
                        m_impl->maxValueBound() - m_lastPointerY / m_impl->yScaleFactor());
    } else {
        constexpr double none = std::numeric_limits<double>::quiet_NaN();
        Q_EMIT mousePos(none, none);
    }
}

// False where there is no context, or another one stays current; lists must not go there.
bool glStripChartWidget_t::makeOwnContextCurrent()
{
    QOpenGLContext* const own = glContextOf(*this);
    if (own == nullptr)
        return false;
    if (QOpenGLContext::currentContext() != own)
        makeCurrent();
    if (QOpenGLContext::currentContext() != own)
        return false;
    if (m_context != own) {
        m_context = own;
        // Moved to another window, the widget may get another context.
        connect(own, &QOpenGLContext::aboutToBeDestroyed, this,
                &glStripChartWidget_t::releaseLists);
    }
    return true;
}

void glStripChartWidget_t::releaseLists()
{
    for (glCurveRenderer_t* const renderer : m_renderers)
        renderer->releaseLists();
}

// How many seconds from the centre something may be seen: half of what is in view, and some pixels.
// A span that isn't positive, as long as the bounds are set reversed, leaves nothing out.
double glStripChartWidget_t::visibleReach() const
{
    const double span = width() / m_impl->xScaleFactor();
    return span > 0.0 ? span * 0.5 + span * 4.0 / std::max(1, width())
                      : std::numeric_limits<double>::infinity();
}

} // namespace zorbin_qt_gui
