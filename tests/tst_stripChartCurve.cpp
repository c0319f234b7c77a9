#include "plainCurve.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "stripChartCurve.h"
#include "stripChartCurveRenderer.h"
#include "testCase.h"

#include <QPointer>
#include <QSignalSpy>
#include <QThread>
#include <cmath>
#include <limits>
#include <memory>

using namespace zorbin_qt_gui;
using point_t = stripChartCurve_t::point_t;
using points_t = std::deque<point_t>;

static const double largest = std::numeric_limits<double>::max();
static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

static QVector<double> timesOf(stripChartCurve_t& curve)
{
    QVector<double> times;
    for (const point_t& point : record(curve).points)
        times.append(point.time);
    return times;
}

class tst_stripChartCurve : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void pointsCarryTimeValueAndColour();
    void pointsAreOrderedByTimeAlone();
    void isReachedByStringBasedConnections();
    void takesBatchesFromOtherThreads();
    void ownsItsRenderer();

    void dropsPointsThatAreNotLater_data();
    void dropsPointsThatAreNotLater();
    void keepsTheColourOfEachPoint();
    void callsTheHooksOnceABatch();
    void callsNoHookWhenNothingIsKept();
    void saysWhereABatchJoins_data();
    void saysWhereABatchJoins();

    void keepsTheDataDuration();
    void appliesTheDataDurationAtTheNextPoint();
    void takesAnyDataDuration_data();
    void takesAnyDataDuration();

    void clearsAsAPruneOfEverything();
    void clearsNothingSilently();
    void keepsTheDurationAcrossAClear();
    void clearsHugeTimes_data();
    void clearsHugeTimes();

    void announcesAnotherColourOnce();
    void storesTheGapThreshold();

    void findsTheExtremesOfAll();
    void findsTheExtremesInATimeRange_data();
    void findsTheExtremesInATimeRange();
    void countsBlocksThatOverlapWhole();
    void hasNoExtremeAtAnInstantInsideABlock();
    void leavesNonFiniteValuesOutOfTheExtremes();
    void findsTimesByValue_data();
    void findsTimesByValue();

    void doesAsThePlainModel_data();
    void doesAsThePlainModel();
    void answersOnTheFullSegmentSizeAsThePlainModel();
};

void tst_stripChartCurve::isEmptyAtFirst()
{
    stripChartCurve_t curve;
    QCOMPARE(curve.timeMin(), 0.0);
    QCOMPARE(curve.timeMax(), 0.0);
    QCOMPARE(curve.valueMin(), 0.0);
    QCOMPARE(curve.valueMax(), 0.0);
    QCOMPARE(curve.valueMin(-1.0, 1.0), 0.0);
    QCOMPARE(curve.valueMax(-1.0, 1.0), 0.0);
    QCOMPARE(curve.timeMin(-1.0, 1.0), 0.0);
    QCOMPARE(curve.timeMax(-1.0, 1.0), 0.0);
    QVERIFY(!curve.color().isValid());

    const stripChartCurveData_t& data = record(curve);
    QVERIFY(data.points.empty());
    QVERIFY(!data.color.isValid());
    QCOMPARE(data.duration, 7200.0);
    QCOMPARE(data.threshold, 1.1);
    QVERIFY(data.segments.empty());
    QCOMPARE(data.nextSegmentId, 0u);
    QCOMPARE(data.incomingCount, 0);
    QCOMPARE(data.outgoingCount, 0);
    QCOMPARE(data.renderer, curve.renderer());
    QCOMPARE(data.parent, &curve);
}

void tst_stripChartCurve::pointsCarryTimeValueAndColour()
{
    const point_t point(1.5, -2.5, Qt::red);
    const point_t copy = point;
    QCOMPARE(copy.time, 1.5);
    QCOMPARE(copy.value, -2.5);
    QCOMPARE(copy.color, QColor(Qt::red));
}

