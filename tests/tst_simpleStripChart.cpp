#include "paintLog.h"
#include "pictures.h"
#include "plainChart.h"
#include "plainCurve.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"
#include "simpleStripChartWidget.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "testCase.h"

#include <QLayout>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QSignalSpy>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

using namespace zorbin_qt_gui;
using context_t = simpleCurveRenderer_t::context_t;
using points_t = plainCurve_t::points_t;

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

namespace {

QWidget* canvasOf(stripChart_t& chart)
{
    return chart.findChild<simpleStripChartWidget_t*>();
}

// A chart of 300 x 100 pixels, 20 pixels a second from 0 s to 15 s, 10 pixels a unit from -5 to 5,
// on white, with one curve.
struct plotted_t
{
    plotted_t() : curve(new stripChartCurve_t(nullptr))
    {
        chart.resize(300, 100);
        chart.setBackgroundColor(Qt::white);
        chart.addCurve(curve);
        chart.grab(); // gives the canvas its size
        chart.timeBounds(0.0, 15.0);
        chart.valueBounds(-5.0, 5.0);
    }

    /// Shows the chart and forgets what that painted.
    bool show()
    {
        chart.show();
        if (!QTest::qWaitForWindowExposed(&chart, patienceMs()))
            return false;
        paints = std::make_unique<paintLog_t>(canvasOf(chart));
        shown(chart);
        paints->take();
        return true;
    }

    QImage blankCanvas() const
    {
        QImage picture(chart.size(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        return picture;
    }

    std::unique_ptr<paintLog_t> paints;
    stripChart_t chart{nullptr};
    stripChartCurve_t* const curve; // the chart's
};

// Draws one line as wide as a curve's.
void drawLine(QPainter& painter, const QColor& color, int x1, int y1, int x2, int y2)
{
    painter.setPen(QPen(color, 2));
    painter.drawLine(x1, y1, x2, y2);
}

} // namespace

class tst_simpleStripChart : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // The drawing widget.
    void isOpaqueTracksThePointerAndExpands();
    void leavesAPlainCanvasInItsColour();
    void requestsNoRepaintForACanvasColour();

    // Lines.
    void drawsALineOfWidthTwoInTheColourOfItsLaterPoint();
    void drawsTheSameIntoAPixmap();
    void drawsNothingForASinglePoint();
    void fadesLinesAcrossGaps();
    void fadesAQuarterOfTheAlphaRoundedDown();
    void paintsPointsWithoutColourBlack();
    void truncatesTowardsZero();
    void drawsTheLinesThatEnterTheWindow();
    void interruptsTheLineAtNaN();
    void drawsToTheEdgeForInfinities();
    void paintsTheRegionOfAPaintEventOnly();

    // Partial updates.
    void repaintsTheColumnsOfNewPoints_data();
    void repaintsTheColumnsOfNewPoints();
    void repaintsTheColumnsOfRemovedPoints();
    void repaintsAgainAfterEachFrame();
    void repaintsWhatWasMarkedBeforeAndAfterAScroll();
    void repaintsEverythingWhenTheValueBoundsMove();

    // Scrolling.
    void movesByWholePixels();
    void paintsOnlyTheNewColumns();
    void leavesTheBoundsAloneInsideTheWindow();
    void forgetsAPendingShiftInsideTheWindow();
    void jumpsWithAFullRepaint_data();
    void jumpsWithAFullRepaint();
    void leavesTheBoundsAloneWhateverTheRounding();
    void keepsPixelAlignedForHours();

    // The pointer.
    void tellsWhereThePointerIs();
    void tellsThePointersPlaceAgainAfterARepaint();
    void tellsWhenThePointerLeaves();

    // Charts and curves.
    void takesACurveFromItsFormerChart();
    void ignoresWidgetsThatAreNoPainterCharts();
    void takesPointsBeforeThereIsAChart();
    void survivesTinySizes_data();
    void survivesTinySizes();
    void survivesAnythingInItsPoints();

