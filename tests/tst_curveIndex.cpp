#include "curveIndex_p.h"
#include "testCase.h"

#include "randomNumbers.h"

#include <limits>

using namespace zorbin_qt_gui;
using points_t = curveIndex_t::points_t;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class tst_curveIndex : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void extremesLeaveOutWhatIsNotFinite();
    void extremesEqualAScanWhilePointsComeAndGo();
    void breaksTellWhereLinesChange();
    void breaksFollowTheThreshold();
    void startsAfreshWhenTheQueueChangesBehindItsBack();
    void listsBreaksAfreshWhenTheQueueChangesBehindItsBack_data();
    void listsBreaksAfreshWhenTheQueueChangesBehindItsBack();
    void noticesWhatNoLongerFits();
    void comparesColoursAsQtDoes();
    void comparesNoPadding();
    void searchesTreatNanAsNoBound();
    void searchesFindEveryPlace();
};

static extremes_t scan(const points_t& points, size_t first, size_t last)
{
    extremes_t result;
    for (size_t i = first; i < last; ++i)
        result.include(points[i].value);
    return result;
}

void tst_curveIndex::extremesLeaveOutWhatIsNotFinite()
{
    extremes_t extremes;
    QCOMPARE(extremes.min, std::numeric_limits<double>::max());
    QCOMPARE(extremes.max, -std::numeric_limits<double>::max());
    for (const double value : {notANumber, infinity, -infinity, 3.0, -4.0})
        extremes.include(value);
    QCOMPARE(extremes.min, -4.0);
    QCOMPARE(extremes.max, 3.0);
}

void tst_curveIndex::extremesEqualAScanWhilePointsComeAndGo()
{
    random_t random(20);
    points_t points;
    curveIndex_t index;
    double time = 0.0;
    for (int step = 0; step < 300; ++step) {
        const int added = random.integer(0, random.chance(0.1) ? 5000 : 40);
        for (int i = 0; i < added; ++i) {
            time += random.real(0.1, 2.0);
            const double value =
                random.chance(0.01) ? random.oneOf<double>({notANumber, infinity, -infinity, 1e300})
                                    : random.real(-100.0, 100.0);
            points.emplace_back(time, value, random.chance(0.02) ? Qt::red : Qt::blue);
        }
        const auto size = static_cast<int>(points.size());
        const int dropped = random.integer(0, random.chance(0.05) ? size : qMin(size, 50));
        index.dropOldest(points, static_cast<size_t>(dropped));
        points.erase(points.begin(), points.begin() + dropped);
        if (random.chance(0.5))
            index.followBreaks(points, 1.5);

        for (int query = 0; query < 5; ++query) {
            const int first = random.integer(0, size - dropped);
            const int last = random.integer(first, size - dropped);
            const extremes_t found =
                index.extremes(points, static_cast<size_t>(first), static_cast<size_t>(last));
            const extremes_t wanted =
                scan(points, static_cast<size_t>(first), static_cast<size_t>(last));
            QCOMPARE(found.min, wanted.min);
            QCOMPARE(found.max, wanted.max);
        }
        QVERIFY(index.isConsistent(points));
    }
    QVERIFY(index.dropped() > 0);
    QCOMPARE(index.generation(), quint64(1)); // the gap threshold was set once
}

void tst_curveIndex::breaksTellWhereLinesChange()
{
    points_t points;
    points.emplace_back(0.0, 0.0, Qt::blue);
    points.emplace_back(1.0, 0.0, Qt::blue);
    points.emplace_back(2.0, 0.0, Qt::red); // 2: another colour
    points.emplace_back(3.0, 0.0, Qt::red);
    points.emplace_back(5.0, 0.0, Qt::red); // 4: a gap, so 5 differs from it
    points.emplace_back(6.0, 0.0, Qt::red);
    points.emplace_back(7.0, 0.0, Qt::red);
    points.emplace_back(8.0, notANumber, Qt::red); // 7 and 8 have no value at one end, 9 has
    points.emplace_back(9.0, 0.0, Qt::red);
    points.emplace_back(10.0, 0.0, Qt::red);
    points.emplace_back(11.0, 0.0, Qt::red);
    curveIndex_t index;
    index.followBreaks(points, 1.5);
    QList<int> breaks;
    for (size_t line = 0; (line = index.nextBreak(line, points.size())) < points.size();)
        breaks.append(static_cast<int>(line));
    QCOMPARE(breaks, (QList<int>{2, 4, 5, 7, 8, 9}));
    QCOMPARE(index.nextBreak(2, 3), size_t(3)); // none before the end asked for
}

