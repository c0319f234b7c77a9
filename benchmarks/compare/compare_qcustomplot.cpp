// QCustomPlot as its documentation advises for streaming: points are appended in order and the old
// ones removed, adaptive sampling on, no antialiasing, the fast way of drawing lines of a width
// above 1, one replot a frame. It has no autoscale of its own; its value axis stands still.
#include "contender.h"

#include <algorithm>
#include <cstring>
#include <qcustomplot.h>

namespace {
// A plot with nothing beside the plot area.
class barePlot_t : public QCustomPlot
{
public:
    barePlot_t()
    {
        setNotAntialiasedElements(QCP::aeAll);
        plotLayout()->setMargins(QMargins());
        axisRect()->setAutoMargins(QCP::msNone);
        axisRect()->setMargins(QMargins());
        axisRect()->setMinimumMargins(QMargins());
        for (QCPAxis* axis : axisRect()->axes()) {
            axis->setVisible(false);
            axis->grid()->setVisible(false);
        }
    }
};

class customPlotContender_t : public contender_t
{
public:
    explicit customPlotContender_t(const chartShape_t& shape)
        : m_window(shape.window), m_kept(shape.kept)
    {
        m_plot.setPlottingHints(QCP::phFastPolylines);
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
    barePlot_t m_plot;
    const double m_window;
    const double m_kept;
};

// The cells of a colour map, moved on as a whole instead of one by one.
class scrollingData_t : public QCPColorMapData
{
public:
    scrollingData_t()
        : QCPColorMapData(plotWidth, plotHeight, QCPRange(0.5, plotWidth - 0.5),
                          QCPRange(0.5, plotHeight - 0.5))
    {
    }

    void add(const float* values)
    {
        std::memmove(mData, mData + plotWidth, sizeof(double) * plotWidth * (plotHeight - 1));
        std::copy_n(values, plotWidth, mData + plotWidth * (plotHeight - 1));
        mDataModified = true;
    }
};

class customPlotWaterfall_t : public waterfallContender_t
{
public:
    customPlotWaterfall_t() : m_data(new scrollingData_t)
    {
        auto* const map = new QCPColorMap(m_plot.xAxis, m_plot.yAxis); // owned by the plot
        QCPColorGradient gradient(QCPColorGradient::gpGrayscale);
        gradient.setLevelCount(256);
        map->setGradient(gradient);
        map->setInterpolate(false);
        map->setDataRange(QCPRange(0.0, 1.0));
        map->setData(m_data);
        m_plot.xAxis->setRange(0.0, plotWidth);
        m_plot.yAxis->setRange(0.0, plotHeight);
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return &m_plot; }
    void addLine(const float* values) override { m_data->add(values); }
    void finishFrame() override { m_plot.replot(QCustomPlot::rpQueuedRefresh); }

private:
    barePlot_t m_plot;
    scrollingData_t* const m_data; // owned by the map
};

class customPlotHistogram_t : public histogramContender_t
{
public:
    customPlotHistogram_t() : m_bars(new QCPBars(m_plot.xAxis, m_plot.yAxis))
    {
        m_bars->setPen(Qt::NoPen);
        m_bars->setBrush(Qt::black);
        m_bars->setWidth(1.0 / histogramBins);
        m_plot.xAxis->setRange(0.0, 1.0);
        for (int bin = 0; bin < histogramBins; ++bin)
            m_middles.append((bin + 0.5) / histogramBins);
        m_counts.resize(histogramBins);
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return &m_plot; }

    void replace(const std::vector<float>& samples) override
    {
        const std::vector<unsigned> counts = countedByHand(samples);
        std::copy(counts.begin(), counts.end(), m_counts.begin());
        m_bars->setData(m_middles, m_counts, true);
        m_plot.yAxis->setRange(0.0, *std::max_element(counts.begin(), counts.end()));
    }

    void finishFrame() override { m_plot.replot(QCustomPlot::rpQueuedRefresh); }

private:
    barePlot_t m_plot;
    QCPBars* const m_bars; // owned by the plot
    QVector<double> m_middles;
    QVector<double> m_counts;
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<customPlotContender_t>(shape);
}

std::unique_ptr<waterfallContender_t> makeWaterfall()
{
    return std::make_unique<customPlotWaterfall_t>();
}

std::unique_ptr<histogramContender_t> makeHistogram()
{
    return std::make_unique<customPlotHistogram_t>();
}
