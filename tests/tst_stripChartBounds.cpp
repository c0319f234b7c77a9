#include "bareChart.h"
#include "curveIndex_p.h"
#include "pictures.h"
#include "plainChart.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "stripChartImpl.h"
#include "testCase.h"

#include <QApplication>
#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

using namespace strip_chart_tests;
using namespace zorbin_qt_gui;

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

/// The bounds of a strip chart: of time and of values, and how they follow the data.
class tst_stripChartBounds : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Time bounds.
    void storesTimeBoundsBeforeItAnnouncesThem();
    void announcesEqualTimeBoundsOnlyOnce();
    void followsTheVisibleTimeWindow();
    void ignoresTimeBoundsThatAreNotFinite_data();
    void ignoresTimeBoundsThatAreNotFinite();
    void survivesOddTimeBounds_data();
    void survivesOddTimeBounds();
    void keepsTheSpanWhenScrolled();
    void ignoresScrollTimesThatAreNotFinite_data();
    void ignoresScrollTimesThatAreNotFinite();

    // Value bounds.
    void switchesAutoscaleOffForValueBoundsByHand();
    void switchesAutoscaleOffForEqualValueBounds();
    void ignoresValueBoundsThatAreNotFinite();
    void survivesOddValueBounds_data();
    void survivesOddValueBounds();
    void announcesTheModeOnlyWhenItChanges();
    void leavesManualBoundsAlone();

    // The implementation's geometry.
    void hasPlainDefaults();
    void keepsTheTimeScaleAcrossASize();
    void refreshesNoScaleForEqualTimeBounds();
    void fitsTheMinimumRangeWithoutCurves();
    void centresTheDataInTheUsableHeight();
    void keepsBoundsThatFit();
    void rescalesDataBelowHalfTheUsableHeight();
    void rescalesDataBeyondABound();
    void decidesWithTheScaleAsItWasBefore();
    void widensToTheMinimumRange();
    void countsPointsOnTheWindowsEdges();
    void treatsAWindowWithoutPointsAsZero();
    void treatsAnEmptyCurveAsZero();
    void spansAllCurves();
    void leavesNonFiniteValuesOutOfAutoscale();
    void reversesTheBoundsBelowTwiceTheMargin();
    void keepsTheBoundsAtAUsableHeightOfZero();
    void survivesExtremeValues();
    void fitsTheCurvesThatAreThereAtRandom();
    void appliesTheMarginAtTheNextRecalculation();
    void announcesAnotherCanvasColourOnce();
    void keepsTheCanvasColourSilently();
};

void tst_stripChartBounds::storesTimeBoundsBeforeItAnnouncesThem()
{
    bareChartImpl_t impl;
    impl.updateSize(100, 106);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.timeBounds(10.0, 30.0);
    QCOMPARE(log.take(), QStringList{"timeBoundsChanged(10, 30)"});
    QVERIFY(log.isConsistent());
    QCOMPARE(impl.minTimeBound(), 10.0);
    QCOMPARE(impl.maxTimeBound(), 30.0);
    QCOMPARE(impl.xCenter(), 20.0);
    QCOMPARE(impl.xScaleFactor(), 5.0);
}

void tst_stripChartBounds::announcesEqualTimeBoundsOnlyOnce()
{
    stripChart_t chart(nullptr);
    signalLog_t<stripChart_t> log(&chart);
    chart.timeBounds(-15.0, 0.0);
    QCOMPARE(log.take(), QStringList());
    chart.timeBounds(-15.0, 1.0);
    chart.timeBounds(-15.0, 1.0);
    QCOMPARE(log.take().filter("timeBounds"), QStringList{"timeBoundsChanged(-15, 1)"});
    chart.timeBounds(-14.0, 1.0);
    QCOMPARE(log.take().filter("timeBounds"), QStringList{"timeBoundsChanged(-14, 1)"});
}

