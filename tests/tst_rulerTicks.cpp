#include "pictures.h"
#include "plainRuler.h"
#include "rulerStage.h"
#include "testCase.h"

#include <QApplication>
#include <limits>
#include <ruler.h>
#include <vector>

using namespace ruler_tests;

Q_DECLARE_METATYPE(tickTable_t)

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

/// Which ticks a ruler chooses, where it lays them, and how it measures their labels.
class tst_rulerTicks : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Ticks at a given interval.
    void laysTicksAtMultiples_data();
    void laysTicksAtMultiples();
    void laysEveryTickUpToAMillion();
    void laysTicksAtZeroUntilItIsShown();
    void fitsAllLabelsUntilItIsShown();
    void laysNoTicks_data();
    void laysNoTicks();
    void letsLabelsTouch();
    void letsLabelsOverlapNearTheStart();
    void measuresLabelsAmongThousands();
    void measuresLabelsAlongTheAxis_data();
    void measuresLabelsAlongTheAxis();
    void ignoresLabelsWithoutAnEdge();

    // The search.
    void takesTheFirstIntervalOfTwoPixels_data();
    void takesTheFirstIntervalOfTwoPixels();
    void skipsIntervalsWhoseLabelsOverlap();
    void fallsBackToTheFirstStepOfTwoPixels();
    void triesLabelsWithTheDecimalsOfTheIntervalBefore();
    void findsTheSameTicksFromEveryStep();
    void takesANewTableWithTheNextTicks();
    void triesTheTableOnceWithoutAUsableBase_data();
    void triesTheTableOnceWithoutAUsableBase();
    void climbsSmallSteps();
    void endsSoonWithABaseJustAboveOne_data();
    void endsSoonWithABaseJustAboveOne();
    void searchesInVainOnlyOnce();
    void keepsItsScaleForTheTicksOfAnotherEdge_data();
    void keepsItsScaleForTheTicksOfAnotherEdge();
    void dividesIntervalsByMinorTicks_data();
    void dividesIntervalsByMinorTicks();
    void drawsDenseMinorTicks_data();
    void drawsDenseMinorTicks();
    void drawsDenseMajorTicks_data();
    void drawsDenseMajorTicks();
    void drawsDenseTicksWhereDoublesAreCoarse();
    void drawsOnlyMajorLabels();
};

void tst_rulerTicks::laysTicksAtMultiples_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("startTick");
    QTest::addColumn<double>("endTick");
    QTest::addColumn<QStringList>("wanted"); // at 10 pixels a unit
    QTest::newRow("whole") << 0.0 << 10.0 << 5.0 << 0.0 << 10.0
                           << QStringList{"0:0", "50:5", "100:10"};
    QTest::newRow("between multiples")
        << 0.5 << 10.5 << 4.0 << 4.0 << 8.0 << QStringList{"35:4", "75:8"};
    QTest::newRow("below zero") << -7.0 << 3.0 << 5.0 << -5.0 << 0.0
                                << QStringList{"20:-5", "70:0"};
    QTest::newRow("decreasing") << 10.5 << 0.5 << 4.0 << 8.0 << 4.0 << QStringList{"25:8", "65:4"};
    QTest::newRow("one multiple") << 1.0 << 11.0 << 7.0 << 7.0 << 7.0 << QStringList{"60:7"};
    // Deliberate: the counting of intervals knows no direction.
    QTest::newRow("no multiple") << 1.0 << 11.0 << 20.0 << 20.0 << 0.0
                                 << QStringList{"190:20", "390:40"};
}

void tst_rulerTicks::laysTicksAtMultiples()
{
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(double, interval);
    stage_t stage(QSize(100, 60));
    stage.ruler.labels = labels_t::NUMBERS;
    stage.ruler.range(start, end);
    ruler_t::fit_t fit;
    fit.ticks.resize(9);
    stage.ruler.calculateFit(interval, fit);
    QTEST(fit.startTick, "startTick");
    QTEST(fit.endTick, "endTick");
    QStringList ticks;
    for (const ruler_t::tick_t& tick : fit.ticks) {
        ticks << QStringLiteral("%1:%2").arg(tick.pos).arg(QString::fromStdString(tick.label));
        QCOMPARE(tick.type, ruler_t::tick_t::TICK_MINOR);
    }
    QTEST(ticks, "wanted");
}

