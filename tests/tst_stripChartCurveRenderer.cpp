#include "childProcess.h"
#include "recordingRenderer.h"
#include "stripChartCurve.h"
#include "stripChartCurveRenderer.h"
#include "testCase.h"

#include <cmath>
#include <limits>
#include <memory>

using namespace zorbin_qt_gui;
using point_t = stripChartCurve_t::point_t;

static const double largest = std::numeric_limits<double>::max();
static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

// A curve's record with the points (0, 0), (1, 10), (2, 20) ... all loose.
static void fill(stripChartCurveData_t& data, int count)
{
    for (int i = 0; i < count; ++i)
        data.points.emplace_back(i, 10.0 * i, QColor());
    data.incomingCount = count;
}

class tst_stripChartCurveRenderer : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithAnEmptyRecord();
    void scansThePoints_data();
    void scansThePoints();
    void scansAgainAfterTheRecordChanged();
    void leavesNonFiniteValuesOutOfTheScan();

    void makesASegmentThatReachesToTheNextPoint();
    void makesASegmentOverNonFiniteValues();
    void countsSegmentIdsUpAcrossClears();
    void deletesOnlyWhatRemoveSegmentIsGiven();

    void buildsNoSegmentOfTheNewestPoint();
    void buildsAsManySegmentsAsFit();
    void announcesEachSegmentBeforeTheCountFalls();
    void buildsTheFirstSegmentAtPoint1001();
    void countsASegmentSizeOfZeroAsOne();

    void prunesNothingThatIsYoungEnough();
    void prunesLoosePoints();
    void dissolvesAWholeSegmentForOnePoint();
    void prunesOutgoingPointsQuietly();
    void dissolvesTheNextSegmentWhenNoOutgoingPointIsLeft();
    void dissolvesSeveralSegmentsAtOnce();
    void prunesIntoTheIncomingPoints();
    void namesTheNewOldestPoint();
    void stopsWhenTheCountsAreBroken_data();
    void stopsWhenTheCountsAreBroken();
};

void tst_stripChartCurveRenderer::startsWithAnEmptyRecord()
{
    stripChartCurveData_t data;
    QVERIFY(data.points.empty());
    QVERIFY(!data.color.isValid());
    QCOMPARE(data.duration, 7200.0);
    QCOMPARE(data.threshold, 1.1);
    QVERIFY(data.segments.empty());
    QCOMPARE(data.nextSegmentId, 0u);
    QCOMPARE(data.incomingCount, 0);
    QCOMPARE(data.outgoingCount, 0);
    recordingRenderer_t renderer(&data, 4);
    QCOMPARE(renderer.valueMin(0.0, 1.0), 0.0);
    QCOMPARE(renderer.valueMax(0.0, 1.0), 0.0);
    renderer.maybeBuildSegments();
    renderer.prunePoints();
    renderer.maybeDestroySegments();
    QCOMPARE(renderer.takeCalls(), QStringList());
}

void tst_stripChartCurveRenderer::scansThePoints_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("greatest");
    // Points (0, 0), (1, 10) ... (9, 90).
    QTest::newRow("all") << 0.0 << 9.0 << 0.0 << 90.0;
    QTest::newRow("more than all") << -1.0 << 10.0 << 0.0 << 90.0;
    QTest::newRow("everything") << -inf << inf << 0.0 << 90.0;
    QTest::newRow("ends at points") << 2.0 << 4.0 << 20.0 << 40.0;
    QTest::newRow("ends between points") << 1.5 << 4.5 << 20.0 << 40.0;
    QTest::newRow("one point") << 3.0 << 3.0 << 30.0 << 30.0;
    QTest::newRow("the oldest") << 0.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("the newest") << 9.0 << 9.0 << 90.0 << 90.0;
    QTest::newRow("between points") << 3.1 << 3.9 << largest << -largest;
    QTest::newRow("before all") << -3.0 << -0.1 << largest << -largest;
    QTest::newRow("after all") << 9.1 << 20.0 << largest << -largest;
    QTest::newRow("reversed") << 5.0 << 3.0 << largest << -largest;
    QTest::newRow("reversed, beyond both ends") << 9.0 << 0.0 << largest << -largest;
}