void tst_stripChartBounds::followsTheVisibleTimeWindow()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-5.0, 1000.0);
    curve->addPoint(5.0, 2000.0);
    curve->addPoint(15.0, 3000.0);
    impl.updateSize(100, 106); // 100 pixels usable
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.timeBounds(0.0, 10.0);
    // One value: 2000 +- 1, widened to 0.5 * 106 * 1.2 * 2 / 100 on either side.
    QCOMPARE(log.take(),
             (QStringList{"timeBoundsChanged(0, 10)",
                          boundsSignal("valueBoundsChanged", 2000.0 - 1.272, 2000.0 + 1.272)}));
    impl.timeBounds(0.0, 20.0); // 2000 to 3000: 2500 +- 636
    QCOMPARE(log.take(),
             (QStringList{"timeBoundsChanged(0, 20)", "valueBoundsChanged(1864, 3136)"}));
    QVERIFY(log.isConsistent());
}

void tst_stripChartBounds::ignoresTimeBoundsThatAreNotFinite_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("NaN, number") << nan_ << 5.0;
    QTest::newRow("number, NaN") << 5.0 << nan_;
    QTest::newRow("NaN, NaN") << nan_ << nan_;
    QTest::newRow("minus infinity") << -inf << 5.0;
    QTest::newRow("infinity") << 5.0 << inf;
}

void tst_stripChartBounds::ignoresTimeBoundsThatAreNotFinite()
{
    QFETCH(double, min);
    QFETCH(double, max);
    stripChart_t chart(nullptr);
    signalLog_t<stripChart_t> log(&chart);
    chart.timeBounds(min, max);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(chart.minTimeBound(), -15.0);
    QCOMPARE(chart.maxTimeBound(), 0.0);
}

void tst_stripChartBounds::survivesOddTimeBounds_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("equal") << 5.0 << 5.0;
    QTest::newRow("reversed") << 10.0 << 0.0;
    QTest::newRow("near 1e17") << 1e17 << 1e17 + 16.0;
    QTest::newRow("neighbouring doubles") << 5.0 << std::nextafter(5.0, 6.0);
    QTest::newRow("smallest span") << 0.0 << std::numeric_limits<double>::denorm_min();
    QTest::newRow("largest span") << -std::numeric_limits<double>::max()
                                  << std::numeric_limits<double>::max();
}

void tst_stripChartBounds::survivesOddTimeBounds()
{
    QFETCH(double, min);
    QFETCH(double, max);
    stripChart_t chart(nullptr);
    chart.resize(80, 60);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    curve->addPoints({{0.0, 1.0, Qt::red}, {1.0, 2.0, Qt::red}, {1e17, 3.0, Qt::red}});
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    chart.timeBounds(min, max);
    QCOMPARE(chart.minTimeBound(), min);
    QCOMPARE(chart.maxTimeBound(), max);
    QCOMPARE(shown(chart).size(), QSize(80, 60));
    for (const double time : {min, max, 0.5 * min + 0.5 * max, max + 1.0, 2.0 * max, 0.0}) {
        chart.scrollTime(time);
        curve->addPoint(curve->timeMax() + 1e6, 4.0);
        QCOMPARE(shown(chart).size(), QSize(80, 60));
        QVERIFY(std::isfinite(chart.minTimeBound()));
        QVERIFY(std::isfinite(chart.maxTimeBound()));
    }
}

void tst_stripChartBounds::keepsTheSpanWhenScrolled()
{
    bareChartImpl_t impl;
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.scrollTime(7.0);
    QCOMPARE(log.take(), QStringList{"timeBoundsChanged(-8, 7)"});
    impl.scrollTime(7.0);
    QCOMPARE(log.take(), QStringList());
    impl.scrollTime(-100.0);
    QCOMPARE(log.take(), QStringList{"timeBoundsChanged(-115, -100)"});
    QVERIFY(log.isConsistent());
}

void tst_stripChartBounds::ignoresScrollTimesThatAreNotFinite_data()
{
    QTest::addColumn<double>("time");
    QTest::newRow("NaN") << nan_;
    QTest::newRow("infinity") << inf;
    QTest::newRow("minus infinity") << -inf;
}

void tst_stripChartBounds::ignoresScrollTimesThatAreNotFinite()
{
    QFETCH(double, time);
    stripChart_t chart(nullptr);
    signalLog_t<stripChart_t> log(&chart);
    chart.scrollTime(time);
    QCOMPARE(log.take(), QStringList());
    bareChartImpl_t impl;
    impl.scrollTime(time);
    QCOMPARE(impl.maxTimeBound(), 0.0);
}