void tst_rulerTicks::laysEveryTickUpToAMillion()
{
    stage_t stage(QSize(100, 60));
    stage.ruler.range(0.0, 999999.0);
    ruler_t::fit_t fit;
    stage.ruler.calculateFit(1.0, fit);
    QCOMPARE(fit.ticks.size(), std::size_t(1000000));
    QCOMPARE(fit.ticks.front().pos, 0u);
    QCOMPARE(fit.ticks[500000].pos, 50u);
    QCOMPARE(fit.ticks.back().pos, 100u);
    stage.ruler.range(0.0, 1000000.0);
    stage.ruler.calculateFit(1.0, fit);
    QCOMPARE(fit.ticks.size(), std::size_t(0));
    QCOMPARE(fit.startTick, 0.0);
    QCOMPARE(fit.endTick, 1000000.0);
}

void tst_rulerTicks::laysTicksAtZeroUntilItIsShown()
{
    testRuler_t ruler(nullptr);
    ruler.labels = labels_t::NUMBERS;
    ruler.resize(100, 60);
    ruler.range(0.0, 10.0);
    ruler_t::fit_t fit;
    const auto ticks = [&ruler, &fit] {
        ruler.calculateFit(5.0, fit);
        QStringList texts;
        for (const ruler_t::tick_t& tick : fit.ticks)
            texts << QStringLiteral("%1:%2").arg(tick.pos).arg(QString::fromStdString(tick.label));
        return texts;
    };
    QCOMPARE(ticks(), QStringList({"0:0", "0:5", "0:10"}));
    ruler.axisLocation(ruler_t::LEFT);
    ruler.range(0.0, 12.0);
    QCOMPARE(ticks(), QStringList({"0:0", "0:5", "0:10"}));
    snapshot(ruler);
    QCOMPARE(ticks(), QStringList({"0:0", "25:5", "50:10"}));
}

// Labels are tried where calculateFit() lays them.
void tst_rulerTicks::fitsAllLabelsUntilItIsShown()
{
    testRuler_t ruler(nullptr);
    ruler.labels = labels_t::SAME;
    ruler.same = "0000000000";
    ruler.resize(500, 60);
    ruler.range(0.0, 500.0);
    QVERIFY(ruler.labelFit(5.0));
    snapshot(ruler);
    QVERIFY(!ruler.labelFit(5.0));
}

void tst_rulerTicks::laysNoTicks_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("startTick");
    QTest::addColumn<double>("endTick");
    QTest::newRow("zero interval") << 0.0 << 100.0 << 0.0 << nan_ << nan_;
    QTest::newRow("negative interval") << 0.0 << 100.0 << -1.0 << 0.0 << 100.0;
    QTest::newRow("infinite interval") << 0.0 << 100.0 << inf << nan_ << nan_;
    QTest::newRow("NaN interval") << 0.0 << 100.0 << nan_ << nan_ << nan_;
    QTest::newRow("denormal interval") << 0.0 << 100.0 << 5e-324 << 0.0 << inf;
    QTest::newRow("more than a million") << 0.0 << 100.0 << 5e-5 << 0.0 << 100.0;
    QTest::newRow("2^32 - 1 steps") << 0.0 << 4294967295.0 << 1.0 << 0.0 << 4294967295.0;
    QTest::newRow("NaN start") << nan_ << 1.0 << 1.0 << nan_ << nan_;
    QTest::newRow("NaN end") << 0.0 << nan_ << 1.0 << 0.0 << nan_;
    QTest::newRow("infinite range") << -1e308 << 1e308 << 1e308 << -1e308 << 1e308;
}

void tst_rulerTicks::laysNoTicks()
{
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(double, interval);
    stage_t stage(QSize(100, 60));
    stage.ruler.labels = labels_t::SAME; // would overlap
    stage.ruler.range(start, end);
    ruler_t::fit_t fit;
    fit.ticks.resize(3);
    stage.ruler.calculateFit(interval, fit);
    QVERIFY(fit.ticks.empty());
    QTEST(fit.startTick, "startTick");
    QTEST(fit.endTick, "endTick");
    QVERIFY(stage.ruler.labelFit(interval));
}

