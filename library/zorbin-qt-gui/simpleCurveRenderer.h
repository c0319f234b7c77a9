#pragma once
#include "stripChartCurveRenderer.h"
#include "zorbinQtGuiExport.h"

#include <QPointer>
#include <memory>

class QPainter;

namespace zorbin_qt_gui {
class simpleStripChartWidget_t;
struct simpleCurveRendererPrivate_t;

/// Draws one curve with QPainter: a line of width 2 from each point to the next, in the colour of
/// the later one, at a quarter of its opacity across a gap.
class ZORBIN_QT_GUI_EXPORT simpleCurveRenderer_t : public stripChartCurveRenderer_t
{
    Q_OBJECT

public:
    /// One paint pass.
    struct context_t
    {
        QPainter* painter;  ///< open on the widget
        double drawMinTime; ///< time at the left edge of what is painted
        double drawMaxTime; ///< time at its right edge
        double minTime;     ///< time at the chart's left edge
        double maxValue;    ///< value at the chart's top edge
        double xScale;      ///< pixels per second
        double yScale;      ///< pixels per value unit
        unsigned width;     ///< of the chart, in pixels
        unsigned height;    ///< of the chart, in pixels
    };

    /// Makes a renderer without a chart. \p data is the record of its curve and must outlive it.
    explicit simpleCurveRenderer_t(stripChartCurveData_t* data);
    ~simpleCurveRenderer_t() override;

    /// Draws the lines that touch the times of \p context.
    void draw(const context_t& context);

    /// Attaches to a simpleStripChartWidget_t and takes the curve out of the chart it was in
    /// before; any other widget is ignored.
    void chart(QWidget* widget) override;
    /// Always 1000.
    unsigned segmentSize() const override;
    void segmentCreated(unsigned first, unsigned last, unsigned id) override; ///< does nothing
    void segmentRemoved(unsigned first, unsigned last, unsigned id) override; ///< does nothing
    void updateIncomingList(unsigned first, unsigned last) override;          ///< does nothing
    void updateOutgoingList(unsigned first, unsigned last) override;          ///< does nothing
    /// Repaints the columns touched; nothing while the curve is in no chart.
    void pointsAdded(unsigned count, double fromTime, double toTime) override;
    /// Repaints the columns touched; nothing while the curve is in no chart.
    void pointsRemoved(unsigned count, double fromTime, double toTime) override;

private:
    QPointer<simpleStripChartWidget_t> m_chart;
    const std::unique_ptr<simpleCurveRendererPrivate_t> m_p;
};
} // namespace zorbin_qt_gui