void tst_stripChartCurve::pointsAreOrderedByTimeAlone()
{
    QVERIFY(point_t(1.0, 9.0, Qt::red) < point_t(2.0, 0.0, Qt::blue));
    QVERIFY(!(point_t(1.0, 0.0, Qt::red) < point_t(1.0, 9.0, Qt::blue)));
    QVERIFY(!(point_t(2.0, 0.0, Qt::red) < point_t(1.0, 9.0, Qt::red)));
}

// Has the signals that an application might connect to a curve's slots by name.
class source_t : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void sample(double time_, double value_);
    void coloredSample(double time_, double value_, QColor color_);
    void batch(std::deque<point_t> points_);
    void look(QColor color_);
    void reset();
};

void tst_stripChartCurve::isReachedByStringBasedConnections()
{
    stripChartCurve_t curve;
    source_t source;
    QVERIFY(
        connect(&source, SIGNAL(sample(double, double)), &curve, SLOT(addPoint(double, double))));
    QVERIFY(connect(&source, SIGNAL(coloredSample(double, double, QColor)), &curve,
                    SLOT(addPoint(double, double, QColor))));
    QVERIFY(connect(&source, SIGNAL(batch(std::deque<point_t>)), &curve,
                    SLOT(addPoints(std::deque<point_t>))));
    QVERIFY(connect(&source, SIGNAL(look(QColor)), &curve, SLOT(color(QColor))));
    QVERIFY(connect(&source, SIGNAL(reset()), &curve, SLOT(clear())));
    QSignalSpy colors(&curve, SIGNAL(colorChanged(QColor)));

    Q_EMIT source.sample(1.0, 5.0);
    Q_EMIT source.coloredSample(2.0, 6.0, Qt::green);
    Q_EMIT source.batch({point_t(3.0, 7.0, Qt::red), point_t(4.0, 8.0, Qt::red)});
    Q_EMIT source.look(Qt::yellow);
    QCOMPARE(timesOf(curve), (QVector<double>{1.0, 2.0, 3.0, 4.0}));
    QVERIFY(!record(curve).points[0].color.isValid());
    QCOMPARE(record(curve).points[1].color, QColor(Qt::green));
    QCOMPARE(colors.size(), 1);
    Q_EMIT source.reset();
    QVERIFY(timesOf(curve).isEmpty());
}

void tst_stripChartCurve::takesBatchesFromOtherThreads()
{
    stripChartCurve_t curve;
    source_t source;
    connect(&source, &source_t::batch, &curve, &stripChartCurve_t::addPoints, Qt::QueuedConnection);
    const std::unique_ptr<QThread> thread(QThread::create([&source] {
        Q_EMIT source.batch({point_t(1.0, 5.0, Qt::red), point_t(2.0, 6.0, Qt::red)});
    }));
    thread->start();
    QVERIFY(thread->wait());
    QVERIFY(timesOf(curve).isEmpty());
    QTRY_COMPARE(timesOf(curve), (QVector<double>{1.0, 2.0}));
    QCOMPARE(record(curve).points[1].color, QColor(Qt::red));
}

void tst_stripChartCurve::ownsItsRenderer()
{
    auto curve = std::make_unique<stripChartCurve_t>(nullptr);
    const QPointer<stripChartCurveRenderer_t> renderer = curve->renderer();
    QVERIFY(renderer);
    curve.reset();
    QVERIFY(!renderer);
}