void tst_rulerTicks::letsLabelsTouch()
{
    stage_t stage(QSize(500, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 500.0);
    const int half = halfWidth(stage.ruler, "8");
    QVERIFY(half > 1);
    QVERIFY(stage.ruler.labelFit(2.0 * half));
    QVERIFY(!stage.ruler.labelFit(2.0 * half - 1.0));
}

// Deliberate: a label that begins before the start of the axis never overlaps the one before it.
void tst_rulerTicks::letsLabelsOverlapNearTheStart()
{
    stage_t stage(QSize(500, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.same = "0000000000";
    const double half = halfWidth(stage.ruler, "0000000000");
    stage.ruler.range(0.0, 500.0);
    QVERIFY(!stage.ruler.labelFit(half / 2.0));
    stage.ruler.resize(static_cast<int>(half) - 1, 60);
    stage.ruler.range(0.0, half - 1.0);
    QVERIFY(stage.ruler.labelFit(half / 4.0));
}

void tst_rulerTicks::measuresLabelsAmongThousands()
{
    stage_t worn;
    worn.ruler.labels = labels_t::TIMES;
    for (int i = 0; i < 400; ++i) {
        worn.ruler.range(100.0 * i, 100.0 * i + 100.0);
        worn.ruler.calculateTickPlacement();
    }
    stage_t fresh;
    fresh.ruler.labels = labels_t::TIMES;
    fresh.ruler.range(39900.0, 40000.0);
    const QImage picture = snapshot(fresh.ruler);
    QVERIFY(picture != blank(fresh.ruler));
    QCOMPARE(firstDifference(snapshot(worn.ruler), picture), QString());
}

void tst_rulerTicks::measuresLabelsAlongTheAxis_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("isWidth");
    QTest::newRow("bottom, horizontal") << int(ruler_t::BOTTOM) << int(Qt::Horizontal) << true;
    QTest::newRow("top, horizontal") << int(ruler_t::TOP) << int(Qt::Horizontal) << true;
    QTest::newRow("bottom, vertical") << int(ruler_t::BOTTOM) << int(Qt::Vertical) << false;
    QTest::newRow("left, horizontal") << int(ruler_t::LEFT) << int(Qt::Horizontal) << false;
    QTest::newRow("right, horizontal") << int(ruler_t::RIGHT) << int(Qt::Horizontal) << false;
    QTest::newRow("right, vertical") << int(ruler_t::RIGHT) << int(Qt::Vertical) << true;
}

void tst_rulerTicks::measuresLabelsAlongTheAxis()
{
    QFETCH(int, location);
    QFETCH(int, orientation);
    QFETCH(bool, isWidth);
    stage_t stage(QSize(500, 500));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.same = "00000000";
    stage.ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    stage.ruler.textOrientation(static_cast<Qt::Orientation>(orientation));
    stage.ruler.range(0.0, 500.0);
    const QRect rect = stage.ruler.fontMetrics().boundingRect(QRect(), Qt::AlignCenter, "00000000");
    const int extent = ((isWidth ? rect.width() : rect.height()) + 1) / 2 * 2;
    QVERIFY(stage.ruler.labelFit(extent));
    QVERIFY(!stage.ruler.labelFit(extent - 1));
}

void tst_rulerTicks::ignoresLabelsWithoutAnEdge()
{
    stage_t stage(QSize(500, 500));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 500.0);
    QVERIFY(!stage.ruler.labelFit(2.0));
    stage.ruler.axisLocation(nowhere);
    QVERIFY(stage.ruler.labelFit(2.0));
}

void tst_rulerTicks::takesTheFirstIntervalOfTwoPixels_data()
{
    QTest::addColumn<tickTable_t>("table");
    QTest::addColumn<double>("base");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("distance"); // of the major ticks on 400 pixels
    const tickTable_t decimal = {{1.0, 0}, {2.0, 0}, {2.5, 0}, {5.0, 0}};
    QTest::newRow("5 x 0.1") << decimal << 10.0 << 80.0 << 2.5;
    QTest::newRow("exactly two") << decimal << 10.0 << 200.0 << 2.0;
    QTest::newRow("just below two") << decimal << 10.0 << 201.0 << 800.0 / 201.0;
    QTest::newRow("2.5 x 1") << decimal << 10.0 << 400.0 << 2.0;
    QTest::newRow("2.5") << decimal << 10.0 << 480.0 << 2.5 * 400.0 / 480.0;
    QTest::newRow("up from one") << decimal << 10.0 << 40000.0 << 2.0;
    QTest::newRow("in the order given") << tickTable_t{{5.0, 0}, {3.0, 0}} << 10.0 << 400.0 << 5.0;
    QTest::newRow("binary") << tickTable_t{{3.0, 0}} << 2.0 << 400.0 << 3.0;
    QTest::newRow("a base with a fraction") << tickTable_t{{1.0, 0}} << 1.5 << 400.0 << 2.25;
    QTest::newRow("useless entries")
        << tickTable_t{{0.0, 0}, {-1.0, 0}, {nan_, 0}, {7.0, 0}} << 10.0 << 400.0 << 7.0;
}

void tst_rulerTicks::takesTheFirstIntervalOfTwoPixels()
{
    QFETCH(tickTable_t, table);
    QFETCH(double, base);
    QFETCH(double, end);
    QFETCH(double, distance);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable(table, base);
    stage.ruler.range(0.0, end);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, distance + 1e-12));
}

