// The plain widget: what the same picture costs when every line is drawn by itself.
#include "contender.h"
#include "plainStripChart.h"

#include <QVBoxLayout>

namespace {
class plainContender_t : public contender_t
{
public:
    explicit plainContender_t(const chartShape_t& shape) : m_chart(new plainStripChart_t)
    {
        auto* const layout = new QVBoxLayout(&m_window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_chart);
        QPalette palette = m_chart->palette();
        palette.setColor(QPalette::Window, Qt::white);
        m_chart->setPalette(palette);
        for (int i = 0; i < shape.curves; ++i)
            m_chart->addCurve(curveColor(i), shape.kept);
        m_chart->timeBounds(-shape.window, 0.0);
        if (!shape.autoscale)
            m_chart->valueBounds(-shape.valueRange, shape.valueRange);
    }

    QWidget* window() override { return &m_window; }
    QWidget* plotArea() override { return m_chart; }

    void addPoint(int curve, const sample_t& sample) override
    {
        m_chart->addPoint(curve, {sample.time, sample.value, curveColor(curve)});
    }

    void addPoints(int curve, const sample_t* first, int count) override
    {
        std::vector<plainCurve_t::point_t> points;
        points.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            points.push_back({first[i].time, first[i].value, curveColor(curve)});
        m_chart->addPoints(curve, points);
    }

    void scrollTime(double time) override { m_chart->scrollTime(time); }
    void valueBounds(double min, double max) override { m_chart->valueBounds(min, max); }
    void finishFrame() override {}

private:
    QWidget m_window;
    plainStripChart_t* const m_chart; // child of the window
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<plainContender_t>(shape);
}
