// The plain widgets: what the same picture costs when every line, of a curve, a waterfall or a
// histogram, is drawn by itself.
#include "contender.h"
#include "plainStripChart.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

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
        const QColor color = curveColor(curve);
        std::vector<plainCurve_t::point_t> points;
        points.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            points.push_back({first[i].time, first[i].value, color});
        m_chart->addPoints(curve, points);
    }

    void scrollTime(double time) override { m_chart->scrollTime(time); }
    void valueBounds(double min, double max) override { m_chart->valueBounds(min, max); }
    void finishFrame() override {}

private:
    QWidget m_window;
    plainStripChart_t* const m_chart; // child of the window
};

// A pixmap as a ring of lines, the part above the seam and the part below it copied to the screen.
class plainWaterfall_t : public waterfallContender_t, public QWidget
{
public:
    plainWaterfall_t() : m_ring(plotWidth, plotHeight)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_ring.fill(palette().color(QPalette::Window));
    }

    QWidget* window() override { return this; }
    QWidget* plotArea() override { return this; }

    void addLine(const float* values) override
    {
        m_top = (m_top + plotHeight - 1) % plotHeight;
        QImage line(plotWidth, 1, QImage::Format_RGB32);
        for (int i = 0; i < plotWidth; ++i)
            line.setPixel(i, 0, waterfallColor(values[i]));
        QPainter(&m_ring).drawImage(QRect(0, m_top, plotWidth, 1), line);
        scroll(0, 1);
    }

    void finishFrame() override {}

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        const QRect rect = event->rect();
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            painter.drawPixmap(0, y, m_ring, 0, (y + m_top) % plotHeight, plotWidth, 1);
    }

private:
    QPixmap m_ring;
    int m_top = 0; // the row of the ring that is at the top
};

// Counts one by one, draws a line for each column.
class plainHistogram_t : public histogramContender_t, public QWidget
{
public:
    QWidget* window() override { return this; }
    QWidget* plotArea() override { return this; }

    void replace(const std::vector<float>& samples) override
    {
        m_samples = samples;
        update();
    }

    void finishFrame() override {}

protected:
    void paintEvent(QPaintEvent*) override
    {
        const double perValue = 1.0 / static_cast<double>(1.0F / histogramBins);
        std::vector<unsigned> counts(histogramBins);
        for (const float value : m_samples) {
            if (value < 0.0F || value > 1.0F)
                continue;
            const auto bin = static_cast<std::size_t>(static_cast<double>(value) * perValue);
            ++counts[std::min<std::size_t>(bin, histogramBins - 1)];
        }
        const unsigned greatest = std::max(1U, *std::max_element(counts.begin(), counts.end()));
        const double pixelsPerCount = static_cast<double>(height() - 1) / greatest;
        const double valuePerPixel = 1.0 / width();
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Text));
        for (int x = 0; x < width(); ++x) {
            const auto first = static_cast<std::size_t>(x * valuePerPixel * perValue);
            const auto end =
                static_cast<std::size_t>(std::ceil((x + 1) * valuePerPixel * perValue));
            unsigned count = 0;
            for (std::size_t bin = first; bin < std::min<std::size_t>(end, histogramBins); ++bin)
                count = std::max(count, counts[bin]);
            if (count > 0)
                painter.drawLine(x, height() - 1, x,
                                 height() - 1 - static_cast<int>(count * pixelsPerCount));
        }
    }

private:
    std::vector<float> m_samples;
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<plainContender_t>(shape);
}

std::unique_ptr<waterfallContender_t> makeWaterfall()
{
    return std::make_unique<plainWaterfall_t>();
}

std::unique_ptr<histogramContender_t> makeHistogram()
{
    return std::make_unique<plainHistogram_t>();
}