void tst_rulerTicks::skipsIntervalsWhoseLabelsOverlap()
{
    stage_t stage(QSize(512, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.tickTable({{1.0, 0}}, 2.0);
    stage.ruler.showText(false); // measured nevertheless
    stage.ruler.range(0.0, 512.0);
    const int needed = 2 * halfWidth(stage.ruler, "8");
    int distance = 2;
    while (distance < needed)
        distance *= 2;
    QCOMPARE(majorColumns(stage.ruler), columns(0, 512, distance));
}

// Deliberate: any entry counts for the step, and then the first one is taken, though it may be
// narrower than two pixels at that step.
void tst_rulerTicks::fallsBackToTheFirstStepOfTwoPixels()
{
    stage_t stage(QSize(750, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    // So wide that labels overlap at distances of 285 pixels and begin behind the start there.
    while (halfWidth(ruler, QString::fromStdString(ruler.same)) < 150)
        ruler.same += "8";
    QVERIFY(halfWidth(ruler, QString::fromStdString(ruler.same)) < 285);
    ruler.tickTable({{1.0, 0}, {1.9, 0}}, 10.0);
    ruler.range(0.0, 500.0); // 1.5 pixels a unit
    drawing_t wanted(ruler);
    wanted.fill(0, 0, 750, 1);
    for (const int column : columns(0, 750, 1.5))
        wanted.fill(column, 0, 1, 9);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString()); // without labels
    ruler.tickTable({{1.0, 2}, {1.9, 0}}, 10.0);
    ruler.calculateTickPlacement();
    wanted.fill(0, 0, 750, 5);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
}

// Deliberate: labels are made while an interval is still being tried.
void tst_rulerTicks::triesLabelsWithTheDecimalsOfTheIntervalBefore()
{
    stage_t stage(QSize(400, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::NUMBERS;
    ruler.tickLength(0);
    ruler.tickTable({{1.0, 0}}, 1.0);
    ruler.range(0.0, 400.0);
    ruler.calculateTickPlacement(); // 1 is chosen, or nothing
    ruler.tickTable({{0.25, 0}}, 1.0);
    ruler.range(-0.1, 0.9);
    const auto labelled = [&ruler](const QStringList& texts) {
        drawing_t wanted(ruler);
        for (int i = 0; i < texts.size(); ++i) {
            const int width = ruler.fontMetrics().boundingRect(QRect(), 0, texts[i]).width();
            wanted.write(40 + 100 * i - width / 2, 5, texts[i]);
        }
        return wanted.picture;
    };
    QCOMPARE(firstDifference(snapshot(ruler), labelled({"0", "0", "0", "1"})), QString());
    QCOMPARE(ruler.numDecimals(), 2u);
    ruler.calculateTickPlacement();
    QCOMPARE(firstDifference(snapshot(ruler), labelled({"0", "0.25", "0.5", "0.75"})), QString());
}

void tst_rulerTicks::findsTheSameTicksFromEveryStep()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.labels = labels_t::TIMES;
    stage.ruler.range(3.0, 80.0);
    stage.ruler.calculateTickPlacement();
    const QImage wanted = snapshot(stage.ruler);
    for (const int step : {-320, -30, -1, 0, 1, 30, 320}) {
        stage.ruler.step(step);
        stage.ruler.calculateTickPlacement();
        QCOMPARE(firstDifference(snapshot(stage.ruler), wanted), QString());
    }
}

void tst_rulerTicks::takesANewTableWithTheNextTicks()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{4.0, 0}}, 10.0);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 4));
    QCOMPARE(stage.paintsAfter([](ruler_t& ruler) { ruler.tickTable({{7.0, 0}}, 10.0); }), 0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 4));
    stage.ruler.spacing(6);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 7));
    stage.ruler.tickTable({}, 10.0);
    stage.ruler.spacing(7);
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>());
}

void tst_rulerTicks::triesTheTableOnceWithoutAUsableBase_data()
{
    QTest::addColumn<double>("base");
    QTest::newRow("one") << 1.0;
    QTest::newRow("a half") << 0.5;
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -10.0;
    QTest::newRow("infinite") << inf;
    QTest::newRow("NaN") << nan_;
}