void tst_curveIndex::breaksFollowTheThreshold()
{
    points_t points;
    for (int i = 0; i < 10; ++i)
        points.emplace_back(2.0 * i, 0.0, Qt::blue);
    curveIndex_t index;
    index.followBreaks(points, 1.0); // every line is a gap
    QCOMPARE(index.nextBreak(1, 10), size_t(2));
    index.followBreaks(points, 2.0); // a step as long as the threshold is none
    QCOMPARE(index.nextBreak(1, 10), size_t(10));
    index.followBreaks(points, notANumber);
    QCOMPARE(index.nextBreak(1, 10), size_t(10));
    index.followBreaks(points, -1.0);
    QCOMPARE(index.nextBreak(1, 10), size_t(2));
    QVERIFY(index.isConsistent(points));
}

void tst_curveIndex::startsAfreshWhenTheQueueChangesBehindItsBack()
{
    points_t points;
    for (int i = 0; i < 1000; ++i)
        points.emplace_back(i, i, Qt::blue);
    curveIndex_t index;
    QCOMPARE(index.extremes(points, 0, 1000).max, 999.0);
    index.followBreaks(points, 0.5);

    points.clear();
    for (int i = 0; i < 900; ++i)
        points.emplace_back(i + 0.25, -i, Qt::blue);
    QCOMPARE(index.extremes(points, 0, 900).max, 0.0);
    QCOMPARE(index.extremes(points, 0, 900).min, -899.0);
    index.followBreaks(points, 2.0);
    QCOMPARE(index.nextBreak(1, 900), size_t(900));
    QVERIFY(index.isConsistent(points));
}

void tst_curveIndex::listsBreaksAfreshWhenTheQueueChangesBehindItsBack_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("shorter") << 9;
    QTest::newRow("as long") << 10;
    QTest::newRow("longer") << 11;
}

void tst_curveIndex::listsBreaksAfreshWhenTheQueueChangesBehindItsBack()
{
    QFETCH(int, size);
    points_t points;
    for (int i = 0; i < 10; ++i)
        points.emplace_back(i, 0.0, i < 5 ? Qt::blue : Qt::red);
    curveIndex_t index;
    index.followBreaks(points, 1.0);
    QCOMPARE(index.nextBreak(1, 10), size_t(5));
    const quint64 before = index.generation();

    points.clear();
    for (int i = 0; i < size; ++i)
        points.emplace_back(i + 0.25, 0.0, i < 7 ? Qt::blue : Qt::red);
    const auto end = static_cast<size_t>(size);
    index.followBreaks(points, 1.0);
    QCOMPARE(index.nextBreak(1, end), size_t(7));
    QCOMPARE(index.nextBreak(7, end), end);
    QVERIFY(index.generation() != before);
    QVERIFY(index.isConsistent(points));
}

void tst_curveIndex::noticesWhatNoLongerFits()
{
    points_t points;
    for (int i = 0; i < 200; ++i)
        points.emplace_back(i, i, Qt::blue);
    curveIndex_t index;
    index.extremes(points, 0, 200); // three blocks of 64
    QVERIFY(index.isConsistent(points));
    points[100].value = 1000.0;
    QVERIFY(!index.isConsistent(points));
    points[100].value = 100.0;
    points.resize(192, points.back());
    QVERIFY(index.isConsistent(points));
    points.pop_back();
    QVERIFY(!index.isConsistent(points));
}

