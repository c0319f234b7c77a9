#include "curveExtents_p.h"
#include "testCase.h"

#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "stripChartCurve.h"
#include "stripChartCurveRenderer.h"

#include <memory>
#include <vector>

using namespace zorbin_qt_gui;
using curves_t = std::vector<std::unique_ptr<stripChartCurve_t>>;

class tst_curveExtents : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void hasNoExtremesWithoutCurves();
    void takesACurveInOnce();
    void asksOnlyCurvesThatChanged_data();
    void asksOnlyCurvesThatChanged();
    void asksEachCurveOnceAsTheyAreAdded();
    void noticesACurveThatAnotherAsks();
    void mayEndBeforeItsCurves();
    void equalsAScanWhileCurvesComeAndGo();
};

// What the points themselves say. Curves have fewer of them here than a segment takes.
static extremes_t scan(stripChartCurve_t& curve, double from, double to)
{
    extremes_t result;
    for (const auto& point : record(curve).points) {
        if (point.time >= from && point.time <= to)
            result.include(point.value);
    }
    return record(curve).points.empty() ? extremes_t{0.0, 0.0} : result;
}

static curves_t makeCurves(int count, curveExtents_t* extents)
{
    curves_t curves;
    for (int i = 0; i < count; ++i) {
        curves.push_back(std::make_unique<stripChartCurve_t>());
        extents->add(record(*curves.back()));
    }
    return curves;
}

void tst_curveExtents::hasNoExtremesWithoutCurves()
{
    curveExtents_t extents;
    QVERIFY(extents.isCurrent());
    const extremes_t none = extents.over(0.0, 10.0);
    QCOMPARE(none.min, std::numeric_limits<double>::max());
    QCOMPARE(none.max, -std::numeric_limits<double>::max());
}

void tst_curveExtents::takesACurveInOnce()
{
    curveExtents_t extents;
    stripChartCurve_t curve;
    extents.remove(record(curve)); // is not in
    extents.add(record(curve));
    extents.add(record(curve));
    QVERIFY(extents.isConsistent());
    curve.addPoint(1.0, 5.0);
    QCOMPARE(extents.over(0.0, 10.0).max, 5.0);
    extents.remove(record(curve));
    QVERIFY(extents.isCurrent());
    QCOMPARE(extents.over(0.0, 10.0).max, -std::numeric_limits<double>::max());
    QVERIFY(extents.isConsistent());
}

void tst_curveExtents::asksOnlyCurvesThatChanged_data()
{
    QTest::addColumn<bool>("isBackwards");
    QTest::newRow("as they were added") << false;
    QTest::newRow("the last one first") << true;
}

// Each of many curves gets its first point, then one beyond all others, then loses it.
void tst_curveExtents::asksOnlyCurvesThatChanged()
{
    QFETCH(bool, isBackwards);
    constexpr int count = 10000;
    curveExtents_t extents;
    curves_t curves = makeCurves(count, &extents);
    if (isBackwards)
        std::reverse(curves.begin(), curves.end());
    QCOMPARE(extents.over(0.0, 10.0).max, 0.0);
    QCOMPARE(extents.asked(), quint64(count));

    double value = 100.0;
    for (const auto& curve : curves) {
        curve->addPoint(1.0, value);
        const extremes_t all = extents.over(0.0, 10.0);
        QCOMPARE(all.min, curve == curves.back() ? 100.0 : 0.0); // empty curves count as 0
        QCOMPARE(all.max, value);
        value += 1.0;
    }
    QCOMPARE(extents.asked(), quint64(2 * count));
    for (const auto& curve : curves) {
        curve->addPoints({{2.0, value, Qt::red}, {3.0, value + 1.0, Qt::red}});
        QCOMPARE(extents.over(0.0, 10.0).max, value + 1.0);
        value += 2.0;
    }
    QCOMPARE(extents.asked(), quint64(3 * count));
    for (const auto& curve : curves) {
        curve->clear();
        QCOMPARE(extents.over(0.0, 10.0).min, 0.0);
    }
    QCOMPARE(extents.asked(), quint64(4 * count));
    extents.over(0.0, 10.0);
    QCOMPARE(extents.asked(), quint64(4 * count)); // nothing has changed
    extents.over(0.0, 11.0);
    QCOMPARE(extents.asked(), quint64(5 * count));
    QVERIFY(extents.isConsistent());
}