void tst_rulerTicks::triesTheTableOnceWithoutAUsableBase()
{
    QFETCH(double, base);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{1.0, 0}, {9.0, 0}}, base);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 9));
    stage.ruler.range(0.0, 4000.0); // 0.9 pixels
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>());
    stage.ruler.range(0.0, 0.5); // the first entry is wider than the range
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>{0});
}

// A million powers of the base are between the first interval tried and the one that is found.
void tst_rulerTicks::climbsSmallSteps()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{1e6, 0}}, 1.00001);
    stage.ruler.range(0.0, 100.0);
    const std::vector<int> found = majorColumns(stage.ruler);
    QCOMPARE(found, columns(0, 400, 2.0 + 1e-5)); // the first one from 2 pixels on
    stage.ruler.step(-10000000);
    stage.ruler.calculateTickPlacement();
    QCOMPARE(majorColumns(stage.ruler), found);
}

void tst_rulerTicks::endsSoonWithABaseJustAboveOne_data()
{
    QTest::addColumn<double>("base");
    for (const double excess : {1e-4, 1e-5, 1e-6, 1e-9, 1e-12})
        QTest::newRow(QByteArray::number(excess).constData()) << 1.0 + excess;
}

// To try all intervals, millions of labels would have to be made.
void tst_rulerTicks::endsSoonWithABaseJustAboveOne()
{
    QFETCH(double, base);
    stage_t stage(QSize(500, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.same = "12345678";
    ruler.tickTable({{1.0, 0}, {2.0, 0}, {2.5, 0}, {5.0, 0}}, base);
    ruler.range(0.0, 1000.0);
    ruler.labelsMade = 0;
    snapshot(ruler);
    QVERIFY2(ruler.labelsMade < 100000, qPrintable(QString::number(ruler.labelsMade)));
    if (base < 1.0 + 1e-8)
        return; // no power that a step can name makes the table's intervals wide enough
    const std::vector<int> found = majorColumns(ruler);
    QVERIFY(found.size() > 2);
    const int needed = 2 * halfWidth(ruler, QString::fromStdString(ruler.same));
    QVERIFY(found[1] - found[0] >= needed - 1); // a position's fraction is dropped
    QVERIFY(found[1] - found[0] <= needed * 1.02 + 1.0);
}

void tst_rulerTicks::searchesInVainOnlyOnce()
{
    stage_t stage(QSize(400, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.tickTable({{1.0, 0}}, 1.0);
    ruler.range(0.0, 100.0);
    ruler.labelsMade = 0;
    QCOMPARE(majorColumns(ruler), std::vector<int>()); // overlap every 4 pixels
    const int needed = ruler.labelsMade;
    QVERIFY(needed > 0);
    QCOMPARE(majorColumns(ruler), std::vector<int>());
    QCOMPARE(ruler.labelsMade, needed);
    // What takes effect with the next search, does so at the next paint.
    ruler.tickTable({{25.0, 0}}, 1.0);
    QCOMPARE(majorColumns(ruler), columns(0, 400, 100));
    ruler.tickTable({{1.0, 0}}, 0.5);
    ruler.range(0.0, 101.0);
    QCOMPARE(majorColumns(ruler), std::vector<int>());
    ruler.step(-5); // 32
    QCOMPARE(majorColumns(ruler), columns(0, 400, 32 * 400.0 / 101.0));
}

void tst_rulerTicks::keepsItsScaleForTheTicksOfAnotherEdge_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    // The length falls to a tenth, or grows tenfold, and the scale stays.
    QTest::newRow("shorter") << QSize(400, 40) << int(ruler_t::BOTTOM) << int(ruler_t::RIGHT);
    QTest::newRow("longer") << QSize(40, 400) << int(ruler_t::RIGHT) << int(ruler_t::BOTTOM);
    QTest::newRow("no edge") << QSize(400, 40) << int(ruler_t::BOTTOM) << int(nowhere);
}

void tst_rulerTicks::keepsItsScaleForTheTicksOfAnotherEdge()
{
    QFETCH(QSize, size);
    QFETCH(int, from);
    QFETCH(int, to);
    stage_t stage(size);
    testRuler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(from));
    ruler.range(0.0, 100.0); // 4 pixels a unit
    ruler.labels = labels_t::BY_DECIMALS;
    ruler.labelsMade = 0;
    ruler.axisLocation(static_cast<ruler_t::location_t>(to));
    ruler.calculateTickPlacement();
    QVERIFY(ruler.labelsMade > 0);
    plainRuler_t plain(ruler.font());
    plain.textFromValue = [&plain](double) { return std::string(plain.numDecimals() + 1, '1'); };
    plain.setSize(size);
    plain.setLocation(static_cast<ruler_t::location_t>(from));
    plain.setRange(0.0, 100.0);
    plain.setLocation(static_cast<ruler_t::location_t>(to));
    plain.prepareToPaint();
    QVERIFY(plain.ticks().size() > 40);
    QCOMPARE(firstDifference(snapshot(ruler), plain.drawnOn(blank(ruler), ruler.palette())),
             QString());
}

void tst_rulerTicks::dividesIntervalsByMinorTicks_data()
{
    QTest::addColumn<unsigned>("numMinor");
    QTest::addColumn<double>("distance"); // of all ticks on 400 pixels, 20 of them a major one
    QTest::newRow("none") << 0u << 20.0;
    QTest::newRow("one") << 1u << 20.0;
    QTest::newRow("two") << 2u << 10.0;
    QTest::newRow("three") << 3u << 20.0 / 3.0;
    QTest::newRow("ten") << 10u << 2.0;
    QTest::newRow("one a pixel") << 20u << 1.0;
    QTest::newRow("two a pixel") << 40u << 1.0;
    QTest::newRow("a million") << 1000000u << 1.0;
    QTest::newRow("as many as can be") << 4294967295u << 1.0;
}

void tst_rulerTicks::dividesIntervalsByMinorTicks()
{
    QFETCH(unsigned, numMinor);
    QFETCH(double, distance);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{2.0, numMinor}}, 1.0);
    stage.ruler.range(0.0, 40.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 20));
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, distance + 1e-9));
    stage.ruler.showMinorTicks(false);
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, 20));
}