void tst_stripChartCurve::dropsPointsThatAreNotLater_data()
{
    QTest::addColumn<QVector<double>>("before");
    QTest::addColumn<QVector<double>>("batch");
    QTest::addColumn<QVector<double>>("kept");
    using v = QVector<double>;

    QTest::newRow("in order") << v{} << v{1, 2, 3} << v{1, 2, 3};
    QTest::newRow("one earlier than the first") << v{} << v{5, 4, 6} << v{5, 6};
    QTest::newRow("same instant twice") << v{} << v{5, 5} << v{5};
    QTest::newRow("same instant as the newest") << v{1, 5} << v{5} << v{1, 5};
    QTest::newRow("just later than the newest")
        << v{5} << v{std::nextafter(5.0, 6.0)} << v{5, std::nextafter(5.0, 6.0)};
    QTest::newRow("reversed") << v{} << v{3, 2, 1} << v{3};
    QTest::newRow("all earlier than the newest") << v{10} << v{1, 2, 3} << v{10};
    QTest::newRow("empty") << v{10} << v{} << v{10};
    QTest::newRow("negative times") << v{} << v{-3, -2, -2.5} << v{-3, -2};
    QTest::newRow("NaN first") << v{} << v{nan_, 1} << v{1};
    QTest::newRow("infinity first") << v{} << v{inf, 1, 2} << v{1, 2};
    QTest::newRow("minus infinity first") << v{} << v{-inf, 1} << v{1};
    QTest::newRow("only NaN") << v{} << v{nan_, nan_} << v{};
    QTest::newRow("NaN later") << v{1} << v{nan_, 2, nan_, 3} << v{1, 2, 3};
    QTest::newRow("infinity later") << v{1} << v{inf, 2} << v{1, 2};
    QTest::newRow("near 1e17") << v{1e17} << v{1e17 + 1, 1e17 + 16} << v{1e17, 1e17 + 16};
}

void tst_stripChartCurve::dropsPointsThatAreNotLater()
{
    QFETCH(QVector<double>, before);
    QFETCH(QVector<double>, batch);
    QFETCH(QVector<double>, kept);
    stripChartCurve_t inBatch;
    stripChartCurve_t oneByOne;
    for (const double time : before) {
        inBatch.addPoint(time, 0.0);
        oneByOne.addPoint(time, 0.0);
    }

    points_t points;
    for (const double time : batch) {
        points.emplace_back(time, 0.0, QColor());
        oneByOne.addPoint(time, 0.0);
    }
    inBatch.addPoints(points);
    QCOMPARE(timesOf(inBatch), kept);
    QCOMPARE(timesOf(oneByOne), kept);
}

void tst_stripChartCurve::keepsTheColourOfEachPoint()
{
    stripChartCurve_t curve;
    curve.color(Qt::cyan);
    curve.addPoint(1.0, 0.0);
    curve.addPoint(2.0, 0.0, QColor(1, 2, 3, 4));
    curve.addPoints({point_t(3.0, 0.0, Qt::red)});
    QCOMPARE(record(curve).points[0].color, QColor());
    QCOMPARE(record(curve).points[1].color, QColor(1, 2, 3, 4));
    QCOMPARE(record(curve).points[2].color, QColor(Qt::red));
}

void tst_stripChartCurve::callsTheHooksOnceABatch()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 1000);
    curve.addPoints({point_t(1, 0, {}), point_t(2, 0, {}), point_t(1.5, 0, {}), point_t(3, 0, {})});
    QCOMPARE(renderer->takeCalls(),
             (QStringList{
                 "updateIncomingList(0, 3) points=3 segments=0 incoming=3 outgoing=0 duration=7200",
                 "pointsAdded(3, 1, 3) points=3 segments=0 incoming=3 outgoing=0 duration=7200"}));
    curve.addPoint(4.0, 0.0);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"updateIncomingList(0, 4)", "pointsAdded(1, 3, 4)"}));
    curve.addPoint(5.0, 0.0, Qt::red);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"updateIncomingList(0, 5)", "pointsAdded(1, 4, 5)"}));
}

void tst_stripChartCurve::callsNoHookWhenNothingIsKept()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 1000);
    curve.addPoints({});
    curve.addPoint(nan_, 1.0);
    QCOMPARE(renderer->takeCalls(), QStringList());

    curve.addPoints({point_t(0, 0, {}), point_t(10, 0, {})});
    renderer->takeCalls();
    curve.dataDuration(5.0); // the next prune would drop the point at 0
    curve.addPoints({point_t(10, 0, {}), point_t(9, 0, {})});
    curve.addPoint(10.0, 0.0);
    curve.addPoint(inf, 0.0);
    QCOMPARE(renderer->takeCalls(), QStringList());
    QCOMPARE(timesOf(curve), (QVector<double>{0.0, 10.0}));
}

