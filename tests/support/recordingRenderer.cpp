#include "recordingRenderer.h"

#include <utility>

using namespace zorbin_qt_gui;

namespace {
// Reaches the protected record of any renderer, as a back end may reach its own.
struct recordAccess_t : recordingRenderer_t
{
    static stripChartCurveData_t* of(stripChartCurveRenderer_t& renderer)
    {
        return renderer.*(&recordAccess_t::m_d);
    }
};
} // namespace

stripChartCurveData_t& record(stripChartCurve_t& curve)
{
    return *recordAccess_t::of(*curve.renderer());
}

QString hookCall(const char* hook, unsigned first, unsigned last, unsigned id)
{
    return QStringLiteral("%1(%2, %3, %4)").arg(QLatin1String(hook)).arg(first).arg(last).arg(id);
}

QString hookCall(const char* hook, unsigned first, unsigned last)
{
    return QStringLiteral("%1(%2, %3)").arg(QLatin1String(hook)).arg(first).arg(last);
}

QString hookCall(const char* hook, unsigned count, double fromTime, double toTime)
{
    return QStringLiteral("%1(%2, %3, %4)")
        .arg(QLatin1String(hook))
        .arg(count)
        .arg(fromTime, 0, 'g', 17)
        .arg(toTime, 0, 'g', 17);
}

QString hookState(std::size_t points, std::size_t segments, int incoming, int outgoing,
                  double duration)
{
    return QStringLiteral(" points=%1 segments=%2 incoming=%3 outgoing=%4 duration=%5")
        .arg(points)
        .arg(segments)
        .arg(incoming)
        .arg(outgoing)
        .arg(duration, 0, 'g', 17);
}

recordingRenderer_t::recordingRenderer_t(stripChartCurveData_t* data, unsigned segmentSize_)
    : stripChartCurveRenderer_t(data), m_segmentSize(segmentSize_)
{
}

recordingRenderer_t* recordingRenderer_t::attach(stripChartCurve_t& curve, unsigned segmentSize_)
{
    stripChartCurveData_t& data = record(curve);
    auto* const renderer = new recordingRenderer_t(&data, segmentSize_);
    delete std::exchange(data.renderer, renderer);
    return renderer;
}

void recordingRenderer_t::chart(QWidget* widget_)
{
    widget = widget_;
}

unsigned recordingRenderer_t::segmentSize() const
{
    return m_segmentSize;
}

void recordingRenderer_t::segmentCreated(unsigned first, unsigned last, unsigned id)
{
    log(hookCall("segmentCreated", first, last, id));
}

void recordingRenderer_t::segmentRemoved(unsigned first, unsigned last, unsigned id)
{
    log(hookCall("segmentRemoved", first, last, id));
}

void recordingRenderer_t::updateIncomingList(unsigned first, unsigned last)
{
    log(hookCall("updateIncomingList", first, last));
}

void recordingRenderer_t::updateOutgoingList(unsigned first, unsigned last)
{
    log(hookCall("updateOutgoingList", first, last));
}

void recordingRenderer_t::pointsAdded(unsigned count, double fromTime, double toTime)
{
    log(hookCall("pointsAdded", count, fromTime, toTime));
}

void recordingRenderer_t::pointsRemoved(unsigned count, double fromTime, double toTime)
{
    log(hookCall("pointsRemoved", count, fromTime, toTime));
}

QStringList recordingRenderer_t::takeCalls()
{
    return std::exchange(m_calls, QStringList());
}

QStringList recordingRenderer_t::takeBareCalls()
{
    QStringList calls = takeCalls();
    for (QString& call : calls)
        call.truncate(call.indexOf(QLatin1Char(')')) + 1);
    return calls;
}

void recordingRenderer_t::log(const QString& call)
{
    m_calls.append(call + hookState(m_d->points.size(), m_d->segments.size(), m_d->incomingCount,
                                    m_d->outgoingCount, m_d->duration));
}