void tst_stripChartBounds::switchesAutoscaleOffForValueBoundsByHand()
{
    bareChartImpl_t impl;
    impl.updateSize(100, 100);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.valueBounds(-10.0, 30.0);
    QCOMPARE(log.take(), (QStringList{"valueAutoscaleChanged(0)", "valueBoundsChanged(-10, 30)"}));
    QVERIFY(log.isConsistent());
    QCOMPARE(impl.valueRescaleMode(), stripChartImpl_t::RESCALE_MANUAL);
    QCOMPARE(impl.yCenter(), 10.0);
    QCOMPARE(impl.yScaleFactor(), 2.5);
    impl.valueBounds(-10.0, 30.0);
    QCOMPARE(log.take(), QStringList());
    impl.valueBounds(-10.0, 31.0);
    QCOMPARE(log.take(), QStringList{"valueBoundsChanged(-10, 31)"});
}

void tst_stripChartBounds::switchesAutoscaleOffForEqualValueBounds()
{
    stripChart_t chart(nullptr);
    signalLog_t<stripChart_t> log(&chart);
    chart.valueBounds(-1.0, 1.0);
    QCOMPARE(log.take(), QStringList{"valueAutoscaleChanged(0)"});
    QVERIFY(!chart.autoscaleValue());
}

void tst_stripChartBounds::ignoresValueBoundsThatAreNotFinite()
{
    for (const double odd : {nan_, inf, -inf}) {
        stripChart_t chart(nullptr);
        signalLog_t<stripChart_t> log(&chart);
        chart.valueBounds(odd, 5.0);
        QCOMPARE(log.take(), QStringList{"valueAutoscaleChanged(0)"});
        chart.valueBounds(-5.0, odd);
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(chart.minValueBound(), -1.0);
        QCOMPARE(chart.maxValueBound(), 1.0);
    }
}

void tst_stripChartBounds::survivesOddValueBounds_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("equal") << 3.0 << 3.0;
    QTest::newRow("reversed") << 3.0 << -3.0;
    QTest::newRow("largest span") << -std::numeric_limits<double>::max()
                                  << std::numeric_limits<double>::max();
    QTest::newRow("smallest span") << 0.0 << std::numeric_limits<double>::denorm_min();
    QTest::newRow("huge") << 1e300 << 1e301;
}

void tst_stripChartBounds::survivesOddValueBounds()
{
    QFETCH(double, min);
    QFETCH(double, max);
    stripChart_t chart(nullptr);
    chart.resize(80, 60);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    curve->addPoints({{-9.0, 3.0, Qt::red}, {-8.0, 4.0, Qt::red}, {-7.0, 1e300, Qt::red}});
    chart.valueBounds(min, max);
    QCOMPARE(chart.minValueBound(), min);
    QCOMPARE(chart.maxValueBound(), max);
    QCOMPARE(snapshot(chart).size(), QSize(80, 60));
    curve->addPoint(-6.0, -5.0, Qt::red);
    QCOMPARE(snapshot(chart).size(), QSize(80, 60));
    chart.autoscaleValue(true);
    QCOMPARE(snapshot(chart).size(), QSize(80, 60));
    QVERIFY(!std::isnan(chart.minValueBound()));
    QVERIFY(!std::isnan(chart.maxValueBound()));
}

void tst_stripChartBounds::announcesTheModeOnlyWhenItChanges()
{
    stripChart_t chart(nullptr);
    signalLog_t<stripChart_t> log(&chart);
    chart.autoscaleValue(true);
    QCOMPARE(log.take(), QStringList());
    chart.autoscaleValue(false);
    chart.autoscaleValue(false);
    QCOMPARE(log.take(), QStringList{"valueAutoscaleChanged(0)"});
    QVERIFY(!chart.autoscaleValue());
    chart.autoscaleValue(true);
    QCOMPARE(log.take().first(), QString("valueAutoscaleChanged(1)"));
    QVERIFY(chart.autoscaleValue());
}