    // Against the plain way.
    void leavesThePainterAsItWas_data();
    void leavesThePainterAsItWas();
    void drawsNothingForReversedOrEmptyWindows();
    void drawsAsThePlainWay_data();
    void drawsAsThePlainWay();
    void drawsAsThePlainWayOnOddPainters_data();
    void drawsAsThePlainWayOnOddPainters();
    void drawsAsThePlainWayUnderSeveralRectangles_data();
    void drawsAsThePlainWayUnderSeveralRectangles();
    void repaintsAsThePlainWayWhileTheCurveChanges();
    void showsAsThePlainWidget_data();
    void showsAsThePlainWidget();
};

void tst_simpleStripChart::isOpaqueTracksThePointerAndExpands()
{
    simpleStripChartImpl_t impl;
    const QWidget& canvas = *impl.widget();
    QVERIFY(qobject_cast<const simpleStripChartWidget_t*>(&canvas));
    QVERIFY(!canvas.parent());
    QVERIFY(canvas.testAttribute(Qt::WA_OpaquePaintEvent));
    QVERIFY(canvas.hasMouseTracking());
    QCOMPARE(canvas.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(canvas.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

void tst_simpleStripChart::leavesAPlainCanvasInItsColour()
{
    plotted_t plot;
    QCOMPARE(firstDifference(snapshot(plot.chart), plot.blankCanvas()), QString());
}

void tst_simpleStripChart::requestsNoRepaintForACanvasColour()
{
    plotted_t plot;
    QVERIFY(plot.show());
    auto* const impl = plot.chart.findChild<simpleStripChartImpl_t*>();
    impl->canvasColor(Qt::red);
    QCOMPARE(plot.paints->take(), QRegion());
    plot.chart.setBackgroundColor(Qt::blue);
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 300, 100));
}

void tst_simpleStripChart::drawsALineOfWidthTwoInTheColourOfItsLaterPoint()
{
    plotted_t plot;
    plot.curve->color(Qt::magenta); // no line is in the curve's colour
    plot.curve->addPoints({{2.0, 0.0, Qt::black}, {3.0, 0.0, Qt::red}, {4.0, 2.0, Qt::blue}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    painter.fillRect(39, 49, 22, 2, Qt::red); // with its caps: x 40 to 60, y 50
    drawLine(painter, Qt::blue, 60, 50, 80, 30);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::drawsTheSameIntoAPixmap()
{
    plotted_t plot;
    random_t random(30);
    for (int i = 0; i < 2000; ++i)
        plot.curve->addPoint(i * 0.007, random.real(-6.0, 6.0), i < 1500 ? Qt::red : Qt::blue);
    const QImage picture = snapshot(plot.chart);
    QVERIFY(picture != plot.blankCanvas());
    QCOMPARE(
        firstDifference(plot.chart.grab().toImage().convertToFormat(QImage::Format_RGB32), picture),
        QString());
}

void tst_simpleStripChart::drawsNothingForASinglePoint()
{
    plotted_t plot;
    plot.curve->addPoint(5.0, 0.0, Qt::red);
    QCOMPARE(firstDifference(snapshot(plot.chart), plot.blankCanvas()), QString());
}

void tst_simpleStripChart::fadesLinesAcrossGaps()
{
    plotted_t plot;
    plot.curve->gapThreshold(2.0);
    plot.curve->addPoints({{1.0, 0.0, Qt::red},
                           {3.0, 0.0, Qt::red}, // 2 s: no gap yet
                           {std::nextafter(5.0, 6.0), 0.0, Qt::red},
                           {6.0, 0.0, Qt::red}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    const QColor faint(255, 0, 0, 63);
    drawLine(painter, Qt::red, 20, 50, 60, 50);
    drawLine(painter, faint, 60, 50, 100, 50);
    drawLine(painter, Qt::red, 100, 50, 120, 50);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::fadesAQuarterOfTheAlphaRoundedDown()
{
    plotted_t plot;
    plot.curve->addPoints({{1.0, 0.0, Qt::red}, {3.0, 0.0, QColor(0, 0, 255, 103)}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    drawLine(painter, QColor(0, 0, 255, 25), 20, 50, 60, 50);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

// Deliberate: an invalid colour is black to a pen, also when the curve has a colour.
void tst_simpleStripChart::paintsPointsWithoutColourBlack()
{
    plotted_t plot;
    plot.curve->color(Qt::green);
    plot.curve->addPoint(1.0, 0.0);
    plot.curve->addPoint(2.0, 0.0);
    plot.curve->addPoint(4.0, 0.0); // a gap: black, faint
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    drawLine(painter, Qt::black, 20, 50, 40, 50);
    drawLine(painter, QColor(0, 0, 0, 63), 40, 50, 80, 50);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::truncatesTowardsZero()
{
    plotted_t plot;
    // 20 * 1.999 = 39.98; (5 - 0.01) * 10 = 49.9; 20 * -0.04 = -0.8; (5 - 5.09) * 10 = -0.9
    plot.curve->addPoints(
        {{-0.04, 5.09, Qt::red}, {1.999, 0.01, Qt::red}, {2.05, 0.01, Qt::green}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    drawLine(painter, QColor(255, 0, 0, 63), 0, 0, 39, 49);
    drawLine(painter, Qt::green, 39, 49, 41, 49);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::drawsTheLinesThatEnterTheWindow()
{
    plotted_t plot;
    plot.curve->gapThreshold(100.0);
    plot.curve->addPoints({{-20.0, 4.0, Qt::green}, // no part of its lines is in the window
                           {-10.0, 1.0, Qt::green},
                           {5.0, 1.0, Qt::red},
                           {25.0, 1.0, Qt::blue},
                           {30.0, 4.0, Qt::green}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    drawLine(painter, Qt::red, -200, 40, 100, 40);
    drawLine(painter, Qt::blue, 100, 40, 500, 40);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::interruptsTheLineAtNaN()
{
    plotted_t plot;
    plot.curve->addPoints({{1.0, 0.0, Qt::red},
                           {2.0, 0.0, Qt::red},
                           {2.5, nan_, Qt::red},
                           {3.0, 0.0, Qt::red},
                           {4.0, 0.0, Qt::red}});
    QImage wanted = plot.blankCanvas();
    QPainter painter(&wanted);
    drawLine(painter, Qt::red, 20, 50, 40, 50);
    drawLine(painter, Qt::red, 60, 50, 80, 50);
    painter.end();
    QCOMPARE(firstDifference(snapshot(plot.chart), wanted), QString());
}

void tst_simpleStripChart::drawsToTheEdgeForInfinities()
{
    plotted_t plot;
    plot.curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, inf, Qt::red}});
    const QImage up = snapshot(plot.chart);
    plot.curve->clear();
    plot.curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, -inf, Qt::red}});
    const QImage down = snapshot(plot.chart);
    for (int y = 0; y < 100; ++y) {
        // As good as upright from the point at column 20.
        QCOMPARE(up.pixelColor(20, y), QColor(y <= 50 ? Qt::red : Qt::white));
        QCOMPARE(down.pixelColor(20, y), QColor(y >= 49 ? Qt::red : Qt::white));
        QCOMPARE(up.pixelColor(30, y), QColor(Qt::white));
        QCOMPARE(down.pixelColor(30, y), QColor(Qt::white));
    }
}

void tst_simpleStripChart::paintsTheRegionOfAPaintEventOnly()
{
    plotted_t plot;
    plot.curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, 1.0, Qt::red}, {3.0, 0.0, Qt::red}});
    QVERIFY(plot.show());
    plot.chart.findChild<simpleStripChartImpl_t*>()->canvasColor(Qt::black);
    canvasOf(plot.chart)->update(200, 10, 50, 20);
    const QImage picture = shown(plot.chart);
    QCOMPARE(picture.pixelColor(220, 20), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(199, 20), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(250, 20), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(220, 30), QColor(Qt::white));
}

void tst_simpleStripChart::repaintsTheColumnsOfNewPoints_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("added");
    QTest::addColumn<QRect>("painted");
    // The left edge is that of the older point; the width is counted from the chart's edge.
    QTest::newRow("inside") << 2.0 << 3.0 << QRect(40, 0, 60, 100);
    QTest::newRow("fractions are dropped") << 2.04 << 3.04 << QRect(40, 0, 60, 100);
    QTest::newRow("reaches beyond the right edge") << 2.0 << 14.0 << QRect(40, 0, 260, 100);
    QTest::newRow("from the left edge") << 0.0 << 1.0 << QRect(0, 0, 20, 100);
    QTest::newRow("from the left of the window") << -2.0 << 5.0 << QRect(0, 0, 60, 100);
    // Deliberate: the rectangle starts left of the window and is as wide as the part inside.
    QTest::newRow("from far left of the window") << -5.0 << 5.0 << QRect();
    QTest::newRow("up to the left edge") << -5.0 << 0.0 << QRect();
    QTest::newRow("left of the window") << -5.0 << -1.0 << QRect();
    QTest::newRow("from the right edge") << 15.0 << 20.0 << QRect();
    QTest::newRow("right of the window") << 16.0 << 20.0 << QRect();
    QTest::newRow("huge") << 2.0 << 1e17 << QRect(40, 0, 260, 100);
    QTest::newRow("largest") << 2.0 << std::numeric_limits<double>::max() << QRect(40, 0, 260, 100);
}

void tst_simpleStripChart::repaintsTheColumnsOfNewPoints()
{
    QFETCH(double, before);
    QFETCH(double, added);
    QFETCH(QRect, painted);
    plotted_t plot;
    plot.curve->dataDuration(inf);
    QVERIFY(plot.show());
    plot.curve->addPoint(before, 0.0, Qt::red);
    plot.paints->take();
    plot.curve->addPoint(added, 1.0, Qt::red);
    QCOMPARE(plot.paints->take(), QRegion(painted));
}

void tst_simpleStripChart::repaintsTheColumnsOfRemovedPoints()
{
    plotted_t plot;
    plot.curve->addPoints({{2.0, 0.0, Qt::red}, {4.0, 0.0, Qt::red}, {9.0, 0.0, Qt::red}});
    QVERIFY(plot.show());
    plot.curve->clear();
    QCOMPARE(plot.paints->take(), QRegion(40, 0, 180, 100));
}

void tst_simpleStripChart::repaintsAgainAfterEachFrame()
{
    plotted_t plot;
    QVERIFY(plot.show());
    plot.curve->addPoint(1.5, 0.0, Qt::red);
    for (int i = 2; i < 8; ++i) {
        plot.paints->take();
        plot.curve->addPoint(i, 1.0, Qt::red);       // from column 20 i - 10, 20 i wide
        plot.curve->addPoint(i + 0.5, 2.0, Qt::red); // from column 20 i, 20 i + 10 wide
        QCOMPARE(plot.paints->take(), QRegion(20 * i - 10, 0, 20 * i + 20, 100));
    }
}

void tst_simpleStripChart::repaintsWhatWasMarkedBeforeAndAfterAScroll()
{
    plotted_t plot;
    auto* const second = new stripChartCurve_t(nullptr);
    plot.chart.addCurve(second);
    QVERIFY(plot.show());
    plot.curve->addPoint(0.0, 0.0, Qt::red);
    second->addPoint(2.5, 0.0, Qt::blue);
    plot.paints->take();
    plot.curve->addPoint(10.0, 1.0, Qt::red); // columns 0 to 200
    plot.chart.scrollTime(17.0);              // 40 columns to the left, so up to 160
    second->addPoint(11.0, 1.0, Qt::blue);    // columns 10 to 190
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 190, 100) + QRegion(260, 0, 40, 100));
}

void tst_simpleStripChart::repaintsEverythingWhenTheValueBoundsMove()
{
    plotted_t plot;
    QVERIFY(plot.show());
    plot.curve->addPoint(14.0, 0.0, Qt::red);
    plot.chart.autoscaleValue(true);
    plot.paints->take();
    plot.curve->addPoint(14.5, 100.0, Qt::red);
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 300, 100));
    plot.chart.valueBounds(-1.0, 1.0);
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 300, 100));
}

void tst_simpleStripChart::movesByWholePixels()
{
    plotted_t plot;
    QVERIFY(plot.show());
    QSignalSpy spy(&plot.chart, &stripChart_t::timeBoundsChanged);
    plot.chart.scrollTime(15.01); // one pixel is 0.05 s
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), 0.05);
    QCOMPARE(spy.at(0).at(1).toDouble(), 15.05);
    plot.chart.scrollTime(15.05);
    QCOMPARE(spy.size(), 1);
    plot.chart.scrollTime(15.0501);
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy.at(1).at(1).toDouble(), 15.1);
    plot.chart.scrollTime(30.1); // a whole window ahead still shifts
    QCOMPARE(spy.size(), 3);
    QCOMPARE(spy.at(2).at(0).toDouble(), 15.1);
    QCOMPARE(spy.at(2).at(1).toDouble(), 30.1);
}