void tst_stripChartCurveRenderer::scansThePoints()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, least);
    QFETCH(double, greatest);
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 4);
    fill(data, 10);
    QCOMPARE(renderer.valueMin(from, to), least);
    QCOMPARE(renderer.valueMax(from, to), greatest);
}

void tst_stripChartCurveRenderer::scansAgainAfterTheRecordChanged()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 4);
    fill(data, 200);
    QCOMPARE(renderer.valueMax(0.0, 500.0), 1990.0);
    data.points.emplace_back(200.0, 5000.0, QColor());
    QCOMPARE(renderer.valueMax(0.0, 500.0), 5000.0);
    data.points.pop_back();
    QCOMPARE(renderer.valueMax(0.0, 500.0), 1990.0);
    data.points.pop_front();
    QCOMPARE(renderer.valueMin(0.0, 500.0), 10.0);
    data.points.clear();
    QCOMPARE(renderer.valueMin(0.0, 500.0), 0.0);
}

void tst_stripChartCurveRenderer::leavesNonFiniteValuesOutOfTheScan()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 4);
    data.points = {point_t(0, nan_, {}), point_t(1, inf, {}), point_t(2, -inf, {})};
    QCOMPARE(renderer.valueMin(0.0, 9.0), largest);
    QCOMPARE(renderer.valueMax(0.0, 9.0), -largest);
    data.points.emplace_back(3.0, 5.0, QColor());
    QCOMPARE(renderer.valueMin(0.0, 9.0), 5.0);
    QCOMPARE(renderer.valueMax(0.0, 9.0), 5.0);
}

void tst_stripChartCurveRenderer::makesASegmentThatReachesToTheNextPoint()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 4);
    data.points = {point_t(0, 100, {}), point_t(1, 7, {}), point_t(2, -3, {}),
                   point_t(3, 5, {}),   point_t(4, 9, {}), point_t(5, 200, {})};
    data.nextSegmentId = 41;
    const std::unique_ptr<stripChartCurveRenderer_t::segment_t> segment(
        renderer.createSegment(1, 4));
    QCOMPARE(segment->id, 41u);
    QCOMPARE(segment->startTime, 1.0);
    QCOMPARE(segment->startValue, 7.0);
    QCOMPARE(segment->endTime, 4.0);
    QCOMPARE(segment->endValue, 9.0);
    QCOMPARE(segment->minValue, -3.0);
    QCOMPARE(segment->maxValue, 9.0); // the next point counts
    QCOMPARE(segment->size, 3u);
    QCOMPARE(data.nextSegmentId, 42u);
    QVERIFY(data.segments.empty());
    QCOMPARE(renderer.takeCalls(), QStringList());
}

void tst_stripChartCurveRenderer::makesASegmentOverNonFiniteValues()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 4);
    data.points = {point_t(0, nan_, {}), point_t(1, 7, {}), point_t(2, -inf, {}),
                   point_t(3, inf, {})};
    const std::unique_ptr<stripChartCurveRenderer_t::segment_t> segment(
        renderer.createSegment(0, 3));
    QVERIFY(std::isnan(segment->startValue));
    QCOMPARE(segment->endValue, inf);
    QCOMPARE(segment->minValue, 7.0);
    QCOMPARE(segment->maxValue, 7.0);
}

void tst_stripChartCurveRenderer::countsSegmentIdsUpAcrossClears()
{
    stripChartCurve_t curve;
    recordingRenderer_t::attach(curve, 2);
    for (int i = 0; i < 5; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.back()->id, 1u);
    curve.clear();
    for (int i = 0; i < 3; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(1));
    QCOMPARE(record(curve).segments.back()->id, 2u);
}

