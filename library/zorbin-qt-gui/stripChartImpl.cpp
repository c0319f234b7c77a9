#include "stripChartImpl.h"

#include "curveExtents_p.h"
#include "glCurveRenderer.h"
#include "glStripChartImpl.h"
#include "numbers_p.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"
#include "stripChartCurve.h"
#include "stripChartCurveRenderer.h"

#include <QApplication>
#include <QMutex>
#include <QMutexLocker>
#include <QPalette>
#include <QPointer>
#include <algorithm>
#include <cmath>

namespace zorbin_qt_gui {
namespace {

// The back end that the environment asks for, or else the one that fits the machine.
std::string chooseImplementationType()
{
    constexpr char variable[] = "ZORBIN_QT_STRIPCHART_TYPE";
    if (!qEnvironmentVariableIsSet(variable))
        return glStripChartImpl_t::supported() ? "gl" : "simple";
    const QByteArray value = qgetenv(variable);
    if (value == "gl" || value == "simple")
        return value.toStdString();
    qDebug("ZORBIN_QT_STRIPCHART (%s) invalid!", value.constData());
    return "simple";
}

} // namespace

stripChartImpl_t::stripChartImpl_t(QObject* parent)
    : QObject(parent), m_color(QApplication::palette().color(QPalette::Window)),
      m_extents(std::make_unique<curveExtents_t>())
{
}

stripChartImpl_t::~stripChartImpl_t()
{
    m_isEnding = true;
    // Deleting a curve may delete others with it, its children for one; those leave the set by
    // cleanupCurve().
    for (stripChartCurve_t* curve : curves()) {
        if (removeCurve(curve))
            delete curve;
    }
}

stripChartImpl_t* stripChartImpl_t::createChartImpl(QWidget* parent)
{
    if (implementationType() == "gl")
        return new glStripChartImpl_t(parent);
    return new simpleStripChartImpl_t(parent);
}

stripChartCurveRenderer_t* stripChartImpl_t::createCurveRenderer(stripChartCurveData_t* data)
{
    if (implementationType() == "gl")
        return new glCurveRenderer_t(data);
    return new simpleCurveRenderer_t(data);
}

std::string stripChartImpl_t::implementationType()
{
    static QMutex mutex;
    static std::string type;
    const QMutexLocker locker(&mutex);
    if (type.empty())
        type = chooseImplementationType();
    return type;
}

bool stripChartImpl_t::addCurve(stripChartCurve_t* curve)
{
    if (curve == nullptr || m_isEnding || !m_curves.insert(curve).second)
        return false;
    m_extents->add(*curve->m_d);
    m_isSettled = false;
    curve->renderer()->chart(widget());
    connect(curve, &QObject::destroyed, this, &stripChartImpl_t::cleanupCurve);
    return true;
}

bool stripChartImpl_t::removeCurve(stripChartCurve_t* curve)
{
    if (m_curves.erase(curve) == 0)
        return false;
    m_extents->remove(*curve->m_d);
    m_isSettled = false;
    disconnect(curve, &QObject::destroyed, this, &stripChartImpl_t::cleanupCurve);
    return true;
}

void stripChartImpl_t::cleanupCurve()
{
    // The sender is no more than a QObject by now.
    const QObject* const destroyed = sender();
    const auto found =
        std::find_if(m_curves.begin(), m_curves.end(), [=](const stripChartCurve_t* curve) {
            return static_cast<const QObject*>(curve) == destroyed;
        });
    if (found != m_curves.end())
        m_curves.erase(found);
    m_isSettled = false;
}

std::set<stripChartCurve_t*> stripChartImpl_t::curves() const
{
    return m_curves;
}

void stripChartImpl_t::timeBounds(double min, double max)
{
    if ((min == m_timeMin && max == m_timeMax) || !std::isfinite(min) || !std::isfinite(max))
        return;
    m_timeMin = min;
    m_timeMax = max;
    m_isSettled = false;
    m_xCenter = (min + max) * 0.5;
    m_xScale = m_width / (max - min);
    const QPointer<stripChartImpl_t> self(this);
    Q_EMIT timeBoundsChanged(min, max);
    if (self)
        recalculateBounds();
}

double stripChartImpl_t::minTimeBound() const
{
    return m_timeMin;
}

double stripChartImpl_t::maxTimeBound() const
{
    return m_timeMax;
}

void stripChartImpl_t::scrollTime(double t)
{
    timeBounds(t - (m_timeMax - m_timeMin), t);
}

void stripChartImpl_t::valueBounds(double min, double max)
{
    const QPointer<stripChartImpl_t> self(this);
    valueRescaleMode(RESCALE_MANUAL);
    if (!self)
        return;
    if ((min == m_valueMin && max == m_valueMax) || !std::isfinite(min) || !std::isfinite(max))
        return;
    m_valueMin = min;
    m_valueMax = max;
    m_isSettled = false;
    m_yCenter = (min + max) * 0.5;
    m_yScale = m_height / (max - min);
    Q_EMIT valueBoundsChanged(min, max);
    if (self)
        recalculateBounds();
}

double stripChartImpl_t::minValueBound() const
{
    return m_valueMin;
}

double stripChartImpl_t::maxValueBound() const
{
    return m_valueMax;
}

void stripChartImpl_t::minValueRange(double range)
{
    if (!(range > 0.0)) // NaN is refused, too
        qFatal("stripChart_t::minValueRange: Range must be positive");
    m_minRange = range;
    m_isSettled = false;
    recalculateBounds();
}

void stripChartImpl_t::valueRescaleMode(const rescaleMode_t& mode)
{
    if (mode == m_yRescaleMode)
        return;
    m_yRescaleMode = mode;
    const QPointer<stripChartImpl_t> self(this);
    Q_EMIT valueAutoscaleChanged(mode == RESCALE_AUTO);
    if (self)
        recalculateBounds();
}

const stripChartImpl_t::rescaleMode_t& stripChartImpl_t::valueRescaleMode() const
{
    return m_yRescaleMode;
}

void stripChartImpl_t::canvasColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    Q_EMIT colorChanged();
}