void tst_rulerTicks::drawsDenseMinorTicks_data()
{
    QTest::addColumn<double>("major"); // pixels
    for (const double major : {2.0, 2.5, 4.0, 4.9, 5.0})
        QTest::newRow(QByteArray::number(major).constData()) << major;
}

// Ten minor ticks to such an interval are two a pixel and more.
void tst_rulerTicks::drawsDenseMinorTicks()
{
    QFETCH(double, major);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{major, 10}}, 1.0);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, major));
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, 1.0));
}

void tst_rulerTicks::drawsDenseMajorTicks_data()
{
    QTest::addColumn<double>("interval"); // of the first entry
    QTest::newRow("two a pixel") << 0.5;
    QTest::newRow("a hundred a pixel") << 0.01;
    QTest::newRow("billions a pixel") << 1e-9;
    QTest::newRow("more than doubles can count") << 1e-17;
    QTest::newRow("more than integers can count") << 1e-25;
    QTest::newRow("nearly the narrowest") << 1e-300;
}

// The fallback takes the first entry, however narrow, at the step at which any had two pixels.
void tst_rulerTicks::drawsDenseMajorTicks()
{
    QFETCH(double, interval);
    stage_t stage(QSize(300, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.tickTable({{interval, 10}, {3.0, 0}}, 1e4 / interval); // 3 pixels, then too many
    ruler.range(0.5, 300.5);
    drawing_t wanted(ruler);
    wanted.fill(0, 0, 300, 9);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
}

// Among ticks as near as these only every other value can be told from the next.
void tst_rulerTicks::drawsDenseTicksWhereDoublesAreCoarse()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{8.0, 1000000}}, 1.0);
    for (const double sign : {1.0, -1.0}) {
        stage.ruler.range(sign * 1e16, sign * 1e16 + 16.0); // whose neighbours are 2 away
        QCOMPARE(allColumns(stage.ruler), columns(0, 400, 50.0));
        stage.ruler.range(sign * 1e16 + 16.0, sign * 1e16);
        QCOMPARE(allColumns(stage.ruler), columns(0, 400, 50.0));
    }
}

void tst_rulerTicks::drawsOnlyMajorLabels()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 40.0);
    const QImage withMinor = snapshot(stage.ruler);
    stage.ruler.showMinorTicks(false);
    const QImage without = snapshot(stage.ruler);
    const QRect below(0, 9, 400, 51);
    QCOMPARE(firstDifference(withMinor.copy(below), without.copy(below)), QString());
    QVERIFY(withMinor != without);
}

ZORBIN_TEST_MAIN(tst_rulerTicks, QApplication)
#include "tst_rulerTicks.moc"