void tst_stripChartCurve::saysWhereABatchJoins_data()
{
    QTest::addColumn<QVector<double>>("before");
    QTest::addColumn<QVector<double>>("batch");
    QTest::addColumn<QString>("call");
    using v = QVector<double>;
    QTest::newRow("empty curve, one point") << v{} << v{7} << "pointsAdded(1, 7, 7)";
    QTest::newRow("empty curve, several") << v{} << v{7, 8, 9} << "pointsAdded(3, 7, 9)";
    QTest::newRow("empty curve, NaN first") << v{} << v{nan_, 8, 9} << "pointsAdded(2, 8, 9)";
    QTest::newRow("after the newest point") << v{1, 2} << v{7, 8} << "pointsAdded(2, 2, 8)";
    QTest::newRow("some dropped") << v{1, 2} << v{0, 7, 7, 6} << "pointsAdded(1, 2, 7)";
}

void tst_stripChartCurve::saysWhereABatchJoins()
{
    QFETCH(QVector<double>, before);
    QFETCH(QVector<double>, batch);
    QFETCH(QString, call);
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 1000);
    for (const double time : before)
        curve.addPoint(time, 0.0);
    renderer->takeCalls();
    points_t points;
    for (const double time : batch)
        points.emplace_back(time, 0.0, QColor());
    curve.addPoints(points);
    QCOMPARE(renderer->takeBareCalls().value(1), call);
}

void tst_stripChartCurve::keepsTheDataDuration()
{
    stripChartCurve_t curve;
    curve.dataDuration(10.0);
    for (int time = 0; time <= 20; ++time)
        curve.addPoint(time, 0.0);
    QCOMPARE(timesOf(curve), (QVector<double>{10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));
    QCOMPARE(curve.timeMin(), 10.0);
    QCOMPARE(curve.timeMax(), 20.0);
}

void tst_stripChartCurve::appliesTheDataDurationAtTheNextPoint()
{
    stripChartCurve_t curve;
    for (int time = 0; time <= 5; ++time)
        curve.addPoint(time, 0.0);
    curve.dataDuration(2.0);
    QCOMPARE(curve.timeMin(), 0.0);
    curve.addPoint(6.0, 0.0);
    QCOMPARE(timesOf(curve), (QVector<double>{4.0, 5.0, 6.0}));
}

void tst_stripChartCurve::takesAnyDataDuration_data()
{
    QTest::addColumn<double>("duration");
    QTest::addColumn<QVector<double>>("kept"); // of 1, 2, 3 added one by one
    using v = QVector<double>;
    QTest::newRow("zero") << 0.0 << v{3};
    QTest::newRow("one") << 1.0 << v{2, 3};
    QTest::newRow("negative") << -1.0 << v{};
    QTest::newRow("infinite") << inf << v{1, 2, 3};
    QTest::newRow("minus infinity") << -inf << v{};
    QTest::newRow("NaN") << nan_ << v{1, 2, 3};
    QTest::newRow("largest") << largest << v{1, 2, 3};
}

void tst_stripChartCurve::takesAnyDataDuration()
{
    QFETCH(double, duration);
    QFETCH(QVector<double>, kept);
    stripChartCurve_t curve;
    curve.dataDuration(duration);
    for (const double time : {1.0, 2.0, 3.0})
        curve.addPoint(time, time);
    QCOMPARE(timesOf(curve), kept);
    curve.clear();
    QVERIFY(timesOf(curve).isEmpty());
}

void tst_stripChartCurve::clearsAsAPruneOfEverything()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 2);
    curve.addPoints({point_t(1, 0, {}), point_t(2, 0, {}), point_t(4, 0, {})});
    renderer->takeCalls();
    curve.clear();
    QCOMPARE(renderer->takeCalls(),
             (QStringList{
                 "segmentRemoved(0, 2, 0) points=0 segments=0 incoming=1 outgoing=-3 duration=-1",
                 "updateIncomingList(0, 0) points=0 segments=0 incoming=0 outgoing=0 duration=-1",
                 "updateOutgoingList(0, 0) points=0 segments=0 incoming=0 outgoing=0 duration=-1",
                 "pointsRemoved(3, 1, 4) points=0 segments=0 incoming=0 outgoing=0 duration=-1"}));
    QCOMPARE(record(curve).duration, 7200.0);
    QCOMPARE(curve.valueMin(-10.0, 10.0), 0.0);
}

