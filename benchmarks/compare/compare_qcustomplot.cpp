// QCustomPlot as its documentation advises for streaming: points are appended in order and the old
// ones removed, adaptive sampling on, no antialiasing, the fast way of drawing lines of a width
// above 1, one replot a frame. It has no autoscale of its own; its value axis stands still.
#include "contender.h"

#include <qcustomplot.h>

namespace {
class customPlotContender_t : public contender_t
{
public:
    explicit customPlotContender_t(const chartShape_t& shape)
        : m_window(shape.window), m_kept(shape.kept)
    {
        m_plot.setNotAntialiasedElements(QCP::aeAll);
        m_plot.setPlottingHints(QCP::phFastPolylines);
        m_plot.plotLayout()->setMargins(QMargins());
        m_plot.axisRect()->setAutoMargins(QCP::msNone);
        m_plot.axisRect()->setMargins(QMargins());
        m_plot.axisRect()->setMinimumMargins(QMargins());
        for (QCPAxis* axis : m_plot.axisRect()->axes()) {
            axis->setVisible(false);
            axis->grid()->setVisible(false);
        }
        for (int i = 0; i < shape.curves; ++i) {
            QCPGraph* const graph = m_plot.addGraph();
            graph->setPen(QPen(curveColor(i), 2));
            graph->setAdaptiveSampling(true);
        }
        m_plot.yAxis->setRange(-shape.valueRange, shape.valueRange);
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return &m_plot; }

    void addPoint(int curve, const sample_t& sample) override
    {
        m_plot.graph(curve)->addData(sample.time, sample.value);
    }

    void addPoints(int curve, const sample_t* first, int count) override
    {
        QVector<double> times;
        QVector<double> values;
        times.reserve(count);
        values.reserve(count);
        for (int i = 0; i < count; ++i) {
            times.append(first[i].time);
            values.append(first[i].value);
        }
        m_plot.graph(curve)->addData(times, values, true);
    }

    void scrollTime(double time) override
    {
        m_plot.xAxis->setRange(time - m_window, time);
        for (int i = 0; i < m_plot.graphCount(); ++i)
            m_plot.graph(i)->data()->removeBefore(time - m_kept);
    }

    void valueBounds(double min, double max) override { m_plot.yAxis->setRange(min, max); }
    void finishFrame() override { m_plot.replot(QCustomPlot::rpQueuedRefresh); }

private:
    QCustomPlot m_plot;
    const double m_window;
    const double m_kept;
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<customPlotContender_t>(shape);
}