void tst_stripChartBounds::leavesManualBoundsAlone()
{
    bareChartImpl_t impl;
    impl.valueBounds(0.0, 10.0);
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-1.0, 500.0);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.updateSize(10, 50);
    impl.recalculateBounds();
    impl.minValueRange(100.0);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(impl.yScaleFactor(), 5.0); // but the scale follows the height
    QCOMPARE(impl.yCenter(), 5.0);
}

void tst_stripChartBounds::hasPlainDefaults()
{
    bareChartImpl_t impl;
    QVERIFY(impl.curves().empty());
    QCOMPARE(impl.canvasColor(), QApplication::palette().color(QPalette::Window));
    QCOMPARE(impl.margin(), 3u);
    QCOMPARE(impl.valueRescaleMode(), stripChartImpl_t::RESCALE_AUTO);
    QCOMPARE(int(stripChartImpl_t::RESCALE_AUTO), 0);
    QCOMPARE(int(stripChartImpl_t::RESCALE_MANUAL), 1);
    QCOMPARE(impl.minTimeBound(), -15.0);
    QCOMPARE(impl.maxTimeBound(), 0.0);
    QCOMPARE(impl.minValueBound(), -1.0);
    QCOMPARE(impl.maxValueBound(), 1.0);
    // Deliberate: not those of the default bounds until a size or other bounds come.
    QCOMPARE(impl.xScaleFactor(), 1.0);
    QCOMPARE(impl.yScaleFactor(), 1.0);
    QCOMPARE(impl.xCenter(), 0.0);
    QCOMPARE(impl.yCenter(), 0.0);
}

void tst_stripChartBounds::keepsTheTimeScaleAcrossASize()
{
    bareChartImpl_t impl;
    impl.updateSize(300, 100);
    QCOMPARE(impl.xScaleFactor(), 1.0);
    QCOMPARE(impl.xCenter(), 0.0);
    impl.timeBounds(0.0, 10.0);
    QCOMPARE(impl.xScaleFactor(), 30.0);
    impl.updateSize(500, 100);
    QCOMPARE(impl.xScaleFactor(), 30.0);
    impl.timeBounds(1.0, 11.0);
    QCOMPARE(impl.xScaleFactor(), 50.0);
}

void tst_stripChartBounds::refreshesNoScaleForEqualTimeBounds()
{
    bareChartImpl_t impl;
    impl.updateSize(300, 100);
    impl.timeBounds(-15.0, 0.0);
    QCOMPARE(impl.xScaleFactor(), 1.0);
}

void tst_stripChartBounds::fitsTheMinimumRangeWithoutCurves()
{
    bareChartImpl_t impl;
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.updateSize(100, 100);
    // 94 pixels usable: 0.5 * 100 * (1.2 * 2 / 94)
    const double half = 50.0 * (2.4 / 94.0);
    QCOMPARE(impl.minValueBound(), -half);
    QCOMPARE(impl.maxValueBound(), half);
    QVERIFY(std::abs(half - 1.2766) < 5e-5);
    QCOMPARE(impl.yCenter(), 0.0);
    QCOMPARE(impl.yScaleFactor(), 100.0 / (2.0 * half));
    QCOMPARE(log.take(), QStringList{boundsSignal("valueBoundsChanged", -half, half)});
    impl.updateSize(100, 100);
    impl.recalculateBounds();
    QCOMPARE(log.take(), QStringList());
}

void tst_stripChartBounds::centresTheDataInTheUsableHeight()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-2.0, 10.0);
    curve->addPoint(-1.0, 20.0);
    impl.updateSize(10, 106); // 100 pixels usable: half = 53 * 1.2 * 10 / 100
    QCOMPARE(impl.minValueBound(), 15.0 - 6.36);
    QCOMPARE(impl.maxValueBound(), 15.0 + 6.36);
    QCOMPARE(impl.yCenter(), 15.0);
    QCOMPARE(impl.yScaleFactor(), 106.0 / 12.72);
}

void tst_stripChartBounds::keepsBoundsThatFit()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-10.0, -5.0);
    curve->addPoint(-9.0, 5.0);
    curve->addPoint(-2.0, -3.1);
    curve->addPoint(-1.0, 3.1);
    impl.updateSize(10, 106);
    QCOMPARE(impl.maxValueBound(), 6.36); // 8.33 pixels per unit
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.timeBounds(-5.0, 0.0); // a range of 6.2 still takes 51 of 100 usable pixels
    QCOMPARE(log.take(), QStringList{"timeBoundsChanged(-5, 0)"});
    curve->addPoint(-0.5, impl.maxValueBound());
    impl.recalculateBounds();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(impl.yScaleFactor(), 106.0 / 12.72);
}

