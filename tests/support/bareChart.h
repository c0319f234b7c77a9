#pragma once
#include "plainChart.h"
#include "stripChartImpl.h"

#include <QStringList>
#include <QWidget>
#include <utility>

/// What tests of strip charts share.
namespace strip_chart_tests {

/// A back end without drawing, to see the base alone.
class bareChartImpl_t : public zorbin_qt_gui::stripChartImpl_t
{
public:
    QWidget* widget() override { return &m_widget; }

private:
    QWidget m_widget;
};

/// Everything that a chart or an implementation announces, in order, and the state at that moment.
template <typename chart_t>
class signalLog_t
{
public:
    explicit signalLog_t(chart_t* chart)
    {
        QObject::connect(
            chart, &chart_t::timeBoundsChanged, chart, [this, chart](double min, double max) {
                m_texts.append(boundsSignal("timeBoundsChanged", min, max));
                m_consistent &= chart->minTimeBound() == min && chart->maxTimeBound() == max;
            });
        QObject::connect(
            chart, &chart_t::valueBoundsChanged, chart, [this, chart](double min, double max) {
                m_texts.append(boundsSignal("valueBoundsChanged", min, max));
                m_consistent &= chart->minValueBound() == min && chart->maxValueBound() == max;
            });
        QObject::connect(chart, &chart_t::valueAutoscaleChanged, chart, [this](bool enabled) {
            m_texts.append(QStringLiteral("valueAutoscaleChanged(%1)").arg(enabled));
        });
    }

    QStringList take() { return std::exchange(m_texts, QStringList()); }
    /// Whether the bounds were those of the signal whenever one came.
    bool isConsistent() const { return m_consistent; }

private:
    QStringList m_texts;
    bool m_consistent = true;
};
} // namespace strip_chart_tests