void tst_stripChartCurve::clearsNothingSilently()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 2);
    curve.clear();
    QCOMPARE(renderer->takeCalls(), QStringList());
}

void tst_stripChartCurve::keepsTheDurationAcrossAClear()
{
    stripChartCurve_t curve;
    curve.dataDuration(10.0);
    curve.addPoint(1.0, 0.0);
    curve.clear();
    for (int time = 0; time <= 20; ++time)
        curve.addPoint(time, 0.0);
    QCOMPARE(curve.timeMin(), 10.0);
}

void tst_stripChartCurve::clearsHugeTimes_data()
{
    QTest::addColumn<double>("time");
    // Above 2^53 adding one second to a time doesn't change it.
    QTest::newRow("near 1e17") << 1e17;
    QTest::newRow("near -1e17") << -1e17;
    QTest::newRow("2^53") << 9007199254740992.0;
    QTest::newRow("largest") << largest;
    QTest::newRow("minus largest") << -largest;
}

void tst_stripChartCurve::clearsHugeTimes()
{
    QFETCH(double, time);
    stripChartCurve_t curve;
    curve.addPoint(time, 1.0);
    curve.clear();
    QVERIFY(timesOf(curve).isEmpty());
    curve.addPoint(0.0, 1.0); // a later time isn't needed after a clear
    QCOMPARE(timesOf(curve), (QVector<double>{0.0}));
}

void tst_stripChartCurve::announcesAnotherColourOnce()
{
    stripChartCurve_t curve;
    QSignalSpy spy(&curve, &stripChartCurve_t::colorChanged);
    QColor seenInside;
    connect(&curve, &stripChartCurve_t::colorChanged, this, [&] { seenInside = curve.color(); });
    curve.color(QColor());
    QCOMPARE(spy.size(), 0);
    curve.color(Qt::red);
    curve.color(Qt::red);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<QColor>(), QColor(Qt::red));
    QCOMPARE(seenInside, QColor(Qt::red));
    QCOMPARE(curve.color(), QColor(Qt::red));
    curve.color(QColor(255, 0, 0, 254));
    QCOMPARE(spy.size(), 2);
}

void tst_stripChartCurve::storesTheGapThreshold()
{
    stripChartCurve_t curve;
    curve.gapThreshold(2.5);
    QCOMPARE(record(curve).threshold, 2.5);
}

void tst_stripChartCurve::findsTheExtremesOfAll()
{
    stripChartCurve_t curve;
    curve.addPoint(1.0, 5.0);
    QCOMPARE(curve.valueMin(), 5.0);
    QCOMPARE(curve.valueMax(), 5.0);
    curve.addPoint(2.0, -7.0);
    curve.addPoint(3.0, 6.0);
    QCOMPARE(curve.valueMin(), -7.0);
    QCOMPARE(curve.valueMax(), 6.0);
}

void tst_stripChartCurve::findsTheExtremesInATimeRange_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("greatest");
    // Points (1, 10), (2, 30), (3, 20), (4, -5).
    QTest::newRow("all") << 1.0 << 4.0 << -5.0 << 30.0;
    QTest::newRow("more than all") << -inf << inf << -5.0 << 30.0;
    QTest::newRow("ends at points") << 1.0 << 2.0 << 10.0 << 30.0;
    QTest::newRow("ends between points") << 1.5 << 3.5 << 20.0 << 30.0;
    QTest::newRow("one instant") << 3.0 << 3.0 << 20.0 << 20.0;
    QTest::newRow("between two points") << 2.1 << 2.9 << largest << -largest;
    QTest::newRow("before all") << -2.0 << 0.5 << largest << -largest;
    QTest::newRow("after all") << 4.5 << 9.0 << largest << -largest;
    QTest::newRow("reversed") << 3.0 << 2.0 << largest << -largest;
    QTest::newRow("touching the oldest") << 0.0 << 1.0 << 10.0 << 10.0;
    QTest::newRow("touching the newest") << 4.0 << 9.0 << -5.0 << -5.0;
}