void tst_stripChartCurveRenderer::deletesOnlyWhatRemoveSegmentIsGiven()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 2);
    fill(data, 5);
    renderer.maybeBuildSegments();
    renderer.takeCalls();
    renderer.removeSegment(renderer.createSegment(0, 2));
    QCOMPARE(data.segments.size(), std::size_t(2));
    QCOMPARE(data.outgoingCount, 0);
    QCOMPARE(renderer.takeCalls(), QStringList());
    for (auto* const segment : data.segments)
        renderer.removeSegment(segment);
}

void tst_stripChartCurveRenderer::buildsNoSegmentOfTheNewestPoint()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 3);
    for (int i = 0; i < 3; ++i)
        curve.addPoint(i, 0.0);
    QVERIFY(record(curve).segments.empty());
    QCOMPARE(record(curve).incomingCount, 3);
    renderer->takeCalls();
    curve.addPoint(3.0, 0.0);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"segmentCreated(0, 3, 0)", "updateIncomingList(3, 4)",
                          "pointsAdded(1, 2, 3)"}));
    QCOMPARE(record(curve).segments.size(), std::size_t(1));
    QCOMPARE(record(curve).incomingCount, 1);
}

void tst_stripChartCurveRenderer::buildsAsManySegmentsAsFit()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 3);
    std::deque<point_t> batch;
    for (int i = 0; i < 10; ++i)
        batch.emplace_back(i, 0.0, QColor());
    curve.addPoints(batch);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"segmentCreated(0, 3, 0)", "segmentCreated(3, 6, 1)",
                          "segmentCreated(6, 9, 2)", "updateIncomingList(9, 10)",
                          "pointsAdded(10, 0, 9)"}));
}

void tst_stripChartCurveRenderer::announcesEachSegmentBeforeTheCountFalls()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 2);
    fill(data, 5);
    renderer.maybeBuildSegments();
    QCOMPARE(
        renderer.takeCalls(),
        (QStringList{
            "segmentCreated(0, 2, 0) points=5 segments=1 incoming=5 outgoing=0 duration=7200",
            "segmentCreated(2, 4, 1) points=5 segments=2 incoming=3 outgoing=0 duration=7200"}));
    QCOMPARE(data.incomingCount, 1);
    for (auto* const segment : data.segments)
        renderer.removeSegment(segment);
}

void tst_stripChartCurveRenderer::buildsTheFirstSegmentAtPoint1001()
{
    stripChartCurve_t curve; // with the renderer of the QPainter back end
    QCOMPARE(curve.renderer()->segmentSize(), 1000u);
    for (int i = 0; i < 1000; ++i)
        curve.addPoint(i, i);
    QVERIFY(record(curve).segments.empty());
    QCOMPARE(record(curve).incomingCount, 1000);
    curve.addPoint(1000.0, 1000.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(1));
    QCOMPARE(record(curve).incomingCount, 1);
    const stripChartCurveRenderer_t::segment_t& segment = *record(curve).segments.front();
    QCOMPARE(segment.size, 1000u);
    QCOMPARE(segment.startTime, 0.0);
    QCOMPARE(segment.endTime, 1000.0);
    QCOMPARE(segment.minValue, 0.0);
    QCOMPARE(segment.maxValue, 1000.0);
}

void tst_stripChartCurveRenderer::countsASegmentSizeOfZeroAsOne()
{
    stripChartCurve_t curve;
    recordingRenderer_t::attach(curve, 0);
    for (int i = 0; i < 3; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(2));
    QCOMPARE(record(curve).segments.front()->size, 1u);
    QCOMPARE(record(curve).incomingCount, 1);
}

void tst_stripChartCurveRenderer::prunesNothingThatIsYoungEnough()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 100);
    fill(data, 11);
    data.duration = 10.0;
    renderer.prunePoints(); // the oldest point is exactly 10 s old
    QCOMPARE(data.points.size(), std::size_t(11));
    QCOMPARE(renderer.takeCalls(), QStringList());
}

