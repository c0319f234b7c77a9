// Qwt as its documentation advises for streaming: the points stay in the application's own series
// with a bounding rectangle at hand, points that fall on the same pixel are left out and the line
// is clipped, no automatic replot, no backing store of the canvas beside the window's own. Its
// direct painter draws additions to a picture that stands still, so scrolling needs replot().
// Autoscale would follow the bounding rectangle; here the value axis stands still.
#include "contender.h"

#include <QVector>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_layout.h>
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

class qwtContender_t : public contender_t
{
public:
    explicit qwtContender_t(const chartShape_t& shape)
        : m_window(shape.window), m_kept(shape.kept), m_canvas(new QwtPlotCanvas(&m_plot))
    {
        m_canvas->setFrameStyle(QFrame::NoFrame);
        m_canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
        m_plot.setCanvas(m_canvas);
        m_plot.setCanvasBackground(Qt::white);
        m_plot.setAutoReplot(false);
        for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
            m_plot.enableAxis(axis, false);
        m_plot.plotLayout()->setAlignCanvasToScales(true);
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
    QWidget* plotArea() override { return m_canvas; }

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
    QwtPlot m_plot;
    const double m_window;
    const double m_kept;
    QwtPlotCanvas* const m_canvas; // child of the plot
    std::vector<streamSeries_t*> m_series;
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<qwtContender_t>(shape);
}