void tst_stripChartBounds::rescalesDataBelowHalfTheUsableHeight()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-10.0, -5.0);
    curve->addPoint(-9.0, 5.0);
    curve->addPoint(-2.0, -2.5);
    curve->addPoint(-1.0, 2.5);
    impl.updateSize(10, 106);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.timeBounds(-5.0, 0.0); // 5 units take 41 pixels: half = 53 * 1.2 * 5 / 100
    QCOMPARE(log.take(),
             (QStringList{"timeBoundsChanged(-5, 0)", "valueBoundsChanged(-3.1799999999999997, "
                                                      "3.1799999999999997)"}));
}

void tst_stripChartBounds::rescalesDataBeyondABound()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-10.0, -5.0);
    curve->addPoint(-9.0, 5.0);
    impl.updateSize(10, 106);
    QCOMPARE(impl.maxValueBound(), 6.36);
    curve->addPoint(-8.0, std::nextafter(impl.maxValueBound(), 7.0));
    impl.recalculateBounds(); // -5 to 6.36: 0.68 +- 53 * 1.2 * 11.36 / 100
    QVERIFY(std::abs(impl.minValueBound() - (0.68 - 7.22496)) < 1e-12);
    QVERIFY(std::abs(impl.maxValueBound() - (0.68 + 7.22496)) < 1e-12);
}

// Deliberate: the pixels that the data takes are those of the scale before this recalculation, so
// that a window growing to twice its height rescales once.
void tst_stripChartBounds::decidesWithTheScaleAsItWasBefore()
{
    bareChartImpl_t impl;
    impl.updateSize(100, 100); // +- 1.2766, 39.17 pixels per unit, so 2 units take 78 pixels
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.updateSize(100, 162); // half of 156 usable pixels is 78
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(impl.yScaleFactor(), 162.0 / (2.0 * (50.0 * (2.4 / 94.0))));
    bareChartImpl_t other;
    other.updateSize(100, 100);
    other.updateSize(100, 164); // half of 158 is 79
    QCOMPARE(other.maxValueBound(), 82.0 * (2.4 / 158.0));
}

void tst_stripChartBounds::widensToTheMinimumRange()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-2.0, 99.0);
    curve->addPoint(-1.0, 101.0);
    impl.updateSize(10, 106);
    QCOMPARE(impl.minValueBound(), 100.0 - 1.272); // exactly the minimum range: not widened
    impl.minValueRange(10.0);                      // 95 to 105: 100 +- 53 * 1.2 * 10 / 100
    QCOMPARE(impl.minValueBound(), 93.64);
    QCOMPARE(impl.maxValueBound(), 106.36);
    impl.minValueRange(1.0); // 99 to 101 again
    QCOMPARE(impl.minValueBound(), 100.0 - 1.272);
}

void tst_stripChartBounds::countsPointsOnTheWindowsEdges()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoints({{std::nextafter(10.0, 9.0), 1000.0, QColor()},
                      {10.0, 40.0, QColor()},
                      {15.0, 50.0, QColor()},
                      {20.0, 60.0, QColor()},
                      {std::nextafter(20.0, 21.0), -1000.0, QColor()}});
    impl.updateSize(10, 106);
    impl.timeBounds(10.0, 20.0); // 40 to 60: 50 +- 53 * 1.2 * 20 / 100
    QVERIFY(std::abs(impl.minValueBound() - 37.28) < 1e-12);
    QVERIFY(std::abs(impl.maxValueBound() - 62.72) < 1e-12);
}

void tst_stripChartBounds::treatsAWindowWithoutPointsAsZero()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-100.0, 50.0);
    impl.updateSize(10, 106);
    QCOMPARE(impl.minValueBound(), -1.272);
    QCOMPARE(impl.maxValueBound(), 1.272);
}