const QColor& stripChartImpl_t::canvasColor() const
{
    return m_color;
}

unsigned stripChartImpl_t::margin() const
{
    return m_margin;
}

void stripChartImpl_t::margin(unsigned pixels)
{
    m_margin = pixels;
    m_isSettled = false;
}

double stripChartImpl_t::xScaleFactor() const
{
    return m_xScale;
}

double stripChartImpl_t::yScaleFactor() const
{
    return m_yScale;
}

double stripChartImpl_t::xCenter() const
{
    return m_xCenter;
}

double stripChartImpl_t::yCenter() const
{
    return m_yCenter;
}

void stripChartImpl_t::updateSize(unsigned width, unsigned height)
{
    m_width = width;
    m_height = height;
    m_isSettled = false;
    recalculateBounds();
}

bool stripChartImpl_t::recalculateBounds()
{
    if (m_yRescaleMode == RESCALE_AUTO)
        return autoscale();
    m_yCenter = (m_valueMin + m_valueMax) * 0.5;
    m_yScale = m_height / (m_valueMax - m_valueMin);
    m_isSettled = false;
    return true;
}

bool stripChartImpl_t::autoscale()
{
    if (m_isSettled && m_extents->isCurrent())
        return true;

    extremes_t extent = m_extents->over(m_timeMin, m_timeMax);
    if (extent.min > extent.max)
        extent = {0.0, 0.0};
    double low = extent.min;
    double high = extent.max;
    double range = high - low;
    if (m_minRange > range) {
        const double middle = (high + low) * 0.5;
        low = middle - m_minRange * 0.5;
        high = middle + m_minRange * 0.5;
        range = high - low;
    }

    // Signed and not clamped: below twice the margin the bounds come out reversed.
    const double usable = m_height - 2.0 * m_margin;
    double newMin = m_valueMin;
    double newMax = m_valueMax;
    const bool fits =
        low >= m_valueMin && high <= m_valueMax && truncated(m_yScale * range) >= usable * 0.5;
    if (!fits && usable != 0.0) {
        const double middle = (high + low) * 0.5;
        const double half = 0.5 * m_height * (1.2 * range / usable);
        // Extents near the largest double have no finite bounds around them.
        if (std::isfinite(middle - half) && std::isfinite(middle + half)) {
            newMin = middle - half;
            newMax = middle + half;
        }
    }

    const double center = (newMin + newMax) * 0.5;
    const double scale = m_height / (newMax - newMin);
    const bool isSame = newMin == m_valueMin && newMax == m_valueMax;
    m_isSettled = isSame && center == m_yCenter && scale == m_yScale;
    m_yCenter = center;
    m_yScale = scale;
    if (isSame)
        return true;
    m_valueMin = newMin;
    m_valueMax = newMax;
    const QPointer<stripChartImpl_t> self(this);
    Q_EMIT valueBoundsChanged(newMin, newMax);
    return !self.isNull();
}

} // namespace zorbin_qt_gui
