#include "simpleStripChartWidget.h"

#include "numbers_p.h"
#include "qtCompat_p.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"
#include "stripChartCurve.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QPainter>
#include <limits>

namespace zorbin_qt_gui {
namespace {

// Posted to itself by the widget: from here on repaints have to be asked for afresh.
QEvent::Type forgetRequestsEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

simpleStripChartWidget_t::simpleStripChartWidget_t(simpleStripChartImpl_t* impl) : m_impl(impl)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(impl, &stripChartImpl_t::timeBoundsChanged, this,
            &simpleStripChartWidget_t::scrollWindow);
    connect(impl, &stripChartImpl_t::valueBoundsChanged, this, qOverload<>(&QWidget::update));
}

simpleStripChartWidget_t::~simpleStripChartWidget_t() = default;

bool simpleStripChartWidget_t::removeCurve(stripChartCurve_t* curve)
{
    return m_impl->removeCurve(curve);
}

void simpleStripChartWidget_t::updateChart(double fromTime, double toTime)
{
    if (!m_impl->recalculateBounds())
        return;
    const double timeMin = m_impl->minTimeBound();
    if (!(fromTime <= m_impl->maxTimeBound() && timeMin <= toTime))
        return;
    // Deliberate: the width counts from the chart's left edge, not from x, so the rectangle
    // reaches further right than the points do.
    const double xScale = m_impl->xScaleFactor();
    const qint64 x = truncated((fromTime - timeMin) * xScale);
    const qint64 right = x + truncated(xScale * (toTime - timeMin));
    const qint64 visibleLeft = qMax<qint64>(x, 0);
    const qint64 visibleRight = qMin<qint64>(right, width());
    if (visibleLeft < visibleRight)
        requestRepaint(static_cast<int>(visibleLeft), static_cast<int>(visibleRight));
}

// Marks the columns [left, right) for repainting, but only once until they are painted: while many
// points arrive between two frames, marking would cost more than all the rest.
void simpleStripChartWidget_t::requestRepaint(int left, int right)
{
    for (const columns_t& requested : m_requested) {
        if (left >= requested.left && right <= requested.right)
            return;
    }
    update(left, 0, right - left, height());
    if (!isVisible() || !updatesEnabled())
        return; // nothing was marked
    // Keep the other one of the two if this one goes on where one of them left off.
    const columns_t& latest = m_requested[0];
    const bool continuesLatest = left <= latest.right && latest.left <= right;
    if (!continuesLatest)
        m_requested[1] = latest;
    m_requested[0] = {left, right};
    // The toolkit may drop a request unseen, for a window that isn't exposed. So each is relied on
    // only until control is back in the event loop.
    if (!m_forgetPosted) {
        m_forgetPosted = true;
        QCoreApplication::postEvent(this, new QEvent(forgetRequestsEvent()));
    }
}

void simpleStripChartWidget_t::forgetRequests()
{
    m_requested[0] = m_requested[1] = {};
}

void simpleStripChartWidget_t::timeScroll(int pixels)
{
    m_scroll = pixels;
}

void simpleStripChartWidget_t::scrollWindow()
{
    forgetRequests(); // what they marked moves along
    if (m_scroll != 0)
        scroll(m_scroll, 0);
    else
        update();
    m_scroll = 0;
}

bool simpleStripChartWidget_t::event(QEvent* event)
{
    if (event->type() == forgetRequestsEvent()) {
        m_forgetPosted = false;
        forgetRequests();
        return true;
    }
    return QWidget::event(event);
}

void simpleStripChartWidget_t::leaveEvent(QEvent*)
{
    m_pointerInView = false;
    publishPointerPos();
}

void simpleStripChartWidget_t::mouseMoveEvent(QMouseEvent* event)
{
    m_pointerInView = true;
    m_lastPointerX = pointerPos(event).x();
    m_lastPointerY = pointerPos(event).y();
    publishPointerPos();
}

void simpleStripChartWidget_t::paintEvent(QPaintEvent* event)
{
    forgetRequests();
    {
        QPainter painter(this);
        painter.setBackground(m_impl->canvasColor());
        simpleCurveRenderer_t::context_t context{};
        context.painter = &painter;
        context.minTime = m_impl->minTimeBound();
        context.maxValue = m_impl->maxValueBound();
        context.xScale = m_impl->xScaleFactor();
        context.yScale = m_impl->yScaleFactor();
        context.width = static_cast<unsigned>(width());
        context.height = static_cast<unsigned>(height());
        const auto curves = m_impl->curves();
        for (const QRect& rect : event->region()) {
            painter.eraseRect(rect);
            context.drawMinTime = context.minTime + rect.left() / context.xScale;
            context.drawMaxTime = context.minTime + (rect.right() + 1) / context.xScale;
            // Curves have renderers of the back end that the process has chosen; a chart that was
            // made by name may be of the other one.
            for (stripChartCurve_t* curve : curves) {
                if (auto* const renderer = qobject_cast<simpleCurveRenderer_t*>(curve->renderer()))
                    renderer->draw(context);
            }
        }
    }
    // The pointer may rest where another time is shown now.
    publishPointerPos();
}

void simpleStripChartWidget_t::resizeEvent(QResizeEvent*)
{
    m_impl->updateSize(static_cast<unsigned>(width()), static_cast<unsigned>(height()));
}

void simpleStripChartWidget_t::publishPointerPos()
{
    if (m_pointerInView) {
        Q_EMIT mousePos(m_lastPointerX / m_impl->xScaleFactor() + m_impl->minTimeBound(),
                        m_impl->maxValueBound() - m_lastPointerY / m_impl->yScaleFactor());
    } else {
        constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
        Q_EMIT mousePos(nowhere, nowhere);
    }
}

} // namespace zorbin_qt_gui