void tst_simpleStripChart::paintsOnlyTheNewColumns()
{
    plotted_t plot;
    QVERIFY(plot.show());
    plot.chart.scrollTime(15.15);
    QCOMPARE(plot.paints->take(), QRegion(297, 0, 3, 100));
    plot.chart.scrollTime(15.2);
    QCOMPARE(plot.paints->take(), QRegion(299, 0, 1, 100));
}

void tst_simpleStripChart::leavesTheBoundsAloneInsideTheWindow()
{
    plotted_t plot;
    QVERIFY(plot.show());
    plot.chart.scrollTime(15.33); // now at a right edge that rounding may have moved a little
    plot.paints->take();
    QSignalSpy spy(&plot.chart, &stripChart_t::timeBoundsChanged);
    const double left = plot.chart.minTimeBound();
    const double right = plot.chart.maxTimeBound();
    for (const double time : {right, 10.0, left})
        plot.chart.scrollTime(time);
    QCOMPARE(spy.size(), 0);
    QVERIFY(plot.chart.minTimeBound() == left && plot.chart.maxTimeBound() == right);
    QCOMPARE(plot.paints->take(), QRegion());
}

void tst_simpleStripChart::forgetsAPendingShiftInsideTheWindow()
{
    plotted_t plot;
    QVERIFY(plot.show());
    plot.chart.findChild<simpleStripChartWidget_t*>()->timeScroll(-7);
    plot.chart.scrollTime(14.0);
    QCOMPARE(plot.paints->take(), QRegion());
    plot.chart.timeBounds(1.0, 16.0); // other bounds, not a shift by what was announced before
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 300, 100));
}

void tst_simpleStripChart::jumpsWithAFullRepaint_data()
{
    QTest::addColumn<double>("time");
    QTest::newRow("just before the window") << std::nextafter(0.0, -1.0);
    QTest::newRow("long before the window") << -1000.0;
    QTest::newRow("just more than a window ahead") << std::nextafter(30.0, 31.0);
    QTest::newRow("far ahead") << 1e9;
}

void tst_simpleStripChart::jumpsWithAFullRepaint()
{
    QFETCH(double, time);
    plotted_t plot;
    QVERIFY(plot.show());
    QSignalSpy spy(&plot.chart, &stripChart_t::timeBoundsChanged);
    plot.chart.scrollTime(time);
    QCOMPARE(spy.size(), 1);
    QVERIFY(plot.chart.maxTimeBound() == time); // not rounded to a pixel
    QVERIFY(plot.chart.minTimeBound() == time - 15.0);
    QCOMPARE(plot.paints->take(), QRegion(0, 0, 300, 100));
    plot.chart.scrollTime(time + 0.051); // no shift is left over; two pixels
    QCOMPARE(plot.paints->take(), QRegion(298, 0, 2, 100));
}

void tst_simpleStripChart::leavesTheBoundsAloneWhateverTheRounding()
{
    plotted_t plot;
    QSignalSpy spy(&plot.chart, &stripChart_t::timeBoundsChanged);
    int roundedEdges = 0; // that aren't where the pixels say
    for (int i = 1; i <= 1000; ++i) {
        plot.chart.timeBounds(-0.00123 * i, 3.7 * i);
        const double min = plot.chart.minTimeBound();
        const double max = plot.chart.maxTimeBound();
        if (min + 300 / (300 / (max - min)) != max)
            ++roundedEdges;
        spy.clear();
        plot.chart.scrollTime(0.5 * min + 0.5 * max);
        plot.chart.scrollTime(max); // must not creep on by a pixel
        QCOMPARE(spy.size(), 0);
    }
    QVERIFY(roundedEdges > 0); // or else nothing was tested
}