void tst_curveExtents::asksEachCurveOnceAsTheyAreAdded()
{
    constexpr int count = 10000;
    curveExtents_t extents;
    curves_t curves;
    for (int i = 0; i < count; ++i) {
        curves.push_back(std::make_unique<stripChartCurve_t>());
        extents.add(record(*curves.back()));
        curves.back()->addPoint(1.0, 5.0 + i);
        QCOMPARE(extents.over(0.0, 10.0).max, 5.0 + i);
    }
    QCOMPARE(extents.asked(), quint64(count));
    while (!curves.empty()) {
        QCOMPARE(extents.over(0.0, 10.0).max, 4.0 + static_cast<double>(curves.size()));
        curves.pop_back();
    }
    QCOMPARE(extents.asked(), quint64(count));
    QVERIFY(extents.isConsistent());
}

// A curve keeps what it found for one window only.
void tst_curveExtents::noticesACurveThatAnotherAsks()
{
    stripChartCurve_t curve;
    curve.addPoints({{1.0, 5.0, Qt::red}, {20.0, 50.0, Qt::red}});
    curveExtents_t early;
    curveExtents_t late;
    early.add(record(curve));
    late.add(record(curve));
    QCOMPARE(early.over(0.0, 10.0).max, 5.0);
    QCOMPARE(late.over(15.0, 30.0).min, 50.0);
    QVERIFY(!early.isCurrent());
    QVERIFY(late.isCurrent());
    QCOMPARE(early.over(0.0, 10.0).max, 5.0);
    QVERIFY(!late.isCurrent());
    curve.addPoint(25.0, 60.0); // inside the one, outside the other
    QCOMPARE(early.over(0.0, 10.0).max, 5.0);
    QCOMPARE(late.over(15.0, 30.0).max, 60.0);
}

void tst_curveExtents::mayEndBeforeItsCurves()
{
    stripChartCurve_t curve;
    auto extents = std::make_unique<curveExtents_t>();
    extents->add(record(curve));
    extents.reset();
    curve.addPoint(1.0, 5.0);
    QCOMPARE(curve.valueMax(), 5.0);
}

void tst_curveExtents::equalsAScanWhileCurvesComeAndGo()
{
    random_t random(25);
    curves_t curves;
    curveExtents_t extents[2];
    std::vector<stripChartCurve_t*> members[2];
    double from[2] = {0.0, 0.0};
    double now = 0.0;
    for (int step = 0; step < 5000; ++step) {
        const auto one = [&](size_t size) {
            return static_cast<size_t>(random.integer(0, static_cast<int>(size) - 1));
        };
        const size_t which = one(2);
        now += 0.05;
        switch (curves.empty() ? 0 : random.integer(0, 12)) {
        case 0:
        case 1:
            curves.push_back(std::make_unique<stripChartCurve_t>());
            curves.back()->dataDuration(random.oneOf<double>({0.5, 5.0, 7200.0}));
            break;
        case 2: {
            stripChartCurve_t* const curve = curves[one(curves.size())].get();
            extents[which].add(record(*curve));
            auto& in = members[which];
            if (std::find(in.begin(), in.end(), curve) == in.end())
                in.push_back(curve);
            break;
        }
        case 3:
            if (random.chance(0.3)) {
                stripChartCurve_t* const curve = curves[one(curves.size())].get();
                extents[which].remove(record(*curve));
                auto& in = members[which];
                in.erase(std::remove(in.begin(), in.end(), curve), in.end());
            }
            break;
        case 4:
            if (random.chance(0.3)) {
                const size_t gone = one(curves.size());
                for (auto& in : members)
                    in.erase(std::remove(in.begin(), in.end(), curves[gone].get()), in.end());
                curves.erase(curves.begin() + static_cast<std::ptrdiff_t>(gone));
            }
            break;
        case 5:
            curves[one(curves.size())]->clear();
            break;
        case 6:
            from[which] = now - random.oneOf<double>({0.5, 3.0, 10.0});
            break;
        default:
            curves[one(curves.size())]->addPoint(now, random.real(-10.0, 10.0));
        }

        for (size_t i = 0; i < 2; ++i) {
            if (random.chance(0.3))
                continue; // several changes between two questions
            extremes_t wanted;
            for (stripChartCurve_t* const curve : members[i])
                wanted.include(scan(*curve, from[i], from[i] + 3.0));
            const extremes_t found = extents[i].over(from[i], from[i] + 3.0);
            QCOMPARE(found.min, wanted.min);
            QCOMPARE(found.max, wanted.max);
            QVERIFY(extents[i].isCurrent());
        }
        QVERIFY(extents[0].isConsistent());
        QVERIFY(extents[1].isConsistent());
    }
    QVERIFY(members[0].size() > 3);
}

ZORBIN_TEST_MAIN(tst_curveExtents, QApplication)
#include "tst_curveExtents.moc"
