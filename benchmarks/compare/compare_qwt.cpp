// Qwt as its documentation advises for streaming: the points stay in the application's own series
// with a bounding rectangle at hand, points that fall on the same pixel are left out and the line
// is clipped, no automatic replot, no backing store of the canvas beside the window's own. Its
// direct painter draws additions to a picture that stands still, so scrolling needs replot().
// Autoscale would follow the bounding rectangle; here the value axis stands still.
#include "contender.h"

#include <QVector>
#include <algorithm>
#include <qwt_color_map.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_histogram.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_raster_data.h>
#include <qwt_series_data.h>

namespace {
// The points of the last seconds in one array; room at its front is reclaimed now and then.
class streamSeries_t : public QwtSeriesData<QPointF>
{
public:
    explicit streamSeries_t(double valueRange) : m_valueRange(valueRange) {}

    void append(const sample_t& sample) { m_points.emplace_back(sample.time, sample.value); }

    void removeBefore(double time)
    {
        while (m_first < m_points.size() && m_points[m_first].x() < time)
            ++m_first;
        if (m_first > m_points.size() / 2) {
            m_points.erase(m_points.begin(),
                           m_points.begin() + static_cast<std::ptrdiff_t>(m_first));
            m_first = 0;
        }
    }

    std::size_t size() const override { return m_points.size() - m_first; }
    QPointF sample(std::size_t i) const override { return m_points[m_first + i]; }

    QRectF boundingRect() const override
    {
        if (size() == 0)
            return d_boundingRect;
        return {QPointF(m_points[m_first].x(), -m_valueRange),
                QPointF(m_points.back().x(), m_valueRange)};
    }

private:
    const double m_valueRange;
    std::vector<QPointF> m_points;
    std::size_t m_first = 0; // older ones are removed
};

// A plot with nothing but a canvas without a backing store of its own.
class barePlot_t : public QwtPlot
{
public:
    barePlot_t() : m_canvas(new QwtPlotCanvas(this))
    {
        m_canvas->setFrameStyle(QFrame::NoFrame);
        m_canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
        setCanvas(m_canvas);
        setCanvasBackground(Qt::white);
        setAutoReplot(false);
        for (int axis = 0; axis < axisCnt; ++axis)
            enableAxis(axis, false);
        plotLayout()->setAlignCanvasToScales(true);
    }

    QWidget* plotArea() { return m_canvas; }

private:
    QwtPlotCanvas* const m_canvas; // child of the plot
};

class qwtContender_t : public contender_t
{
public:
    explicit qwtContender_t(const chartShape_t& shape) : m_window(shape.window), m_kept(shape.kept)
    {
        m_plot.setAxisScale(QwtPlot::yLeft, -shape.valueRange, shape.valueRange);
        for (int i = 0; i < shape.curves; ++i) {
            auto* const series = new streamSeries_t(shape.valueRange); // owned by the curve
            auto* const curve = new QwtPlotCurve;                      // owned by the plot
            curve->setPen(QPen(curveColor(i), 2));
            curve->setPaintAttribute(QwtPlotCurve::FilterPoints, true);
            curve->setPaintAttribute(QwtPlotCurve::ClipPolygons, true);
            curve->setSamples(series);
            curve->attach(&m_plot);
            m_series.push_back(series);
        }
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return m_plot.plotArea(); }

    void addPoint(int curve, const sample_t& sample) override
    {
        m_series[static_cast<std::size_t>(curve)]->append(sample);
    }

    void addPoints(int curve, const sample_t* first, int count) override
    {
        for (int i = 0; i < count; ++i)
            m_series[static_cast<std::size_t>(curve)]->append(first[i]);
    }

    void scrollTime(double time) override
    {
        m_plot.setAxisScale(QwtPlot::xBottom, time - m_window, time);
        for (streamSeries_t* series : m_series)
            series->removeBefore(time - m_kept);
    }

    void valueBounds(double min, double max) override
    {
        m_plot.setAxisScale(QwtPlot::yLeft, min, max);
    }