void tst_stripChartCurveRenderer::prunesLoosePoints()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 100);
    fill(data, 11);
    data.duration = 7.5;
    renderer.prunePoints();
    QCOMPARE(renderer.takeCalls(),
             (QStringList{
                 "updateIncomingList(0, 8) points=8 segments=0 incoming=8 outgoing=0 duration=7.5",
                 "updateOutgoingList(0, 0) points=8 segments=0 incoming=8 outgoing=0 duration=7.5",
                 "pointsRemoved(3, 0, 3) points=8 segments=0 incoming=8 outgoing=0 "
                 "duration=7.5"}));
}

void tst_stripChartCurveRenderer::dissolvesAWholeSegmentForOnePoint()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 4);
    curve.dataDuration(9.0);
    for (int i = 0; i < 10; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(2));
    renderer->takeCalls();
    curve.addPoint(10.0, 0.0); // the point at 0 is too old now
    QCOMPARE(renderer->takeCalls(),
             (QStringList{
                 "updateIncomingList(8, 11) points=11 segments=2 incoming=3 outgoing=0 duration=9",
                 "pointsAdded(1, 9, 10) points=11 segments=2 incoming=3 outgoing=0 duration=9",
                 "segmentRemoved(0, 4, 0) points=10 segments=1 incoming=3 outgoing=-1 duration=9",
                 "updateOutgoingList(0, 3) points=10 segments=1 incoming=3 outgoing=3 duration=9",
                 "pointsRemoved(1, 0, 1) points=10 segments=1 incoming=3 outgoing=3 duration=9"}));
}

void tst_stripChartCurveRenderer::prunesOutgoingPointsQuietly()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 4);
    curve.dataDuration(9.0);
    for (int i = 0; i < 11; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).outgoingCount, 3);
    renderer->takeCalls();
    curve.addPoint(11.0, 0.0);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"updateIncomingList(7, 11)", "pointsAdded(1, 10, 11)",
                          "updateOutgoingList(0, 2)", "pointsRemoved(1, 1, 2)"}));
}

// Deliberate: with no outgoing point left the next segment goes as well, although all of its
// points are still there.
void tst_stripChartCurveRenderer::dissolvesTheNextSegmentWhenNoOutgoingPointIsLeft()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 4);
    curve.dataDuration(9.0);
    for (int i = 0; i < 13; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).outgoingCount, 1);
    QCOMPARE(record(curve).segments.size(), std::size_t(2));
    renderer->takeCalls();
    curve.addPoint(13.0, 0.0);
    QCOMPARE(renderer->takeBareCalls(),
             (QStringList{"updateIncomingList(9, 11)", "pointsAdded(1, 12, 13)",
                          "segmentRemoved(0, 4, 1)", "updateOutgoingList(0, 4)",
                          "pointsRemoved(1, 3, 4)"}));
    QCOMPARE(record(curve).segments.size(), std::size_t(1));
}

void tst_stripChartCurveRenderer::dissolvesSeveralSegmentsAtOnce()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 4);
    for (int i = 0; i < 14; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(3));
    renderer->takeCalls();
    curve.dataDuration(5.0);
    curve.addPoint(14.0, 0.0); // 9 points go: two segments and one point of the third
    QCOMPARE(renderer->takeCalls(),
             (QStringList{
                 "updateIncomingList(12, 15) points=15 segments=3 incoming=3 outgoing=0 duration=5",
                 "pointsAdded(1, 13, 14) points=15 segments=3 incoming=3 outgoing=0 duration=5",
                 "segmentRemoved(0, 4, 0) points=6 segments=2 incoming=3 outgoing=-9 duration=5",
                 "segmentRemoved(0, 4, 1) points=6 segments=1 incoming=3 outgoing=-5 duration=5",
                 "segmentRemoved(0, 4, 2) points=6 segments=0 incoming=3 outgoing=-1 duration=5",
                 "updateOutgoingList(0, 3) points=6 segments=0 incoming=3 outgoing=3 duration=5",
                 "pointsRemoved(9, 0, 9) points=6 segments=0 incoming=3 outgoing=3 duration=5"}));
}