void tst_stripChartCurve::findsTheExtremesInATimeRange()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, least);
    QFETCH(double, greatest);
    stripChartCurve_t curve;
    curve.addPoints(
        {point_t(1, 10, {}), point_t(2, 30, {}), point_t(3, 20, {}), point_t(4, -5, {})});
    QCOMPARE(curve.valueMin(from, to), least);
    QCOMPARE(curve.valueMax(from, to), greatest);
}

// Deliberate: a block of points that the range only touches counts with all its points.
void tst_stripChartCurve::countsBlocksThatOverlapWhole()
{
    stripChartCurve_t curve;
    recordingRenderer_t::attach(curve, 4);
    // Blocks over the times 0 to 4 and 4 to 8; 8 and 9 are loose.
    const double values[] = {0, 50, 1, 2, 3, -40, 4, 5, 6, 7};
    for (int i = 0; i < 10; ++i)
        curve.addPoint(i, values[i]);
    QCOMPARE(record(curve).segments.size(), std::size_t(2));
    QCOMPARE(curve.valueMax(2.0, 3.0), 50.0); // from 1 s, outside the range
    QCOMPARE(curve.valueMin(2.0, 3.0), 0.0);
    QCOMPARE(curve.valueMin(6.0, 7.0), -40.0);
    QCOMPARE(curve.valueMax(6.0, 7.0), 6.0);  // the first point after the block counts
    QCOMPARE(curve.valueMax(4.0, 5.0), 50.0); // a block counts up to its end, included
    QCOMPARE(curve.valueMax(4.1, 5.0), 6.0);
    QCOMPARE(curve.valueMin(8.1, 9.0), 7.0);
    QCOMPARE(curve.valueMin(8.0, 9.0), -40.0); // the range starts where the last block ends
    QCOMPARE(curve.valueMin(2.0, 9.0), -40.0);
    QCOMPARE(curve.valueMin(-5.0, -1.0), largest);
    QCOMPARE(curve.valueMin(9.5, 20.0), largest);
    QCOMPARE(curve.valueMax(-5.0, 0.0), 0.0); // the first block starts at the range's end
}

// Deliberate: a block must start before the range's end, so that an instant at a block's start
// sees the block before only, and an instant inside the first block sees that block.
void tst_stripChartCurve::hasNoExtremeAtAnInstantInsideABlock()
{
    stripChartCurve_t curve;
    recordingRenderer_t::attach(curve, 4);
    for (int i = 0; i < 10; ++i)
        curve.addPoint(i, 10.0 * i);
    QCOMPARE(curve.valueMin(0.0, 0.0), largest); // no block starts before 0
    QCOMPARE(curve.valueMax(0.0, 0.0), -largest);
    QCOMPARE(curve.valueMin(2.0, 2.0), 0.0);
    QCOMPARE(curve.valueMax(2.0, 2.0), 40.0);
    QCOMPARE(curve.valueMin(4.0, 4.0), 0.0);
    QCOMPARE(curve.valueMax(4.0, 4.0), 40.0);
    QCOMPARE(curve.valueMin(9.0, 9.0), 90.0);
}

void tst_stripChartCurve::leavesNonFiniteValuesOutOfTheExtremes()
{
    for (const unsigned segmentSize : {1000u, 2u}) {
        stripChartCurve_t curve;
        recordingRenderer_t::attach(curve, segmentSize);
        curve.addPoint(1.0, nan_);
        QCOMPARE(curve.valueMin(), largest);
        QCOMPARE(curve.valueMax(), -largest);
        curve.addPoint(2.0, inf);
        curve.addPoint(3.0, -inf);
        curve.addPoint(4.0, 5.0);
        curve.addPoint(5.0, nan_);
        curve.addPoint(6.0, 7.0);
        QCOMPARE(timesOf(curve).size(), 6);
        QCOMPARE(curve.valueMin(), 5.0);
        QCOMPARE(curve.valueMax(), 7.0);
    }
}

