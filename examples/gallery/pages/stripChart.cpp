// Twenty minutes of a survey line. Look at how the rulers follow the chart's bounds and point at
// the pointer, at the lines across the minute without bottom track, which are faded, and at the
// depth axis, which follows what is in view: choose a shorter time window.

#include "pages.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QTimer>
#include <cmath>
#include <zorbin-qt-gui/ruler.h>
#include <zorbin-qt-gui/stripChart.h>
#include <zorbin-qt-gui/stripChartCurve.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

constexpr double lineEnd = 1200.0; // s since the start of the line

// A chart of the end of the line. Its time scale follows its width only when the time bounds
// change, so it sets them anew when it is first shown and whenever its size has changed.
class lineChart_t : public stripChart_t
{
public:
    void showLast(double seconds)
    {
        m_seconds = seconds;
        timeBounds(lineEnd - seconds - 1.0, lineEnd); // the next ones are a change in any case
        timeBounds(lineEnd - seconds, lineEnd);
    }

protected:
    void resizeEvent(QResizeEvent*) override
    {
        QTimer::singleShot(0, this, [this] { showLast(m_seconds); }); // once all is laid out
    }

private:
    double m_seconds = lineEnd;
};

// Soundings below a vessel that crosses a channel, one a second, and a towed body above them.
void addLine(stripChart_t* chart)
{
    auto* const seabed = new stripChartCurve_t;
    auto* const towfish = new stripChartCurve_t;
    for (double time = 0.0; time <= lineEnd; time += 1.0) {
        const double channel = std::exp(-std::pow((time - 700.0) / 160.0, 2.0));
        const double depth =
            24.0 + 18.0 * channel + 0.8 * std::sin(time / 23.0) + 0.3 * std::sin(time / 2.9); // m
        if (time < 400.0 || time > 460.0) // bottom track was lost
            seabed->addPoint(time, -depth, QColor(0x8a, 0x5a, 0x2b));
        towfish->addPoint(time, -9.0 - 4.0 * channel - 0.4 * std::sin(time / 7.0),
                          QColor(0x1c, 0x4e, 0x9a));
    }
    chart->addCurve(seabed); // the chart owns them from now on
    chart->addCurve(towfish);
}

} // namespace

QWidget* makeStripChart()
{
    auto* const page = new QWidget;
    auto* const chart = new lineChart_t;
    chart->setBackgroundColor(Qt::white);
    addLine(chart);

    auto* const depths = new ruler_t;
    depths->axisLocation(ruler_t::LEFT);
    auto* const times = new ruler_t;
    times->axisLocation(ruler_t::BOTTOM);
    times->tickTable({{1.0, 10}, {2.0, 4}}, 10.0);
    QObject::connect(chart, &stripChart_t::valueBoundsChanged, depths, &ruler_t::range);
    QObject::connect(chart, &stripChart_t::timeBoundsChanged, times, &ruler_t::range);
    QObject::connect(chart, &stripChart_t::mousePos, page, [=](double time, double value) {
        if (std::isnan(time)) { // the pointer has left
            times->clearIndicator();
            depths->clearIndicator();
        } else {
            times->indicator(time);
            depths->indicator(value);
        }
    });

    auto* const window = new QComboBox;
    for (const int minutes : {20, 10, 5, 2})
        window->addItem(QStringLiteral("last %1 minutes").arg(minutes), 60.0 * minutes);
    QObject::connect(window, qOverload<int>(&QComboBox::currentIndexChanged), chart,
                     [=] { chart->showLast(window->currentData().toDouble()); });

    auto* const layout = new QGridLayout(page);
    layout->setSpacing(0);
    layout->setRowStretch(1, 1);
    layout->addWidget(new QLabel(QStringLiteral("Depth, m: towed body and seabed")), 0, 0, 1, 2);
    layout->addWidget(window, 0, 2, Qt::AlignRight);
    layout->addWidget(depths, 1, 0);
    layout->addWidget(chart, 1, 1, 1, 2);
    layout->addWidget(times, 2, 1, 1, 2);
    layout->addWidget(new QLabel(QStringLiteral("s since the start of the line")), 3, 1, 1, 2,
                      Qt::AlignHCenter);
    return page;
}

} // namespace gallery