void tst_stripChartCurveRenderer::prunesIntoTheIncomingPoints()
{
    stripChartCurve_t curve;
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(curve, 4);
    for (int i = 0; i < 8; ++i)
        curve.addPoint(i, 0.0);
    QCOMPARE(record(curve).segments.size(), std::size_t(1));
    renderer->takeCalls();
    curve.dataDuration(1.0);
    curve.addPoint(8.0, 0.0); // makes a second segment; 0 to 6 go, 7 and 8 stay
    QCOMPARE(
        renderer->takeBareCalls(),
        (QStringList{"segmentCreated(4, 8, 1)", "updateIncomingList(8, 9)", "pointsAdded(1, 7, 8)",
                     "segmentRemoved(0, 4, 0)", "segmentRemoved(0, 4, 1)",
                     "updateOutgoingList(0, 1)", "pointsRemoved(7, 0, 7)"}));
    curve.addPoint(20.0, 0.0); // the outgoing and the only older incoming point go
    QCOMPARE(renderer->takeCalls(),
             (QStringList{
                 "updateIncomingList(1, 3) points=3 segments=0 incoming=2 outgoing=1 duration=1",
                 "pointsAdded(1, 8, 20) points=3 segments=0 incoming=2 outgoing=1 duration=1",
                 "updateIncomingList(0, 1) points=1 segments=0 incoming=1 outgoing=0 duration=1",
                 "updateOutgoingList(0, 0) points=1 segments=0 incoming=1 outgoing=0 duration=1",
                 "pointsRemoved(2, 7, 20) points=1 segments=0 incoming=1 outgoing=0 "
                 "duration=1"}));
}

void tst_stripChartCurveRenderer::namesTheNewOldestPoint()
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 100);
    fill(data, 5);
    data.duration = 2.0;
    renderer.prunePoints();
    QCOMPARE(renderer.takeBareCalls().last(), QString("pointsRemoved(2, 0, 2)"));
    data.duration = -1.0; // everything goes, so the last one removed is named
    renderer.prunePoints();
    QCOMPARE(renderer.takeBareCalls().last(), QString("pointsRemoved(3, 2, 4)"));
    QVERIFY(data.points.empty());
}

// Prunes three of five points whose record counts \p incoming of them as incoming.
static int pruneThreePoints(int incoming)
{
    stripChartCurveData_t data;
    recordingRenderer_t renderer(&data, 100);
    fill(data, 5);
    data.incomingCount = incoming;
    data.duration = 1.0;
    renderer.prunePoints();
    return 0;
}

void tst_stripChartCurveRenderer::stopsWhenTheCountsAreBroken_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<bool>("stops");
    QTest::newRow("as many as incoming") << "pruneThreeOfThree" << false;
    QTest::newRow("one more than incoming") << "pruneThreeOfTwo" << true;
}

void tst_stripChartCurveRenderer::stopsWhenTheCountsAreBroken()
{
    QFETCH(QString, scenario);
    QFETCH(bool, stops);
    const childOutcome_t child = runChild(scenario);
    QCOMPARE(child.crashed, stops);
    QCOMPARE(child.said, stops ? QStringList{"fatal: Too many points removed"} : QStringList());
}

int main(int argc, char** argv)
{
    tst_stripChartCurveRenderer tests;
    return runTestsOrScenario(argc, argv, tests,
                              {{"pruneThreeOfThree", [] { return pruneThreePoints(3); }},
                               {"pruneThreeOfTwo", [] { return pruneThreePoints(2); }}});
}

#include "tst_stripChartCurveRenderer.moc"