void tst_stripChartCurve::findsTimesByValue_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<double>("oldest");
    QTest::addColumn<double>("newest");
    // Points (1, 10), (2, 30), (3, 20), (4, 30), (5, NaN), (6, 5).
    QTest::newRow("two match") << 25.0 << 35.0 << 2.0 << 4.0;
    QTest::newRow("ends included") << 20.0 << 30.0 << 2.0 << 4.0;
    QTest::newRow("one match") << 10.0 << 10.0 << 1.0 << 1.0;
    QTest::newRow("all match") << -inf << inf << 1.0 << 6.0;
    QTest::newRow("none matches") << 11.0 << 19.0 << 0.0 << 0.0;
    QTest::newRow("looks like times") << 1.0 << 4.0 << 0.0 << 0.0;
    QTest::newRow("reversed") << 30.0 << 10.0 << 0.0 << 0.0;
    QTest::newRow("NaN") << nan_ << nan_ << 0.0 << 0.0;
}

void tst_stripChartCurve::findsTimesByValue()
{
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(double, oldest);
    QFETCH(double, newest);
    stripChartCurve_t curve;
    curve.addPoints({point_t(1, 10, {}), point_t(2, 30, {}), point_t(3, 20, {}), point_t(4, 30, {}),
                     point_t(5, nan_, {}), point_t(6, 5, {})});
    QCOMPARE(curve.timeMin(low, high), oldest);
    QCOMPARE(curve.timeMax(low, high), newest);
}

void tst_stripChartCurve::doesAsThePlainModel_data()
{
    QTest::addColumn<unsigned>("segmentSize");
    for (const unsigned size : {1u, 2u, 3u, 7u, 16u, 64u})
        QTest::addRow("segments of %u points", size) << size;
}

static points_t randomBatch(random_t& random, double newestTime)
{
    points_t batch;
    double time = newestTime;
    const int count = random.chance(0.5) ? 1 : random.integer(0, 40);
    for (int i = 0; i < count; ++i) {
        time += random.oneOf<double>({0.1, 0.25, 1.0, 1.0, 3.0, 0.0, -0.5});
        const double odd = random.oneOf<double>({nan_, inf, -inf});
        const bool isOddTime = random.chance(0.01);
        const bool isOddValue = random.chance(0.05);
        batch.emplace_back(isOddTime ? odd : time,
                           isOddValue ? odd : random.integer(-1000, 1000) * 0.125, QColor());
    }
    return batch;
}

