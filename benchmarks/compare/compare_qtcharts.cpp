// Qt Charts as its documentation advises for streaming: all points of a series are handed over at
// once by replace(), without animations, legend or antialiasing. Its OpenGL series need a graphics
// card and are off. It has no autoscale; the value axis stands still.
#include "contender.h"

#include <QGraphicsLayout>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <algorithm>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
using namespace QtCharts;
using points_t = QVector<QPointF>;
#else
using points_t = QList<QPointF>;
#endif

namespace {
class qtChartsContender_t : public contender_t
{
public:
    explicit qtChartsContender_t(const chartShape_t& shape)
        : m_window(shape.window), m_kept(shape.kept), m_times(new QValueAxis),
          m_values(new QValueAxis)
    {
        auto* const chart = new QChart; // owned by the view
        chart->legend()->hide();
        chart->setAnimationOptions(QChart::NoAnimation);
        chart->setBackgroundRoundness(0.0);
        chart->setMargins(QMargins());
        chart->layout()->setContentsMargins(0.0, 0.0, 0.0, 0.0);
        chart->setPlotArea(QRectF(0.0, 0.0, plotWidth, plotHeight));
        chart->addAxis(m_times, Qt::AlignBottom);
        chart->addAxis(m_values, Qt::AlignLeft);
        m_times->setVisible(false);
        m_values->setVisible(false);
        m_values->setRange(-shape.valueRange, shape.valueRange);
        for (int i = 0; i < shape.curves; ++i) {
            auto* const series = new QLineSeries; // owned by the chart
            series->setPen(QPen(curveColor(i), 2));
            chart->addSeries(series);
            series->attachAxis(m_times);
            series->attachAxis(m_values);
            m_series.push_back(series);
        }
        m_points.resize(m_series.size());
        m_view.setFrameStyle(QFrame::NoFrame);
        m_view.setRenderHint(QPainter::Antialiasing, false);
        m_view.setChart(chart);
    }

    QWidget* window() override { return &m_view; }
    QWidget* plotArea() override { return m_view.viewport(); }

    void addPoint(int curve, const sample_t& sample) override
    {
        m_points[static_cast<std::size_t>(curve)].append({sample.time, sample.value});
    }

    void addPoints(int curve, const sample_t* first, int count) override
    {
        for (int i = 0; i < count; ++i)
            addPoint(curve, first[i]);
    }

    void scrollTime(double time) override
    {
        for (points_t& points : m_points) {
            const auto isOlder = [this, time](const QPointF& p) { return p.x() < time - m_kept; };
            points.erase(points.begin(), std::find_if_not(points.begin(), points.end(), isOlder));
        }
        m_times->setRange(time - m_window, time);
        m_changed = true;
    }

    void valueBounds(double min, double max) override { m_values->setRange(min, max); }

    void finishFrame() override
    {
        if (!m_changed)
            return;
        for (std::size_t i = 0; i < m_series.size(); ++i)
            m_series[i]->replace(m_points[i]);
        m_changed = false;
    }

private:
    QChartView m_view;
    const double m_window;
    const double m_kept;
    QValueAxis* const m_times;  // owned by the chart
    QValueAxis* const m_values; // owned by the chart
    std::vector<QLineSeries*> m_series;
    std::vector<points_t> m_points; // of each series
    bool m_changed = false;         // the points differ from those that the series have
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<qtChartsContender_t>(shape);
}

// It has nothing to show a waterfall with, and its bars are items of a scene, far from made for a
// thousand of them.
std::unique_ptr<waterfallContender_t> makeWaterfall()
{
    return nullptr;
}

std::unique_ptr<histogramContender_t> makeHistogram()
{
    return nullptr;
}