// Deliberate: a curve without any point says 0.0, which counts like a point's value.
void tst_stripChartBounds::treatsAnEmptyCurveAsZero()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    impl.addCurve(new stripChartCurve_t(nullptr));
    curve->addPoint(-1.0, 50.0);
    impl.updateSize(10, 106); // 0 to 50: 25 +- 53 * 1.2 * 50 / 100
    QVERIFY(std::abs(impl.minValueBound() - -6.8) < 1e-12);
    QVERIFY(std::abs(impl.maxValueBound() - 56.8) < 1e-12);
}

void tst_stripChartBounds::spansAllCurves()
{
    bareChartImpl_t impl;
    for (const double value : {10.0, 50.0, 30.0}) {
        auto* const curve = new stripChartCurve_t(nullptr);
        impl.addCurve(curve);
        curve->addPoint(-1.0, value);
    }
    impl.updateSize(10, 106); // 10 to 50: 30 +- 25.44
    QVERIFY(std::abs(impl.minValueBound() - 4.56) < 1e-12);
    QVERIFY(std::abs(impl.maxValueBound() - 55.44) < 1e-12);
}

void tst_stripChartBounds::leavesNonFiniteValuesOutOfAutoscale()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    auto* const broken = new stripChartCurve_t(nullptr);
    impl.addCurve(broken);
    broken->addPoint(-5.0, nan_);
    curve->addPoint(-5.0, 10.0);
    curve->addPoint(-4.0, nan_);
    curve->addPoint(-3.0, inf);
    curve->addPoint(-2.0, -inf);
    curve->addPoint(-1.0, 20.0);
    impl.updateSize(10, 106);
    QCOMPARE(impl.minValueBound(), 15.0 - 6.36);
    QCOMPARE(impl.maxValueBound(), 15.0 + 6.36);
    curve->clear();
    curve->addPoint(-1.0, nan_);
    impl.recalculateBounds();
    QCOMPARE(impl.minValueBound(), -1.272);
}

// Deliberate: the usable height is signed; without room for the margins the bounds are reversed
// until a real size comes.
void tst_stripChartBounds::reversesTheBoundsBelowTwiceTheMargin()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-1.0, 10.0);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.updateSize(1, 1); // usable -5: half = 0.5 * (2.4 / -5) = -0.24
    QCOMPARE(log.take(), QStringList{boundsSignal("valueBoundsChanged", 10.24, 9.76)});
    QVERIFY(std::abs(impl.yScaleFactor() - 1.0 / -0.48) < 1e-9);
    impl.recalculateBounds();
    QCOMPARE(log.take(), QStringList());
    impl.updateSize(10, 106);
    QCOMPARE(impl.minValueBound(), 10.0 - 1.272);
    QCOMPARE(impl.maxValueBound(), 10.0 + 1.272);

    bareChartImpl_t fitting; // 9 to 11 would not fit, but -1 to 1 does
    signalLog_t<stripChartImpl_t> fittingLog(&fitting);
    fitting.updateSize(1, 1);
    fitting.updateSize(0, 0);
    QCOMPARE(fittingLog.take(), QStringList());
}

void tst_stripChartBounds::keepsTheBoundsAtAUsableHeightOfZero()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    curve->addPoint(-1.0, 10.0);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.updateSize(10, 6);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(impl.minValueBound(), -1.0);
    QCOMPARE(impl.maxValueBound(), 1.0);
    QCOMPARE(impl.yScaleFactor(), 3.0);
}

void tst_stripChartBounds::survivesExtremeValues()
{
    const double largest = std::numeric_limits<double>::max();
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    impl.updateSize(10, 106);
    curve->addPoint(-5.0, largest);
    impl.recalculateBounds();
    curve->addPoint(-4.0, -largest);
    impl.recalculateBounds();
    impl.recalculateBounds();
    QVERIFY(!std::isnan(impl.minValueBound()));
    QVERIFY(!std::isnan(impl.maxValueBound()));
    curve->clear();
    curve->addPoint(-3.0, 5.0);
    impl.recalculateBounds();
    QCOMPARE(impl.minValueBound(), 5.0 - 1.272);
    QCOMPARE(impl.maxValueBound(), 5.0 + 1.272);
}