// Compares everything that can be seen of the curve with the model.
static QString difference(stripChartCurve_t& curve, plainCurve_t& model, random_t& random)
{
    const stripChartCurveData_t& data = record(curve);
    if (data.points.size() != model.points.size() ||
        data.segments.size() != model.segments.size() ||
        data.incomingCount != model.incomingCount || data.outgoingCount != model.outgoingCount ||
        data.nextSegmentId != model.nextSegmentId)
        return "counts: " + hookState(data.points.size(), data.segments.size(), data.incomingCount,
                                      data.outgoingCount, data.duration);
    for (std::size_t i = 0; i < model.segments.size(); ++i) {
        const auto& actual = *data.segments[i];
        const auto& wanted = model.segments[i];
        if (actual.id != wanted.id || actual.startTime != wanted.startTime ||
            actual.endTime != wanted.endTime || actual.minValue != wanted.minValue ||
            actual.maxValue != wanted.maxValue || actual.size != wanted.size)
            return QStringLiteral("segment %1").arg(i);
    }
    if (curve.timeMin() != model.timeMin() || curve.timeMax() != model.timeMax() ||
        curve.valueMin() != model.valueMin() || curve.valueMax() != model.valueMax())
        return "extremes of all";
    for (int i = 0; i < 8; ++i) {
        const auto someTime = [&] {
            if (random.chance(0.5) && !model.points.empty())
                return model
                    .points[static_cast<std::size_t>(
                        random.integer(0, int(model.points.size()) - 1))]
                    .time;
            return random.real(model.timeMin() - 10.0, model.timeMax() + 10.0);
        };
        const double from = someTime();
        const double to = random.chance(0.1) ? from : someTime();
        const auto& renderer = *curve.renderer();
        if (curve.valueMin(from, to) != model.valueMin(from, to) ||
            curve.valueMax(from, to) != model.valueMax(from, to))
            return QStringLiteral("extremes from %1 to %2")
                .arg(from, 0, 'g', 17)
                .arg(to, 0, 'g', 17);
        double least = largest;
        double greatest = -largest;
        for (const point_t& point : model.points) {
            if (point.time < from || point.time > to || !std::isfinite(point.value))
                continue;
            least = std::min(least, point.value);
            greatest = std::max(greatest, point.value);
        }
        if (model.points.empty())
            least = greatest = 0.0;
        if (renderer.valueMin(from, to) != least || renderer.valueMax(from, to) != greatest)
            return QStringLiteral("scan from %1 to %2").arg(from, 0, 'g', 17).arg(to, 0, 'g', 17);
        const double low = random.integer(-1000, 1000) * 0.125;
        const double high = low + random.integer(-8, 80) * 0.125;
        if (curve.timeMin(low, high) != model.timeMin(low, high) ||
            curve.timeMax(low, high) != model.timeMax(low, high))
            return QStringLiteral("times of values from %1 to %2").arg(low).arg(high);
    }
    return QString();
}

void tst_stripChartCurve::doesAsThePlainModel()
{
    QFETCH(unsigned, segmentSize);
    random_t random(segmentSize);
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, segmentSize);
    plainCurve_t model;
    model.segmentSize = segmentSize;
    double from = 0.0; // a window asked for again and again
    double to = 0.0;
    for (int step = 0; step < 6000; ++step) {
        const int what = random.integer(0, 99);
        if (what < 94) {
            const points_t batch = randomBatch(random, model.timeMax());
            curve.addPoints(batch);
            model.addPoints(batch);
        } else if (what < 99) {
            const double duration =
                random.oneOf<double>({0.0, 5.0, 30.0, 100.0, 1000.0, 7200.0, inf});
            curve.dataDuration(duration);
            model.duration = duration;
        } else {
            curve.clear();
            model.clear();
        }
        QCOMPARE(renderer->takeCalls(), model.takeCalls());
        if (step % 20 == 0) {
            from = model.timeMax() - random.real(0.0, 100.0);
            to = from + random.real(0.0, 100.0);
        }
        QVERIFY(curve.valueMin(from, to) == model.valueMin(from, to));
        QVERIFY(curve.valueMax(from, to) == model.valueMax(from, to));
        if (step % 20 != 0)
            continue; // other questions would make it forget the window
        QCOMPARE(difference(curve, model, random), QString());
    }
}

void tst_stripChartCurve::answersOnTheFullSegmentSizeAsThePlainModel()
{
    random_t random(77);
    stripChartCurve_t curve;
    plainCurve_t model;
    curve.dataDuration(9000.0);
    model.duration = 9000.0;
    double time = 0.0;
    for (int step = 0; step < 60; ++step) {
        points_t batch;
        for (int i = random.integer(1, 900); i > 0; --i) {
            time += random.oneOf<double>({0.5, 1.0, 2.0});
            batch.emplace_back(time, random.integer(-1000, 1000) * 0.125, QColor());
        }
        curve.addPoints(batch);
        model.addPoints(batch);
        QCOMPARE(difference(curve, model, random), QString());
    }
    QVERIFY(model.segments.size() >= 4); // or else the segments were not tested
    QVERIFY(model.timeMin() > 1000.0);   // nor the pruning
}

ZORBIN_TEST_MAIN(tst_stripChartCurve, QCoreApplication)
#include "tst_stripChartCurve.moc"
