// A program as an application's developer writes it: it has the installed headers and libraries,
// nothing else of this project. Its exit status says whether they really work.
#include <zorbin-qt-gui/stripChart.h>
#include <zorbin-qt-gui/stripChartCurve.h>
#include <zorbin-qt/resourceDir.h>
#include <zorbin/timestamp.h>
#include <zorbin/usleep.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>

using zorbin_qt_gui::stripChart_t;
using zorbin_qt_gui::stripChartCurve_t;

static bool expect(bool condition, const char* what)
{
    if (!condition)
        std::fprintf(stderr, "consumer: %s\n", what);
    return condition;
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    stripChart_t chart(nullptr);
    chart.resize(200, 100);
    chart.setBackgroundColor(Qt::white);
    auto* curve = new stripChartCurve_t;
    if (!expect(chart.addCurve(curve), "the chart takes no curve"))
        return 1;

    double top = 0.0;
    QObject::connect(&chart, &stripChart_t::valueBoundsChanged, &chart,
                     [&top](double, double top_) { top = top_; });
    const double now = zorbin::gettimestamp();
    QImage picture(chart.size(), QImage::Format_RGB32);
    chart.render(&picture); // lays the chart out
    chart.timeBounds(now - 20.0, now);
    for (int second = 0; second <= 20; ++second)
        curve->addPoint(now - 20.0 + second, second % 2 == 0 ? 10.0 : 20.0, Qt::red);
    chart.render(&picture);

    bool red = false;
    for (int y = 0; y < picture.height(); ++y)
        red = red || picture.pixelColor(100, y) == QColor(Qt::red);
    zorbinport::usleep(1);
    const bool right = expect(zorbin::gettimestamp() - now < 60.0, "the clock ran away") &&
                       expect(!zorbin_qt::resourceDir("share").empty(), "no resources") &&
                       expect(top > 20.0 && top < 25.0, "the chart did not autoscale") &&
                       expect(red, "the curve was not drawn");
    return right ? 0 : 1;
}
