#pragma once
#include "stripChartCurveRenderer.h"

#include <QStringList>

/// A back end that draws nothing and logs every call of its hooks, with the arguments and the
/// state of the curve's record at that moment, e.g.
/// "segmentCreated(0, 4, 0) points=5 segments=1 incoming=5 outgoing=0 duration=7200".
class recordingRenderer_t : public zorbin_qt_gui::stripChartCurveRenderer_t
{
    Q_OBJECT

public:
    explicit recordingRenderer_t(zorbin_qt_gui::stripChartCurveData_t* data, unsigned segmentSize_);

    /// Replaces the renderer of \p curve, which owns the new one. Call it before the first point.
    static recordingRenderer_t* attach(zorbin_qt_gui::stripChartCurve_t& curve,
                                       unsigned segmentSize_);

    void chart(QWidget* widget) override;
    unsigned segmentSize() const override;
    void segmentCreated(unsigned first, unsigned last, unsigned id) override;
    void segmentRemoved(unsigned first, unsigned last, unsigned id) override;
    void updateIncomingList(unsigned first, unsigned last) override;
    void updateOutgoingList(unsigned first, unsigned last) override;
    void pointsAdded(unsigned count, double fromTime, double toTime) override;
    void pointsRemoved(unsigned count, double fromTime, double toTime) override;

    /// The calls logged since the last time this was asked.
    QStringList takeCalls();
    /// The same without the state.
    QStringList takeBareCalls();

    QWidget* widget = nullptr; ///< the last one given to chart()

private:
    void log(const QString& call);

    const unsigned m_segmentSize;
    QStringList m_calls;
};

/// The record that \p curve shares with its renderer.
zorbin_qt_gui::stripChartCurveData_t& record(zorbin_qt_gui::stripChartCurve_t& curve);

/// One line of a log of hook calls.
QString hookCall(const char* hook, unsigned first, unsigned last, unsigned id);
QString hookCall(const char* hook, unsigned first, unsigned last);
QString hookCall(const char* hook, unsigned count, double fromTime, double toTime);
/// What a log line says of the record's state.
QString hookState(std::size_t points, std::size_t segments, int incoming, int outgoing,
                  double duration);