void tst_simpleStripChart::keepsPixelAlignedForHours()
{
    plotted_t plot;
    plot.chart.timeBounds(1.7e9, 1.7e9 + 15.0);
    for (int i = 1; i <= 100000; ++i)
        plot.chart.scrollTime(1.7e9 + 15.0 + i * 0.1);
    // Two pixels each time; the clock's resolution there is 2.4e-7 s.
    QVERIFY(std::abs(plot.chart.maxTimeBound() - (1.7e9 + 10015.0)) < 0.051);
    QVERIFY(std::abs(plot.chart.maxTimeBound() - plot.chart.minTimeBound() - 15.0) < 1e-3);
}

static void movePointer(QWidget* widget, int x, int y)
{
    QMouseEvent event(QEvent::MouseMove, QPointF(x, y), QPointF(x, y), QPointF(x, y), Qt::NoButton,
                      Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void tst_simpleStripChart::tellsWhereThePointerIs()
{
    plotted_t plot;
    QSignalSpy spy(&plot.chart, &stripChart_t::mousePos);
    movePointer(canvasOf(plot.chart), 60, 30);
    QCOMPARE(spy, (QList<QVariantList>{{3.0, 2.0}}));
    plot.chart.timeBounds(100.0, 115.0);
    plot.chart.valueBounds(0.0, 50.0);
    movePointer(canvasOf(plot.chart), 0, 0);
    QCOMPARE(spy.last(), (QVariantList{100.0, 50.0}));
}

void tst_simpleStripChart::tellsThePointersPlaceAgainAfterARepaint()
{
    plotted_t plot;
    QVERIFY(plot.show());
    movePointer(canvasOf(plot.chart), 60, 30);
    QSignalSpy spy(&plot.chart, &stripChart_t::mousePos);
    plot.chart.scrollTime(15.05);
    QCOMPARE(spy.size(), 0);
    plot.paints->take();
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), 3.05);
    QCOMPARE(spy.at(0).at(1).toDouble(), 2.0);
}

void tst_simpleStripChart::tellsWhenThePointerLeaves()
{
    plotted_t plot;
    movePointer(canvasOf(plot.chart), 60, 30);
    QSignalSpy spy(&plot.chart, &stripChart_t::mousePos);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(canvasOf(plot.chart), &leave);
    QCOMPARE(spy.size(), 1);
    QVERIFY(std::isnan(spy.at(0).at(0).toDouble()));
    QVERIFY(std::isnan(spy.at(0).at(1).toDouble()));
    snapshot(plot.chart);
    QCOMPARE(spy.size(), 2); // still away after a repaint
    QVERIFY(std::isnan(spy.at(1).at(0).toDouble()));
}

void tst_simpleStripChart::takesACurveFromItsFormerChart()
{
    plotted_t plot;
    stripChart_t second(nullptr);
    QVERIFY(second.addCurve(plot.curve));
    QVERIFY(!plot.chart.removeCurve(plot.curve));
    QVERIFY(second.removeCurve(plot.curve));
    QVERIFY(plot.chart.addCurve(plot.curve)); // and back
    plot.curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, 0.0, Qt::red}});
    QCOMPARE(snapshot(plot.chart).pixelColor(30, 50), QColor(Qt::red));
}

void tst_simpleStripChart::ignoresWidgetsThatAreNoPainterCharts()
{
    plotted_t plot;
    QVERIFY(plot.show());
    QWidget other;
    plot.curve->renderer()->chart(&other);
    plot.curve->renderer()->chart(nullptr);
    plot.curve->renderer()->chart(canvasOf(plot.chart)); // the same again
    plot.curve->addPoint(2.0, 0.0, Qt::red);
    plot.paints->take();
    plot.curve->addPoint(3.0, 0.0, Qt::red);
    QCOMPARE(plot.paints->take(), QRegion(40, 0, 60, 100));
    QVERIFY(plot.chart.removeCurve(plot.curve));
    QVERIFY(plot.chart.addCurve(plot.curve));
}

void tst_simpleStripChart::takesPointsBeforeThereIsAChart()
{
    auto* const curve = new stripChartCurve_t(nullptr);
    curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, 0.0, Qt::red}});
    curve->clear();
    curve->addPoints({{1.0, 0.0, Qt::red}, {2.0, 0.0, Qt::red}});
    plotted_t plot;
    plot.chart.addCurve(curve);
    QCOMPARE(snapshot(plot.chart).pixelColor(30, 50), QColor(Qt::red));
}

void tst_simpleStripChart::survivesTinySizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("no height") << QSize(100, 0);
    QTest::newRow("no width") << QSize(0, 100);
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("one column") << QSize(1, 100);
    QTest::newRow("one row") << QSize(100, 1);
    QTest::newRow("just the margins") << QSize(100, 6);
}

void tst_simpleStripChart::survivesTinySizes()
{
    QFETCH(QSize, size);
    stripChart_t chart(nullptr);
    QWidget* const canvas = canvasOf(chart);
    chart.layout()->setSizeConstraint(QLayout::SetNoConstraint);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    canvas->resize(size);
    chart.timeBounds(0.0, 10.0);
    for (int i = 0; i < 50; ++i) {
        curve->addPoint(0.5 * i, 100.0 * i, Qt::red);
        chart.scrollTime(0.5 * i);
        canvas->grab();
    }
    chart.valueBounds(0.0, 10.0);
    canvas->repaint();
    movePointer(canvas, 0, 0);
    canvas->resize(200, 106);
    chart.autoscaleValue(true);
    curve->clear();
    curve->addPoint(chart.maxTimeBound() - 1.0, 10.0);
    QCOMPARE(canvas->size(), QSize(200, 106));
    QVERIFY(std::abs(chart.minValueBound() - (10.0 - 1.272)) < 1e-9);
    QVERIFY(std::abs(chart.maxValueBound() - (10.0 + 1.272)) < 1e-9);
}

void tst_simpleStripChart::survivesAnythingInItsPoints()
{
    random_t random(5);
    const double largest = std::numeric_limits<double>::max();
    const double tiny = std::numeric_limits<double>::denorm_min();
    const std::vector<double> odd{0.0,          -0.0,  nan_,         inf,   -inf, largest,
                                  -largest,     tiny,  1e17,         -1e17, 1e9,  -1e9,
                                  2147483647.0, 1e300, 4294967296.0, 1.0,   0.5};
    plotted_t plot;
    for (int i = 0; i < 3000; ++i) {
        switch (random.integer(0, 9)) {
        case 0:
            plot.chart.scrollTime(random.oneOf(odd));
            break;
        case 1:
            plot.chart.timeBounds(random.oneOf(odd), random.oneOf(odd));
            break;
        case 2:
            plot.chart.valueBounds(random.oneOf(odd), random.oneOf(odd));
            break;
        case 3:
            plot.chart.autoscaleValue(true);
            break;
        case 4:
            plot.curve->dataDuration(random.oneOf(odd));
            plot.curve->gapThreshold(random.oneOf(odd));
            break;
        case 5:
            if (random.chance(0.3))
                plot.curve->clear();
            break;
        default:
            plot.curve->addPoint(random.chance(0.5) ? random.oneOf(odd) : plot.curve->timeMax() + 1,
                                 random.oneOf(odd),
                                 QColor::fromHsv(random.integer(0, 359), 255, 200));
        }
        if (i % 10 == 0)
            QCOMPARE(snapshot(plot.chart).size(), QSize(300, 100));
        QVERIFY(std::isfinite(plot.chart.minTimeBound()));
        QVERIFY(std::isfinite(plot.chart.maxTimeBound()));
        QVERIFY(!std::isnan(plot.chart.minValueBound()));
        QVERIFY(!std::isnan(plot.chart.maxValueBound()));
    }
}

