#include "stripChart.h"

#include "stripChartImpl.h"

#include <QVBoxLayout>

namespace zorbin_qt_gui {
namespace {

// The implementation asks for no repaint when its curves or its colour change; a user expects to
// see what was done at once. While the chart is being destroyed its drawing widget is gone first.
void updateCanvas(QWidget* canvas)
{
    if (canvas != nullptr)
        canvas->update();
}

} // namespace

stripChart_t::stripChart_t(QWidget* parent)
    : QWidget(parent), m_d(stripChartImpl_t::createChartImpl(this))
{
    const stripChartImpl_t* const impl = m_d.get();
    connect(impl, &stripChartImpl_t::timeBoundsChanged, this, &stripChart_t::timeBoundsChanged);
    connect(impl, &stripChartImpl_t::valueBoundsChanged, this, &stripChart_t::valueBoundsChanged);
    connect(impl, &stripChartImpl_t::valueAutoscaleChanged, this,
            &stripChart_t::valueAutoscaleChanged);
    connect(impl, &stripChartImpl_t::mousePos, this, &stripChart_t::mousePos);
    m_d->canvasColor(palette().color(QPalette::Window));
    m_canvas = m_d->widget();

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_canvas, 0);
}

stripChart_t::~stripChart_t() = default;

bool stripChart_t::addCurve(stripChartCurve_t* curve)
{
    const bool isAdded = m_d->addCurve(curve);
    if (isAdded)
        updateCanvas(m_canvas);
    return isAdded;
}

bool stripChart_t::removeCurve(stripChartCurve_t* curve)
{
    const bool isRemoved = m_d->removeCurve(curve);
    if (isRemoved)
        updateCanvas(m_canvas);
    return isRemoved;
}

bool stripChart_t::autoscaleValue() const
{
    return m_d->valueRescaleMode() == stripChartImpl_t::RESCALE_AUTO;
}

double stripChart_t::minTimeBound() const
{
    return m_d->minTimeBound();
}

double stripChart_t::maxTimeBound() const
{
    return m_d->maxTimeBound();
}

double stripChart_t::minValueBound() const
{
    return m_d->minValueBound();
}

double stripChart_t::maxValueBound() const
{
    return m_d->maxValueBound();
}

QSize stripChart_t::minimumSizeHint() const
{
    return {50, 50};
}

void stripChart_t::scrollTime(double time_)
{
    m_d->scrollTime(time_);
}

void stripChart_t::timeBounds(double min_, double max_)
{
    m_d->timeBounds(min_, max_);
}

void stripChart_t::valueBounds(double min_, double max_)
{
    m_d->valueBounds(min_, max_);
}

void stripChart_t::minValueRange(double range_)
{
    m_d->minValueRange(range_);
}

void stripChart_t::autoscaleValue(bool enable_)
{
    m_d->valueRescaleMode(enable_ ? stripChartImpl_t::RESCALE_AUTO
                                  : stripChartImpl_t::RESCALE_MANUAL);
}

void stripChart_t::setBackgroundColor(QColor color_)
{
    if (color_ == m_d->canvasColor())
        return;
    const QPointer<QWidget> canvas = m_canvas; // slots of colorChanged() may delete the chart
    m_d->canvasColor(color_);
    updateCanvas(canvas);
}

} // namespace zorbin_qt_gui
