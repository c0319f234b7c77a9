// This library, used as in an application; nothing is tuned.
#include "../linesModel.h"
#include "contender.h"

#include <QVBoxLayout>
#include <algorithm>
#include <deque>
#include <functional>
#include <histogram.h>
#include <stripChart.h>
#include <stripChartCurve.h>
#include <waterfallRenderer.h>
#include <waterfallView.h>

using zorbin_qt_gui::baseWaterfallModel_t;
using zorbin_qt_gui::baseWaterfallRenderer_t;
using zorbin_qt_gui::baseWaterfallView_t;
using zorbin_qt_gui::histogram_t;
using zorbin_qt_gui::stripChart_t;
using zorbin_qt_gui::stripChartCurve_t;

namespace {
class zorbinContender_t : public contender_t
{
public:
    explicit zorbinContender_t(const chartShape_t& shape)
    {
        m_chart.setBackgroundColor(Qt::white);
        // A chart draws its curves in the order of their addresses: with the curves numbered in
        // that order the picture is the same in every run.
        for (int i = 0; i < shape.curves; ++i)
            m_curves.push_back(new stripChartCurve_t);
        std::sort(m_curves.begin(), m_curves.end(), std::less<stripChartCurve_t*>());
        for (int i = 0; i < shape.curves; ++i) {
            stripChartCurve_t* const curve = m_curves[static_cast<std::size_t>(i)];
            curve->color(curveColor(i));
            curve->dataDuration(shape.kept);
            m_chart.addCurve(curve);
        }
        m_chart.timeBounds(-shape.window, 0.0);
        if (!shape.autoscale)
            m_chart.valueBounds(-shape.valueRange, shape.valueRange);
    }

    QWidget* window() override { return &m_chart; }
    QWidget* plotArea() override { return m_chart.layout()->itemAt(0)->widget(); }

    void addPoint(int curve, const sample_t& sample) override
    {
        m_curves[static_cast<std::size_t>(curve)]->addPoint(sample.time, sample.value,
                                                            curveColor(curve));
    }

    void addPoints(int curve, const sample_t* first, int count) override
    {
        const QColor color = curveColor(curve);
        std::deque<stripChartCurve_t::point_t> points;
        for (int i = 0; i < count; ++i)
            points.emplace_back(first[i].time, first[i].value, color);
        m_curves[static_cast<std::size_t>(curve)]->addPoints(std::move(points));
    }

    void scrollTime(double time) override { m_chart.scrollTime(time); }
    void valueBounds(double min, double max) override { m_chart.valueBounds(min, max); }
    void finishFrame() override {}

private:
    stripChart_t m_chart;
    std::vector<stripChartCurve_t*> m_curves; // owned by the chart
};

class linesRenderer_t : public baseWaterfallRenderer_t
{
public:
    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                unsigned index) override
    {
        const std::vector<float>& line =
            static_cast<linesModel_t*>(model)->line(static_cast<int>(index));
        for (unsigned i = 0; i < context->numPixels; ++i)
            pixels[i] = waterfallColor(line[i]);
    }
};

class zorbinWaterfall_t : public waterfallContender_t
{
public:
    zorbinWaterfall_t()
    {
        m_view._model(&m_model);
        m_view._renderer(&m_renderer);
    }

    QWidget* window() override { return &m_view; }
    QWidget* plotArea() override { return &m_view; }
    void addLine(const float* values) override
    {
        m_model.add(std::vector<float>(values, values + plotWidth));
    }
    void finishFrame() override {}

private:
    linesModel_t m_model{plotHeight}; // what is on show
    linesRenderer_t m_renderer;
    baseWaterfallView_t m_view;
};

class zorbinHistogram_t : public histogramContender_t
{
public:
    zorbinHistogram_t() { m_histogram.numBins(histogramBins); }

    QWidget* window() override { return &m_histogram; }
    QWidget* plotArea() override { return &m_histogram; }

    void replace(const std::vector<float>& samples) override
    {
        m_histogram.clear();
        m_histogram.addData(static_cast<unsigned>(samples.size()), samples.data());
    }

    void finishFrame() override {}

private:
    histogram_t m_histogram;
};
} // namespace

std::unique_ptr<contender_t> makeContender(const chartShape_t& shape)
{
    return std::make_unique<zorbinContender_t>(shape);
}

std::unique_ptr<waterfallContender_t> makeWaterfall()
{
    return std::make_unique<zorbinWaterfall_t>();
}

std::unique_ptr<histogramContender_t> makeHistogram()
{
    return std::make_unique<zorbinHistogram_t>();
}