// A context that shows all of 0 s to 15 s, values -5 to 5, on 300 x 100 pixels.
static context_t wholeContext(QPainter* painter)
{
    context_t context{};
    context.painter = painter;
    context.drawMinTime = 0.0;
    context.drawMaxTime = 15.0;
    context.minTime = 0.0;
    context.maxValue = 5.0;
    context.xScale = 20.0;
    context.yScale = 10.0;
    context.width = 300;
    context.height = 100;
    return context;
}

void tst_simpleStripChart::leavesThePainterAsItWas_data()
{
    QTest::addColumn<double>("opacity");
    QTest::newRow("opaque") << 1.0;
    QTest::newRow("translucent, line by line") << 0.5;
}

void tst_simpleStripChart::leavesThePainterAsItWas()
{
    QFETCH(double, opacity);
    stripChartCurve_t curve;
    for (int i = 0; i < 2000; ++i)
        curve.addPoint(0.01 * i, 4.0 * std::sin(i), i % 500 < 400 ? Qt::red : Qt::blue);
    QImage picture(300, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setBrush(Qt::green);
    painter.setBackground(Qt::yellow);
    painter.setOpacity(opacity);
    painter.setClipRect(10, 10, 200, 50);
    painter.translate(3, 4);
    const QTransform transform = painter.transform();
    const QPainter::RenderHints hints = painter.renderHints();
    static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(wholeContext(&painter));
    QCOMPARE(painter.brush(), QBrush(Qt::green));
    QCOMPARE(painter.background(), QBrush(Qt::yellow));
    QCOMPARE(painter.opacity(), opacity);
    QCOMPARE(painter.transform(), transform);
    QCOMPARE(painter.clipRegion(), QRegion(7, 6, 200, 50));
    QCOMPARE(painter.renderHints(), hints);
    QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
    QCOMPARE(painter.pen().width(), 2);
}

void tst_simpleStripChart::drawsNothingForReversedOrEmptyWindows()
{
    stripChartCurve_t curve;
    auto* const renderer = static_cast<simpleCurveRenderer_t*>(curve.renderer());
    QImage picture(300, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    const QImage untouched = picture;
    QPainter painter(&picture);
    context_t context = wholeContext(&painter);
    renderer->draw(context); // no points
    for (int i = 0; i < 200; ++i)
        curve.addPoint(0.1 * i, 1.0, Qt::red);
    context.drawMinTime = 10.0;
    context.drawMaxTime = 5.0;
    renderer->draw(context);
    context.drawMinTime = 100.0; // after all points
    context.drawMaxTime = 110.0;
    renderer->draw(context);
    QCOMPARE(firstDifference(picture, untouched), QString());
}

namespace {

// How random curves may look; each row of the comparisons takes one.
struct taste_t
{
    double pointsPerPixel = 1.0;
    double gaps = 0.0;         // chance of a gap before a point
    double colorChanges = 0.0; // chance of another colour at a point
    double translucent = 0.0;  // chance that this colour is translucent
    double odd = 0.0;          // chance of a value that is not finite or is huge
    double roughness = 0.05;   // step between values, as a part of the height
    double zoom = 1.0;         // how much of the data the value bounds cut off
};
} // namespace
Q_DECLARE_METATYPE(taste_t)

static QColor randomColor(random_t& random, const taste_t& taste)
{
    if (random.chance(0.05))
        return QColor();
    QColor color = QColor::fromHsv(random.integer(0, 359), 255, random.integer(100, 255));
    if (random.chance(taste.translucent))
        color.setAlpha(random.integer(0, 255));
    return color;
}

// Points over the times \p from to \p to; \p pixelTime is how long a pixel column is.
static points_t randomPoints(random_t& random, const taste_t& taste, double from, double to,
                             double pixelTime)
{
    static const std::vector<double> oddValues{nan_, nan_, inf, -inf, 1e5, -1e5, 1e9, -1e9, 1e300};
    points_t points;
    QColor color = randomColor(random, taste);
    double value = random.real(-1.0, 1.0);
    const double step = pixelTime / taste.pointsPerPixel;
    for (double time = from; time < to; time += step * random.real(0.1, 1.9)) {
        if (random.chance(taste.gaps))
            time += std::max(step, 0.3 * (to - from) * random.real(0.0, 1.0));
        if (random.chance(taste.colorChanges))
            color = randomColor(random, taste);
        value += taste.roughness * random.real(-1.0, 1.0);
        value = std::min(std::max(value, -1.0), 1.0);
        points.emplace_back(time, random.chance(taste.odd) ? random.oneOf(oddValues) : value,
                            color);
    }
    return points;
}

static void tastes()
{
    QTest::addColumn<taste_t>("taste");
    taste_t taste;
    QTest::newRow("smooth") << taste;
    taste.pointsPerPixel = 0.1;
    taste.roughness = 1.0;
    QTest::newRow("few points") << taste;
    taste.gaps = 0.1;
    taste.colorChanges = 0.3;
    QTest::newRow("few points in colours with gaps") << taste;
    taste.odd = 0.2;
    taste.translucent = 0.5;
    QTest::newRow("few points of every kind") << taste;
    taste = taste_t();
    taste.pointsPerPixel = 20.0;
    QTest::newRow("many smooth points") << taste;
    taste.roughness = 2.0;
    QTest::newRow("many rough points") << taste;
    taste.zoom = 5.0;
    QTest::newRow("many rough points, zoomed in") << taste;
    taste.colorChanges = 0.02;
    taste.gaps = 0.005;
    QTest::newRow("many points in colours with gaps") << taste;
    taste.odd = 0.01;
    QTest::newRow("many points, some odd") << taste;
    taste.translucent = 0.5;
    QTest::newRow("many points of every kind") << taste;
    taste = taste_t();
    taste.pointsPerPixel = 3.0;
    taste.roughness = 0.02;
    taste.zoom = 20.0;
    QTest::newRow("smooth, zoomed in much") << taste;
    taste.odd = 0.1;
    taste.colorChanges = 0.1;
    QTest::newRow("zoomed in much, odd, in colours") << taste;
    taste = taste_t();
    taste.translucent = 1.0;
    taste.pointsPerPixel = 5.0;
    QTest::newRow("all translucent") << taste;
}

void tst_simpleStripChart::drawsAsThePlainWay_data()
{
    tastes();
}

// Both ways of drawing get the same painter settings and pieces of the picture, in turn.
void tst_simpleStripChart::drawsAsThePlainWay()
{
    QFETCH(taste_t, taste);
    random_t random(11);
    for (int round = 0; round < 40; ++round) {
        const int width = random.integer(1, 250);
        const int height = random.integer(1, 120);
        const double start = random.oneOf<double>({0.0, -7.25, 1.7e9, 1e12});
        const double span = random.oneOf<double>({0.5, 15.0, 3600.0});
        stripChartCurve_t curve;
        curve.dataDuration(inf);
        curve.gapThreshold(0.05 * span);
        curve.color(randomColor(random, taste));
        curve.addPoints(
            randomPoints(random, taste, start - 0.2 * span, start + 1.2 * span, span / width));
        const points_t& points = record(curve).points; // less those that rounding made too close

        context_t context{};
        context.minTime = start;
        context.maxValue = random.real(0.5, 1.2) / taste.zoom;
        context.xScale = width / span;
        context.yScale = height * 0.5 * taste.zoom;
        context.width = static_cast<unsigned>(width);
        context.height = static_cast<unsigned>(height);
        QImage actual(width, height, QImage::Format_RGB32);
        actual.fill(Qt::white);
        QImage wanted = actual;
        QPainter actualPainter(&actual);
        QPainter wantedPainter(&wanted);
        for (int piece = random.integer(1, 3); piece > 0; --piece) {
            const int left = piece == 1 ? 0 : random.integer(0, width - 1);
            const int right = piece == 1 ? width - 1 : random.integer(left, width - 1);
            for (QPainter* const painter : {&actualPainter, &wantedPainter}) {
                painter->setClipRect(left, 0, right - left + 1, height);
                painter->eraseRect(left, 0, right - left + 1, height);
            }
            context.drawMinTime = context.minTime + left / context.xScale;
            context.drawMaxTime = context.minTime + (right + 1) / context.xScale;
            context.painter = &actualPainter;
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
            context.painter = &wantedPainter;
            drawPlainly(context, points, curve.color(), 0.05 * span);
        }
        actualPainter.end();
        wantedPainter.end();
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

namespace {
// Turns a usual context and painter into an odd one.
using oddity_t = std::function<void(context_t&)>;
} // namespace
Q_DECLARE_METATYPE(oddity_t)

void tst_simpleStripChart::drawsAsThePlainWayOnOddPainters_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<oddity_t>("oddity");
    const auto rgb = QImage::Format_RGB32;
    const auto row = [](const char* name, QImage::Format format, const oddity_t& oddity) {
        QTest::newRow(name) << format << oddity;
    };
    const oddity_t none = [](context_t&) {};
    row("premultiplied alpha", QImage::Format_ARGB32_Premultiplied, none);
    row("straight alpha", QImage::Format_ARGB32, none);
    row("16 bits", QImage::Format_RGB16, none);
    row("24 bits", QImage::Format_RGB888, none);
    row("bytes in order", QImage::Format_RGBA8888, none);
    row("30 bits", QImage::Format_RGB30, none);
    row("64 bits", QImage::Format_RGBA64, none);
    row("grey", QImage::Format_Grayscale8, none);
    row("one bit", QImage::Format_Mono, none);
    row("negative value scale", rgb, [](context_t& c) {
        c.yScale = -c.yScale;
        c.maxValue = -1.0;
    });
    row("negative time scale", rgb, [](context_t& c) {
        c.xScale = -c.xScale;
        c.painter->translate(200, 0);
    });
    row("value scale of zero", rgb, [](context_t& c) { c.yScale = 0.0; });
    row("time scale of zero", rgb, [](context_t& c) { c.xScale = 0.0; });
    row("no scale at all", rgb, [](context_t& c) { c.xScale = c.yScale = 0.0; });
    row("infinite value scale", rgb, [](context_t& c) { c.yScale = inf; });
    row("infinite time scale", rgb, [](context_t& c) { c.xScale = inf; });
    row("huge scales", rgb, [](context_t& c) { c.xScale = c.yScale = 1e12; });
    row("NaN scales", rgb, [](context_t& c) { c.xScale = c.yScale = nan_; });
    row("NaN top", rgb, [](context_t& c) { c.maxValue = nan_; });
    row("size of zero", rgb, [](context_t& c) { c.width = c.height = 0; });
    row("drawn window of everything", rgb, [](context_t& c) {
        c.drawMinTime = -inf;
        c.drawMaxTime = inf;
    });
    row("drawn window of NaN", rgb, [](context_t& c) { c.drawMinTime = c.drawMaxTime = nan_; });
    row("drawn window of an instant", rgb,
        [](context_t& c) { c.drawMaxTime = c.drawMinTime = 7.0; });
    row("drawn window reversed", rgb,
        [](context_t& c) { std::swap(c.drawMinTime, c.drawMaxTime); });
    row("translated", rgb, [](context_t& c) { c.painter->translate(-31, 17); });
    row("translated by fractions", rgb, [](context_t& c) { c.painter->translate(3.4, -2.6); });
    row("scaled by 2", rgb, [](context_t& c) { c.painter->scale(2, 2); });
    row("scaled by 0.37", rgb, [](context_t& c) { c.painter->scale(0.37, 0.37); });
    row("mirrored", rgb, [](context_t& c) {
        c.painter->translate(200, 0);
        c.painter->scale(-1, 1);
    });
    row("rotated", rgb, [](context_t& c) { c.painter->rotate(20); });
    row("upright", rgb, [](context_t& c) {
        c.painter->translate(100, 0);
        c.painter->rotate(90);
    });
    row("in perspective", rgb, [](context_t& c) {
        c.painter->setTransform(QTransform(1, 0, 0.001, 0, 1, 0.001, 0, 0, 1));
    });
    row("with a window", rgb, [](context_t& c) { c.painter->setWindow(0, 0, 400, 200); });
    row("clipped", rgb, [](context_t& c) { c.painter->setClipRect(20, 10, 90, 50); });
    row("clipped to nothing", rgb, [](context_t& c) { c.painter->setClipRect(0, 0, 0, 0); });
    row("clipped to a region", rgb, [](context_t& c) {
        c.painter->setClipRegion(QRegion(0, 0, 50, 60) + QRegion(70, 30, 60, 90));
    });
    row("clipped to a circle", rgb, [](context_t& c) {
        QPainterPath circle;
        circle.addEllipse(20, 5, 110, 90);
        c.painter->setClipPath(circle);
    });
    row("half transparent", rgb, [](context_t& c) { c.painter->setOpacity(0.5); });
    row("antialiased", rgb, [](context_t& c) { c.painter->setRenderHint(QPainter::Antialiasing); });
    row("adding up", rgb,
        [](context_t& c) { c.painter->setCompositionMode(QPainter::CompositionMode_Plus); });
    row("combined bit by bit", rgb, [](context_t& c) {
        c.painter->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    });
    row("with a brush", rgb, [](context_t& c) { c.painter->setBrush(Qt::green); });
}

void tst_simpleStripChart::drawsAsThePlainWayOnOddPainters()
{
    QFETCH(QImage::Format, format);
    QFETCH(oddity_t, oddity);
    random_t random(21);
    for (int round = 0; round < 12; ++round) {
        taste_t taste;
        taste.pointsPerPixel = random.oneOf<double>({0.2, 1.0, 10.0});
        taste.roughness = random.oneOf<double>({0.05, 0.3, 2.0});
        taste.zoom = random.oneOf<double>({1.0, 1.0, 4.0});
        if (random.chance(0.5)) {
            taste.gaps = taste.colorChanges = taste.odd = 0.02;
            taste.translucent = 0.3;
        }
        stripChartCurve_t curve;
        curve.addPoints(randomPoints(random, taste, -2.0, 17.0, 0.075));
        const points_t& points = record(curve).points;
        const auto drawn = [&](const auto& draw) {
            QImage picture(200, 120, format);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            context_t context{};
            context.painter = &painter;
            context.drawMinTime = 0.0;
            context.drawMaxTime = 15.0;
            context.minTime = 0.0;
            context.maxValue = 1.0 / taste.zoom;
            context.xScale = 200 / 15.0;
            context.yScale = 60.0 * taste.zoom;
            context.width = 200;
            context.height = 120;
            oddity(context);
            draw(context);
            painter.end();
            return picture;
        };
        const QImage actual = drawn([&](const context_t& context) {
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
        });
        const QImage wanted =
            drawn([&](const context_t& context) { drawPlainly(context, points, QColor(), 1.1); });
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

void tst_simpleStripChart::drawsAsThePlainWayUnderSeveralRectangles_data()
{
    QTest::addColumn<bool>("byPainter");
    QTest::addColumn<bool>("byToolkit");
    QTest::newRow("set on the painter") << true << false;
    QTest::newRow("set by the toolkit") << false << true;
    QTest::newRow("set by both") << true << true;
}

// Rectangles of the clip reach, or lie, beyond the picture.
void tst_simpleStripChart::drawsAsThePlainWayUnderSeveralRectangles()
{
    QFETCH(bool, byPainter);
    QFETCH(bool, byToolkit);
    random_t random(22);
    const QSize size(200, 120);
    const auto randomRegion = [&] {
        // The toolkit paints nothing that has no pixel of the picture.
        QRegion region(random.integer(0, 199), random.integer(0, 119), 20, 20);
        for (int i = random.integer(0, 4); i > 0; --i)
            region += QRect(random.integer(-150, 220), random.integer(-100, 130),
                            random.integer(1, 200), random.integer(1, 120));
        return region;
    };
    for (int round = 0; round < 200; ++round) {
        taste_t taste;
        taste.pointsPerPixel = random.oneOf<double>({0.1, 0.5, 3.0});
        taste.roughness = random.oneOf<double>({0.3, 2.0});
        stripChartCurve_t curve;
        curve.gapThreshold(100.0);
        curve.addPoints(randomPoints(random, taste, -2.0, 17.0, 0.075));
        const QRegion ofPainter = randomRegion();
        const QRegion ofToolkit = randomRegion();
        const auto drawn = [&](const auto& draw) {
            QImage picture(size, QImage::Format_RGB32);
            picture.fill(Qt::white);
            if (byToolkit)
                picture.paintEngine()->setSystemClip(ofToolkit);
            QPainter painter(&picture);
            painter.translate(5, -7);
            if (byPainter)
                painter.setClipRegion(ofPainter);
            draw(context_t{&painter, 0.0, 15.0, 0.0, 1.0, 200 / 15.0, 60.0, 200, 120});
            painter.end();
            return picture;
        };
        const QImage actual = drawn([&](const context_t& context) {
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
        });
        const QImage wanted = drawn([&](const context_t& context) {
            drawPlainly(context, record(curve).points, QColor(), 100.0);
        });
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

// Points come and go, the colour and the threshold change, bounds move: whatever the renderer
// remembers of former pictures has to follow.
void tst_simpleStripChart::repaintsAsThePlainWayWhileTheCurveChanges()
{
    random_t random(31);
    for (int round = 0; round < 10; ++round) {
        stripChartCurve_t curve;
        plainCurve_t model;
        double duration = 40.0;
        curve.dataDuration(duration);
        model.duration = duration;
        double now = 0.0;
        context_t context = wholeContext(nullptr);
        for (int step = 0; step < 60; ++step) {
            taste_t taste;
            taste.pointsPerPixel = random.oneOf<double>({0.5, 5.0, 30.0});
            taste.roughness = random.oneOf<double>({0.05, 1.0});
            if (random.chance(0.3)) {
                taste.gaps = taste.odd = 0.002;
                taste.colorChanges = 0.01;
            }
            const double to = now + random.oneOf<double>({0.0, 0.1, 1.0, 5.0});
            const points_t batch = randomPoints(random, taste, now, to, 0.05);
            now = to;
            curve.addPoints(batch);
            model.addPoints(batch);
            switch (random.integer(0, 12)) {
            case 0:
                model.color = randomColor(random, taste);
                curve.color(model.color);
                break;
            case 1:
                model.threshold = random.oneOf<double>({0.01, 0.05, 0.2, 1.1, -1.0, nan_});
                curve.gapThreshold(model.threshold);
                break;
            case 2:
                model.duration = random.oneOf<double>({5.0, 20.0, 60.0});
                curve.dataDuration(model.duration);
                break;
            case 3:
                if (random.chance(0.3)) {
                    curve.clear();
                    model.clear();
                }
                break;
            case 4:
                context.maxValue = random.oneOf<double>({0.3, 1.0, 1.5});
                context.yScale = random.oneOf<double>({40.0, 50.0, 300.0});
                break;
            case 5:
                context.xScale = random.oneOf<double>({20.0, 20.0, 10.0, 55.0, -20.0});
                break;
            case 6:
                context.minTime = now - random.real(0.0, 30.0);
                break;
            default:
                context.minTime += random.oneOf<double>({0.0, 0.05, 1.0, 0.0123});
            }
            context.drawMinTime = context.minTime + random.oneOf<int>({0, 0, 50}) / context.xScale;
            context.drawMaxTime =
                context.minTime + random.oneOf<int>({300, 300, 100}) / context.xScale;
            QImage actual(300, 100, QImage::Format_RGB32);
            actual.fill(Qt::white);
            QImage wanted = actual;
            QPainter actualPainter(&actual);
            context.painter = &actualPainter;
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
            actualPainter.end();
            QPainter wantedPainter(&wanted);
            context.painter = &wantedPainter;
            drawPlainly(context, model.points, model.color, model.threshold);
            wantedPainter.end();
            QVERIFY2(actual == wanted,
                     qPrintable(QStringLiteral("round %1, step %2: ").arg(round).arg(step) +
                                firstDifference(actual, wanted)));
        }
    }
}

void tst_simpleStripChart::showsAsThePlainWidget_data()
{
    tastes();
}

namespace {

// A chart and the plain widget, both on the screen, with the same curves and the same past. Each is
// a window: QPainter rounds lines in another way where a widget is elsewhere in its window.
struct compared_t
{
    explicit compared_t(int curveCount)
    {
        std::vector<stripChartCurve_t*> made;
        for (int i = 0; i < curveCount; ++i)
            made.push_back(new stripChartCurve_t(nullptr));
        std::sort(made.begin(), made.end(), std::less<>()); // a chart draws in this order
        models.resize(made.size());
        for (std::size_t i = 0; i < made.size(); ++i) {
            chart.addCurve(made[i]);
            plain.addCurve(&models[i]);
        }
        curves = made;
        QObject::connect(&chart, &stripChart_t::timeBoundsChanged, &chart,
                         [this](double min, double max) {
                             heard << boundsSignal("timeBoundsChanged", min, max);
                         });
        QObject::connect(&chart, &stripChart_t::valueBoundsChanged, &chart,
                         [this](double min, double max) {
                             heard << boundsSignal("valueBoundsChanged", min, max);
                         });
        QObject::connect(&chart, &stripChart_t::valueAutoscaleChanged, &chart, [this](bool on) {
            heard << QStringLiteral("valueAutoscaleChanged(%1)").arg(on);
        });
    }

    bool show(const QSize& size)
    {
        for (QWidget* const window : {static_cast<QWidget*>(&chart), static_cast<QWidget*>(&plain)})
            window->resize(size);
        chart.move(0, 0);
        plain.move(0, 500);
        chart.show();
        plain.show();
        settle(); // or one would be told to paint itself once more, later than the other
        return chart.windowHandle()->isExposed() && plain.windowHandle()->isExposed();
    }

    /// What differs, if anything: signals since the last call, the pictures on the screen.
    QString difference()
    {
        const QStringList wanted = plain.takeSignals();
        const QStringList actual = std::exchange(heard, QStringList());
        if (actual != wanted)
            return "signals " + actual.join(u' ') + " instead of " + wanted.join(u' ');
        const QImage actualPicture = shown(chart);
        const QImage wantedPicture = shown(plain);
        if (actualPicture == wantedPicture)
            return QString();
        return firstDifference(actualPicture, wantedPicture);
    }

    stripChart_t chart{nullptr};
    plainChart_t plain;
    std::vector<stripChartCurve_t*> curves; // the chart's
    std::vector<plainCurve_t> models;
    QStringList heard;
};
} // namespace

void tst_simpleStripChart::showsAsThePlainWidget()
{
    QFETCH(taste_t, taste);
    random_t random(41);
    compared_t both(random.integer(1, 3));
    QVERIFY(both.show(QSize(random.integer(100, 400), random.integer(50, 200))));
    double span = 10.0;
    double now = 100.0;
    const double lead = random.oneOf<double>({0.0, 0.0, 3.0, 6.0}); // the window's, over the points
    const auto timeBounds = [&](double min, double max) {
        both.chart.timeBounds(min, max);
        both.plain.timeBounds(min, max);
    };
    const auto scrollTime = [&](double time) {
        both.chart.scrollTime(time);
        both.plain.scrollTime(time);
    };
    timeBounds(now - span, now);
    for (int frame = 0; frame < 150; ++frame) {
        for (int action = random.integer(1, 6); action > 0; --action) {
            const auto which = static_cast<std::size_t>(
                random.integer(0, static_cast<int>(both.curves.size()) - 1));
            stripChartCurve_t& curve = *both.curves[which];
            plainCurve_t& model = both.models[which];
            switch (random.integer(0, 60)) {
            case 0:
                model.threshold = random.oneOf<double>({0.05, 0.5, 1.1});
                curve.gapThreshold(model.threshold);
                break;
            case 1:
                model.duration = random.oneOf<double>({5.0, 20.0, 7200.0});
                curve.dataDuration(model.duration);
                break;
            case 2:
                curve.clear();
                model.clear();
                break;
            case 3: {
                const QColor color = QColor::fromHsv(random.integer(0, 359), 100, 255);
                both.chart.setBackgroundColor(color);
                both.plain.setBackgroundColor(color);
                break;
            }
            case 4: {
                const double middle = random.real(-0.5, 0.5);
                const double half = random.real(0.2, 1.5) / taste.zoom;
                both.chart.valueBounds(middle - half, middle + half);
                both.plain.valueBounds(middle - half, middle + half);
                break;
            }
            case 5:
            case 6: {
                const bool enable = random.chance(0.7);
                both.chart.autoscaleValue(enable);
                both.plain.autoscaleValue(enable);
                break;
            }
            case 7: {
                const double range = random.oneOf<double>({0.01, 0.5, 2.0});
                both.chart.minValueRange(range);
                both.plain.minValueRange(range);
                break;
            }
            case 8:
                span = random.oneOf<double>({1.0, 10.0, 33.0});
                timeBounds(now - span, now);
                break;
            case 9:
                scrollTime(now - 2.5 * span);
                break;
            case 10: {
                QSize size(random.integer(60, 400), random.integer(50, 200));
                if (random.chance(0.5)) // hardly changes the time scale
                    size.setWidth(both.chart.width() + random.oneOf<int>({-2, -1, 1, 2}));
                both.chart.resize(size);
                both.plain.resize(size);
                break;
            }
            default:
                if (random.chance(0.5)) {
                    const double to = now + random.oneOf<double>({0.01, 0.1, 0.1, 0.5, 2.0});
                    const points_t batch =
                        randomPoints(random, taste, std::max(now - 0.2, model.timeMax()), to,
                                     span / both.chart.width());
                    if (batch.size() < 30) {
                        for (const auto& point : batch) {
                            curve.addPoint(point.time, point.value, point.color);
                            model.addPoint(point.time, point.value, point.color);
                        }
                    } else {
                        curve.addPoints(batch);
                        model.addPoints(batch);
                    }
                    now = std::max(now, to);
                } else {
                    scrollTime(now + lead - random.oneOf<double>({0.0, 0.0, 0.3}));
                }
            }
        }
        const QString difference = both.difference();
        QVERIFY2(difference.isEmpty(),
                 qPrintable(QStringLiteral("frame %1: ").arg(frame) + difference));
    }
}

ZORBIN_TEST_MAIN(tst_simpleStripChart, QApplication)
#include "tst_simpleStripChart.moc"