    void finishFrame() override { m_plot.replot(); }

private:
    barePlot_t m_plot;
    const double m_window;
    const double m_kept;
    std::vector<streamSeries_t*> m_series;
};

// The lines as a ring, which the spectrogram asks for the value of each pixel.
class ringData_t : public QwtRasterData
{
public:
    ringData_t() : m_values(static_cast<std::size_t>(plotWidth * plotHeight))
    {
        setInterval(Qt::XAxis, QwtInterval(0.0, plotWidth));
        setInterval(Qt::YAxis, QwtInterval(0.0, plotHeight));
        setInterval(Qt::ZAxis, QwtInterval(0.0, 1.0));
    }

    void add(const float* values)
    {
        std::copy_n(values, plotWidth, &m_values[static_cast<std::size_t>(m_next * plotWidth)]);
        m_next = (m_next + 1) % plotHeight;
    }

    double value(double x, double y) const override
    {
        const int line = std::min(static_cast<int>(y), plotHeight - 1); // the newest is the highest
        const int row = (m_next + line) % plotHeight;
        const int column = std::min(static_cast<int>(x), plotWidth - 1);
        return static_cast<double>(m_values[static_cast<std::size_t>(row * plotWidth + column)]);
    }

private:
    std::vector<float> m_values;
    int m_next = 0; // the row of the next line
};

class qwtWaterfall_t : public waterfallContender_t
{
public:
    qwtWaterfall_t() : m_data(new ringData_t)
    {
        auto* const spectrogram = new QwtPlotSpectrogram; // owned by the plot
        spectrogram->setRenderThreadCount(1);
        spectrogram->setCachePolicy(QwtPlotRasterItem::NoCache);
        spectrogram->setColorMap(new QwtLinearColorMap(Qt::black, Qt::white));
        spectrogram->setData(m_data);
        spectrogram->attach(&m_plot);
        m_plot.setAxisScale(QwtPlot::xBottom, 0.0, plotWidth);
        m_plot.setAxisScale(QwtPlot::yLeft, 0.0, plotHeight);
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return m_plot.plotArea(); }
    void addLine(const float* values) override { m_data->add(values); }
    void finishFrame() override { m_plot.replot(); }

private:
    barePlot_t m_plot;
    ringData_t* const m_data; // owned by the spectrogram
};

class qwtHistogram_t : public histogramContender_t
{
public:
    qwtHistogram_t() : m_histogram(new QwtPlotHistogram)
    {
        m_histogram->setStyle(QwtPlotHistogram::Columns);
        m_histogram->setPen(QPen(Qt::NoPen));
        m_histogram->setBrush(Qt::black);
        m_histogram->attach(&m_plot);
        m_plot.setAxisScale(QwtPlot::xBottom, 0.0, 1.0);
    }

    QWidget* window() override { return &m_plot; }
    QWidget* plotArea() override { return m_plot.plotArea(); }

    void replace(const std::vector<float>& samples) override
    {
        const std::vector<unsigned> counts = countedByHand(samples);
        QVector<QwtIntervalSample> bars;
        bars.reserve(histogramBins);
        const double width = 1.0 / histogramBins;
        for (int bin = 0; bin < histogramBins; ++bin)
            bars.append({static_cast<double>(counts[static_cast<std::size_t>(bin)]), bin * width,
                         (bin + 1) * width});
        m_histogram->setSamples(bars);
        m_plot.setAxisScale(QwtPlot::yLeft, 0.0, *std::max_element(counts.begin(), counts.end()));
    }

    void finishFrame() override { m_plot.replot(); }

private:
    barePlot_t m_plot;
    QwtPlotHistogram* const m_histogram; // owned by the plot
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<qwtContender_t>(shape);
}

std::unique_ptr<waterfallContender_t> makeWaterfall()
{
    return std::make_unique<qwtWaterfall_t>();
}

std::unique_ptr<histogramContender_t> makeHistogram()
{
    return std::make_unique<qwtHistogram_t>();
}
