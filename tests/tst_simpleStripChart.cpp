#include "paintLog.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "simpleStripChartImpl.h"
#include "simpleStripChartWidget.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "stripChartCurveRenderer.h"
#include "testCase.h"

#include <QApplication>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

using namespace zorbin_qt_gui;

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

/// Strip charts that draw with the painter: what they draw, and how little of it again.
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

ZORBIN_TEST_MAIN(tst_simpleStripChart, QApplication)
#include "tst_simpleStripChart.moc"