void tst_curveIndex::comparesColoursAsQtDoes()
{
    QList<QColor> colors{QColor(),
                         QColor(Qt::black),
                         QColor(0, 0, 0, 0),
                         QColor(10, 20, 30),
                         QColor(10, 20, 30, 40),
                         QColor(10, 20, 31),
                         QColor(QRgba64::fromRgba64(2570, 5140, 7711, 65535)),
                         QColor::fromHsv(0, 0, 0),
                         QColor::fromHsv(-1, 0, 0),
                         QColor::fromHsv(359, 100, 200),
                         QColor::fromHsl(0, 0, 0),
                         QColor::fromHsl(120, 100, 200),
                         QColor::fromHslF(0.334F, 0.392F, 0.784F),
                         QColor::fromHsl(120, 100, 255),
                         QColor::fromHsl(120, 250, 255),
                         QColor::fromCmyk(1, 2, 3, 4),
                         QColor::fromCmyk(1, 2, 3, 5),
                         QColor::fromRgbF(2.0, 0.5, 0.25),
                         QColor::fromRgbF(2.0, 0.5, 0.25, 0.5),
                         QColor::fromRgbF(-1.0, 0.5, 0.25),
                         QColor::fromRgbF(10.0, infinity, 0.25),
                         QColor::fromRgbF(2.0, notANumber, 0.25),
                         QColor(10, 20, 30).toExtendedRgb()};
    random_t random(24);
    for (int i = 0; i < 100; ++i) {
        const auto part = [&] { return random.integer(0, 2) * 120; };
        const QColor rgb(part(), part(), part(), 255 - random.integer(0, 1));
        colors << rgb.convertTo(random.oneOf<QColor::Spec>(
            {QColor::Rgb, QColor::Hsv, QColor::Cmyk, QColor::Hsl, QColor::ExtendedRgb}));
    }
    for (const QColor& a : colors) {
        for (const QColor& b : colors)
            QCOMPARE(sameColor(a, b), a == b);
        QCOMPARE(sameColor(a, QColor(a)), a == a);
    }
}

// What lies behind the parts of a colour is never written.
void tst_curveIndex::comparesNoPadding()
{
    alignas(QColor) unsigned char first[sizeof(QColor)];
    alignas(QColor) unsigned char second[sizeof(QColor)];
    std::fill(std::begin(first), std::end(first), '\xAA');
    std::fill(std::begin(second), std::end(second), '\x55');
    const auto* const a = new (first) QColor(10, 20, 30, 40);
    const auto* const b = new (second) QColor(10, 20, 30, 40);
    QVERIFY(*a == *b);
    QVERIFY(sameColor(*a, *b));
}

void tst_curveIndex::searchesTreatNanAsNoBound()
{
    points_t points;
    QCOMPARE(firstNotBefore(points, 0.0), size_t(0));
    QCOMPARE(firstAfter(points, 0.0), size_t(0));
    for (int i = 0; i < 5; ++i)
        points.emplace_back(i, 0.0, Qt::blue);
    QCOMPARE(firstNotBefore(points, 2.0), size_t(2));
    QCOMPARE(firstNotBefore(points, 2.5), size_t(3));
    QCOMPARE(firstNotBefore(points, 9.0), size_t(5));
    QCOMPARE(firstNotBefore(points, -infinity), size_t(0));
    QCOMPARE(firstNotBefore(points, notANumber), size_t(0));
    QCOMPARE(firstAfter(points, 2.0), size_t(3));
    QCOMPARE(firstAfter(points, 2.5), size_t(3));
    QCOMPARE(firstAfter(points, -1.0), size_t(0));
    QCOMPARE(firstAfter(points, infinity), size_t(5));
    QCOMPARE(firstAfter(points, notANumber), size_t(5));
}

void tst_curveIndex::searchesFindEveryPlace()
{
    points_t points;
    for (size_t size = 0; size < 70; ++size) {
        for (size_t i = 0; i <= size; ++i) {
            const double time = static_cast<double>(i);
            QCOMPARE(firstNotBefore(points, time - 0.5), i);
            QCOMPARE(firstAfter(points, time - 0.5), i);
            if (i < size) {
                QCOMPARE(firstNotBefore(points, time), i);
                QCOMPARE(firstAfter(points, time), i + 1);
            }
        }
        points.emplace_back(static_cast<double>(size), 0.0, Qt::blue);
    }
}

ZORBIN_TEST_MAIN(tst_curveIndex, QCoreApplication)
#include "tst_curveIndex.moc"