// Up to thirty curves come and go, get points and lose them; after each step the bounds are those
// of the rule.
void tst_stripChartBounds::fitsTheCurvesThatAreThereAtRandom()
{
    random_t random(26);
    bareChartImpl_t impl;
    std::vector<std::unique_ptr<stripChartCurve_t>> outside;
    double now = 0.0;
    const auto anyOf = [&](const std::set<stripChartCurve_t*>& curves) {
        return *std::next(curves.begin(), random.integer(0, static_cast<int>(curves.size()) - 1));
    };
    impl.updateSize(100, 106); // 100 pixels usable
    double min = impl.minValueBound();
    double max = impl.maxValueBound();
    double scale = impl.yScaleFactor();
    for (int step = 0; step < 3000; ++step) {
        const std::set<stripChartCurve_t*> curves = impl.curves();
        now += 0.1;
        const int action = curves.empty() ? 0 : random.integer(0, 15);
        if (action == 0 && curves.size() < 30) {
            impl.addCurve(outside.empty() ? new stripChartCurve_t : outside.back().release());
            if (!outside.empty())
                outside.pop_back();
        } else if (action == 1 && random.chance(0.4)) {
            stripChartCurve_t* const curve = anyOf(curves);
            impl.removeCurve(curve);
            outside.emplace_back(curve);
        } else if (action == 2 && random.chance(0.4)) {
            delete anyOf(curves);
        } else if (action == 3) {
            anyOf(curves)->clear();
        } else if (!curves.empty()) {
            anyOf(curves)->addPoint(now, random.real(-5.0, 5.0) * (action == 4 ? 10.0 : 1.0));
        }
        const double from = now - (random.chance(0.2) ? 7.0 : 5.0);
        if (random.chance(0.5))
            impl.timeBounds(from, now);
        else
            impl.recalculateBounds();

        extremes_t extent;
        for (stripChartCurve_t* const curve : impl.curves()) {
            const auto& points = record(*curve).points;
            if (points.empty())
                extent.include(0.0);
            for (const auto& point : points) {
                if (point.time >= impl.minTimeBound() && point.time <= impl.maxTimeBound())
                    extent.include(point.value);
            }
        }
        if (extent.min > extent.max)
            extent = {0.0, 0.0};
        if (extent.max - extent.min < 2.0) {
            const double middle = (extent.max + extent.min) * 0.5;
            extent = {middle - 1.0, middle + 1.0};
        }
        const double range = extent.max - extent.min;
        if (extent.min < min || extent.max > max || std::trunc(scale * range) < 50.0) {
            const double middle = (extent.max + extent.min) * 0.5;
            const double half = 0.5 * 106.0 * (1.2 * range / 100.0);
            min = middle - half;
            max = middle + half;
        }
        scale = 106.0 / (max - min);
        QVERIFY2(impl.minValueBound() == min && impl.maxValueBound() == max,
                 qPrintable(
                     QStringLiteral("step %1: %2")
                         .arg(step)
                         .arg(boundsSignal("bounds", impl.minValueBound(), impl.maxValueBound()))));
    }
}

void tst_stripChartBounds::appliesTheMarginAtTheNextRecalculation()
{
    bareChartImpl_t impl;
    impl.updateSize(10, 106);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.margin(28); // 50 pixels usable
    QCOMPARE(impl.margin(), 28u);
    QCOMPARE(log.take(), QStringList());
    impl.minValueRange(4.0); // half = 53 * 1.2 * 4 / 50
    QVERIFY(std::abs(impl.maxValueBound() - 5.088) < 1e-12);
}

void tst_stripChartBounds::announcesAnotherCanvasColourOnce()
{
    bareChartImpl_t impl;
    QSignalSpy spy(&impl, &stripChartImpl_t::colorChanged);
    impl.canvasColor(Qt::red);
    impl.canvasColor(Qt::red);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(impl.canvasColor(), QColor(Qt::red));
}

void tst_stripChartBounds::keepsTheCanvasColourSilently()
{
    bareChartImpl_t impl;
    QSignalSpy spy(&impl, &stripChartImpl_t::colorChanged);
    impl.canvasColor(QColor(impl.canvasColor()));
    QCOMPARE(spy.size(), 0);
}

ZORBIN_TEST_MAIN(tst_stripChartBounds, QApplication)
#include "tst_stripChartBounds.moc"
