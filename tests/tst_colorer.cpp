#include "cycleColorer.h"
#include "palette.h"
#include "randomNumbers.h"
#include "rangeColorer.h"
#include "testCase.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

using namespace zorbin_qt_gui;
using table_t = std::vector<unsigned int>;

static_assert(!std::is_copy_constructible<rangeColorer_t>::value, "colourers aren't copied");
static_assert(!std::is_copy_constructible<cycleColorer_t>::value, "colourers aren't copied");
static_assert(std::is_abstract<colorer_t>::value, "how a value selects an entry is open");

static constexpr float infinity = std::numeric_limits<float>::infinity();
static constexpr float nan_ = std::numeric_limits<float>::quiet_NaN();
static constexpr float greatest = std::numeric_limits<float>::max();
static constexpr float least = std::numeric_limits<float>::denorm_min();
static constexpr float belowTwoTo31 = 2147483520.0F; // the last float before it

// A table whose entries tell their indices.
static table_t countingTable(unsigned entries)
{
    table_t table;
    for (unsigned i = 0; i < entries; ++i)
        table.push_back(0xFF000000U | i);
    return table;
}

static void setTable(colorer_t& colorer, const table_t& table)
{
    palette_t palette;
    palette.setColorTable(table, palette_t::DEPTH_24);
    colorer.setPalette(palette);
}

static int entryOf(const colorer_t& colorer, float value)
{
    return static_cast<int>(colorer.color(value) & 0xFFFFFFU);
}

static float floatOfBits(quint32 bits)
{
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// What is worth a try with any range and any interval: the edges of the numbers and of the bands
// around them, and random floats of every bit pattern.
static std::vector<float> samples(random_t& random, const std::vector<float>& edges)
{
    std::vector<float> values = {0.0F,      -0.0F, least,         -least,         infinity,
                                 -infinity, nan_,  -nan_,         greatest,       -greatest,
                                 1.0F,      -1.0F, 2147483648.0F, -2147483648.0F, belowTwoTo31};
    for (const float edge : edges) {
        for (const float value : {edge, -edge}) {
            values.push_back(value);
            values.push_back(std::nextafter(value, infinity));
            values.push_back(std::nextafter(value, -infinity));
        }
    }
    for (int i = 0; i < 3000; ++i)
        values.push_back(floatOfBits(static_cast<quint32>(random.real(0.0, 4294967296.0))));
    for (int i = 0; i < 1000; ++i)
        values.push_back(static_cast<float>(random.real(-20.0, 20.0)));
    return values;
}

static const std::vector<unsigned> tableSizes = {1, 2, 3, 7, 16, 255, 256, 257, 65536};

// Takes the first entry for any value; counts how often it was asked.
class countingColorer_t : public colorer_t
{
public:
    QRgb color(float value) const override
    {
        asked.push_back(value);
        return colorTable().empty() ? 0 : colorTable().front();
    }
    bool _isInitialized() const override { return ready; }

    bool ready = true;
    mutable std::vector<float> asked;
};

/// The colourers, which map values to the entries of a palette's table.
class tst_colorer : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutATable();
    void needsATableAndTheSubclassToBeInitialized();
    void isInitializedWhateverTheRangeOrInterval();
    void isNotInitializedByAnEmptyTable();
    void copiesThePalettesTable();
    void takesTheTableOfTheOtherDepthWhereThereIsNone();
    void replacesTheTable();
    void givesNoColorWithoutATable();

    void stretchesTheRangeOverTheTable_data();
    void stretchesTheRangeOverTheTable();
    void givesTheFirstEntryWhereAnIndexDoesNotFitAnInt();
    void runsBackwardsFromTheGreaterEnd();
    void mapsAllToTheFirstEntryUntilThereIsARange();
    void keepsTheScaleOfTheRangeBeforeAnEmptyOne();
    void keepsTheScaleWhenTheTableIsReplaced();
    void hasNoScaleBeforeThereIsATable();
    void losesTheScaleWhenTheRangeExceedsTheFloats();
    void mapsAllToTheFirstEntryWhenTheScaleExceedsTheFloats();
    void subtractsExactly();

    void repeatsTheTable_data();
    void repeatsTheTable();
    void countsBandsBeyondAnIntAsBandTwoTo31_data();
    void countsBandsBeyondAnIntAsBandTwoTo31();
    void takesANegativeIntervalAsItsAbsoluteValue();
    void givesBandZeroForAnInfiniteInterval();
    void dividesExactly();

    void colorsManyValuesOneByOneUnlessOverridden();
    void writesExactlyAsManyColorsAsAsked_data();
    void writesExactlyAsManyColorsAsAsked();
    void colorsManyValuesAsZeroWithoutATable();
    void rangesAgreeWithThePlainRule();
    void cyclesAgreeWithThePlainRule();
};

void tst_colorer::startsWithoutATable()
{
    QVERIFY(rangeColorer_t().colorTable().empty());
    QVERIFY(cycleColorer_t().colorTable().empty());
    QVERIFY(!rangeColorer_t().isInitialized());
    QVERIFY(!cycleColorer_t().isInitialized());
    QVERIFY(rangeColorer_t()._isInitialized());
    QVERIFY(cycleColorer_t()._isInitialized());
}

void tst_colorer::needsATableAndTheSubclassToBeInitialized()
{
    countingColorer_t colorer;
    QVERIFY(!colorer.isInitialized());
    setTable(colorer, countingTable(1));
    QVERIFY(colorer.isInitialized());
    colorer.ready = false;
    QVERIFY(!colorer.isInitialized());
}

void tst_colorer::isInitializedWhateverTheRangeOrInterval()
{
    rangeColorer_t range;
    setTable(range, countingTable(1));
    QVERIFY(range.isInitialized());
    range.setRangeValues(nan_, nan_);
    QVERIFY(range.isInitialized());

    cycleColorer_t cycle;
    setTable(cycle, countingTable(1));
    QVERIFY(cycle.isInitialized());
    cycle.setInterval(nan_);
    QVERIFY(cycle.isInitialized());
}

void tst_colorer::isNotInitializedByAnEmptyTable()
{
    rangeColorer_t range;
    cycleColorer_t cycle;
    for (const table_t& table : {table_t(), countingTable(2), table_t()}) {
        setTable(range, table);
        setTable(cycle, table);
        QCOMPARE(range.isInitialized(), !table.empty());
        QCOMPARE(cycle.isInitialized(), !table.empty());
    }
}

void tst_colorer::copiesThePalettesTable()
{
    rangeColorer_t colorer;
    {
        palette_t palette;
        palette.setColorTable({0xFF102030, 0x80405060}, palette_t::DEPTH_24);
        palette.setColorTable({0xFF000001}, palette_t::DEPTH_8);
        colorer.setPalette(palette);
        palette.clear();
    }
    QCOMPARE(colorer.colorTable(), (table_t{0xFF102030, 0x80405060}));
    QCOMPARE(&colorer.colorTable(), &colorer.colorTable());
}

void tst_colorer::takesTheTableOfTheOtherDepthWhereThereIsNone()
{
    palette_t palette;
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_8);
    cycleColorer_t colorer;
    colorer.setPalette(palette);
    QCOMPARE(colorer.colorTable(), table_t{0xFF000001});
}

void tst_colorer::replacesTheTable()
{
    cycleColorer_t colorer;
    setTable(colorer, countingTable(4));
    setTable(colorer, {0xFF123456});
    QCOMPARE(colorer.colorTable(), table_t{0xFF123456});
    QCOMPARE(colorer.color(1.0F), 0xFF123456U);
}

void tst_colorer::givesNoColorWithoutATable()
{
    rangeColorer_t range;
    range.setRangeValues(0.0F, 1.0F);
    cycleColorer_t cycle;
    cycle.setInterval(1.0F);
    for (const float value : {0.0F, 1.0F, infinity, nan_}) {
        QCOMPARE(range.color(value), 0U);
        QCOMPARE(cycle.color(value), 0U);
    }
}

void tst_colorer::stretchesTheRangeOverTheTable_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("entry");

    QTest::newRow("start") << 0.0F << 0;
    QTest::newRow("minus zero") << -0.0F << 0;
    QTest::newRow("not quite an entry") << 0.039F << 0; // 0.998
    QTest::newRow("an entry") << 0.04F << 1;            // 1.024
    QTest::newRow("middle") << 5.0F << 128;
    QTest::newRow("before the end") << 9.99F << 255; // 255.74
    QTest::newRow("end") << 10.0F << 255;
    QTest::newRow("behind the end") << 1000.0F << 255;
    QTest::newRow("just before the start") << -0.03F << 0;
    QTest::newRow("before the start") << -5.0F << 0;
    QTest::newRow("least above the start") << least << 0;
    QTest::newRow("NaN") << nan_ << 0;
    QTest::newRow("infinity") << infinity << 0;
    QTest::newRow("minus infinity") << -infinity << 0;
}

void tst_colorer::stretchesTheRangeOverTheTable()
{
    QFETCH(float, value);
    rangeColorer_t colorer;
    setTable(colorer, countingTable(256));
    colorer.setRangeValues(0.0F, 10.0F); // 25.6 entries per unit
    QTEST(entryOf(colorer, value), "entry");
}

void tst_colorer::givesTheFirstEntryWhereAnIndexDoesNotFitAnInt()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(2));
    colorer.setRangeValues(0.0F, 2.0F); // an entry per unit
    QCOMPARE(entryOf(colorer, belowTwoTo31), 1);
    QCOMPARE(entryOf(colorer, 2147483648.0F), 0);
    QCOMPARE(entryOf(colorer, greatest), 0);
    QCOMPARE(entryOf(colorer, -2147483648.0F), 0);
    QCOMPARE(entryOf(colorer, -greatest), 0);
}

void tst_colorer::runsBackwardsFromTheGreaterEnd()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(10));
    colorer.setRangeValues(10.0F, 0.0F);
    QCOMPARE(entryOf(colorer, 11.0F), 0);
    QCOMPARE(entryOf(colorer, 10.0F), 0);
    QCOMPARE(entryOf(colorer, 9.5F), 0);
    QCOMPARE(entryOf(colorer, 9.0F), 1);
    QCOMPARE(entryOf(colorer, 0.5F), 9);
    QCOMPARE(entryOf(colorer, 0.0F), 9);
    QCOMPARE(entryOf(colorer, -100.0F), 9);
}

void tst_colorer::mapsAllToTheFirstEntryUntilThereIsARange()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(256));
    QCOMPARE(entryOf(colorer, 0.0F), 0);
    QCOMPARE(entryOf(colorer, 1000.0F), 0);
    colorer.setRangeValues(3.0F, 3.0F);
    QCOMPARE(entryOf(colorer, -1000.0F), 0);
    QCOMPARE(entryOf(colorer, 3.0F), 0);
    QCOMPARE(entryOf(colorer, 1000.0F), 0);
}

void tst_colorer::keepsTheScaleOfTheRangeBeforeAnEmptyOne()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(10));
    colorer.setRangeValues(0.0F, 10.0F);
    colorer.setRangeValues(3.0F, 3.0F); // from 3 on at an entry per unit
    QCOMPARE(entryOf(colorer, 2.0F), 0);
    QCOMPARE(entryOf(colorer, 3.9F), 0);
    QCOMPARE(entryOf(colorer, 4.0F), 1);
    QCOMPARE(entryOf(colorer, 12.0F), 9);
}

void tst_colorer::keepsTheScaleWhenTheTableIsReplaced()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(256));
    colorer.setRangeValues(0.0F, 10.0F);
    setTable(colorer, countingTable(16)); // still 25.6 entries per unit
    QCOMPARE(entryOf(colorer, 0.04F), 1);
    QCOMPARE(entryOf(colorer, 0.58F), 14);
    QCOMPARE(entryOf(colorer, 0.586F), 15);
    QCOMPARE(entryOf(colorer, 10.0F), 15);
    colorer.setRangeValues(0.0F, 10.0F);
    QCOMPARE(entryOf(colorer, 0.586F), 0);
}

void tst_colorer::hasNoScaleBeforeThereIsATable()
{
    rangeColorer_t colorer;
    colorer.setRangeValues(0.0F, 10.0F); // no entries per 10 units
    setTable(colorer, countingTable(256));
    QCOMPARE(entryOf(colorer, 10.0F), 0);
}

void tst_colorer::losesTheScaleWhenTheRangeExceedsTheFloats()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(256));
    colorer.setRangeValues(-greatest, greatest); // their difference is an infinite float
    QCOMPARE(entryOf(colorer, 0.0F), 0);
    QCOMPARE(entryOf(colorer, greatest), 0);
}

void tst_colorer::mapsAllToTheFirstEntryWhenTheScaleExceedsTheFloats()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(256));
    colorer.setRangeValues(0.0F, least);
    QCOMPARE(entryOf(colorer, 0.0F), 0); // 0 times infinity
    QCOMPARE(entryOf(colorer, least), 0);
    QCOMPARE(entryOf(colorer, 1.0F), 0);
}

void tst_colorer::subtractsExactly()
{
    rangeColorer_t colorer;
    setTable(colorer, countingTable(4));
    colorer.setRangeValues(-1.0F, 1.0F);   // two entries per unit
    QCOMPARE(entryOf(colorer, -1e-9F), 1); // as floats the difference would be 1
    QCOMPARE(entryOf(colorer, 0.0F), 2);
}

void tst_colorer::repeatsTheTable_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("entry");

    QTest::newRow("zero") << 0.0F << 0;
    QTest::newRow("end of the first band") << 4.9F << 0;
    QTest::newRow("second band") << 5.0F << 1;
    QTest::newRow("end of the second band") << 9.99F << 1;
    QTest::newRow("last band") << 19.9F << 3;
    QTest::newRow("second turn") << 20.0F << 0;
    QTest::newRow("second turn's second band") << 26.0F << 1;
    QTest::newRow("many turns") << 2000015.0F << 3;
    QTest::newRow("mirrored") << -7.0F << 1;
    QTest::newRow("mirrored first band") << -4.9F << 0;
    QTest::newRow("mirrored edge") << -5.0F << 1;
    QTest::newRow("mirrored last band") << -19.9F << 3;
}

void tst_colorer::repeatsTheTable()
{
    QFETCH(float, value);
    cycleColorer_t colorer;
    setTable(colorer, countingTable(4));
    colorer.setInterval(5.0F);
    QTEST(entryOf(colorer, value), "entry");
}

void tst_colorer::countsBandsBeyondAnIntAsBandTwoTo31_data()
{
    QTest::addColumn<float>("interval");
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("entry"); // of 7; 2^31 leaves a remainder of 2

    QTest::newRow("last band that fits") << 1.0F << belowTwoTo31 << 0; // 2147483520 = 7 * 306783360
    QTest::newRow("2^31") << 1.0F << 2147483648.0F << 2;
    QTest::newRow("minus 2^31") << 1.0F << -2147483648.0F << 2;
    QTest::newRow("beyond") << 1.0F << 4294967296.0F << 2;
    QTest::newRow("greatest") << 1.0F << greatest << 2;
    QTest::newRow("infinity") << 1.0F << infinity << 2;
    QTest::newRow("minus infinity") << 1.0F << -infinity << 2;
    QTest::newRow("NaN") << 1.0F << nan_ << 2;
    QTest::newRow("no interval") << 0.0F << 3.0F << 2;
    QTest::newRow("no interval, zero") << 0.0F << 0.0F << 2;
    QTest::newRow("least interval") << least << 1.0F << 2;
    QTest::newRow("NaN as the interval") << nan_ << 1.0F << 2;
    QTest::newRow("infinity by infinity") << infinity << infinity << 2;
}

void tst_colorer::countsBandsBeyondAnIntAsBandTwoTo31()
{
    QFETCH(float, interval);
    QFETCH(float, value);
    cycleColorer_t colorer;
    setTable(colorer, countingTable(7));
    colorer.setInterval(interval);
    QTEST(entryOf(colorer, value), "entry");
}

void tst_colorer::takesANegativeIntervalAsItsAbsoluteValue()
{
    cycleColorer_t colorer;
    setTable(colorer, countingTable(4));
    colorer.setInterval(-5.0F);
    QCOMPARE(entryOf(colorer, 4.9F), 0);
    QCOMPARE(entryOf(colorer, 5.0F), 1);
    QCOMPARE(entryOf(colorer, -12.0F), 2);
}

void tst_colorer::givesBandZeroForAnInfiniteInterval()
{
    cycleColorer_t colorer;
    setTable(colorer, countingTable(7));
    colorer.setInterval(infinity);
    QCOMPARE(entryOf(colorer, 0.0F), 0);
    QCOMPARE(entryOf(colorer, -greatest), 0);
}

void tst_colorer::dividesExactly()
{
    cycleColorer_t colorer;
    setTable(colorer, countingTable(16));
    colorer.setInterval(0.1F);           // slightly more than a tenth
    QCOMPARE(entryOf(colorer, 1.0F), 9); // a float quotient would have been rounded to 10
}

void tst_colorer::colorsManyValuesOneByOneUnlessOverridden()
{
    countingColorer_t colorer;
    setTable(colorer, {0xFF0000AA});
    const std::vector<float> values = {3.0F, 1.0F, 2.0F};
    std::vector<QRgb> colors(3);
    colorer.colors(values.data(), colors.data(), 3);
    QCOMPARE(colorer.asked, values);
    QCOMPARE(colors, std::vector<QRgb>(3, 0xFF0000AA));
}

void tst_colorer::writesExactlyAsManyColorsAsAsked_data()
{
    QTest::addColumn<unsigned>("count");
    for (const unsigned count : {0U, 1U, 255U, 256U, 257U, 512U, 1000U})
        QTest::addRow("%u", count) << count;
}

void tst_colorer::writesExactlyAsManyColorsAsAsked()
{
    QFETCH(unsigned, count);
    rangeColorer_t range;
    setTable(range, countingTable(1000));
    range.setRangeValues(0.0F, 1000.0F);
    cycleColorer_t cycle;
    setTable(cycle, countingTable(1000));
    cycle.setInterval(1.0F);
    std::vector<float> values;
    std::vector<QRgb> wanted;
    for (unsigned i = 0; i < count; ++i) {
        values.push_back(static_cast<float>(i));
        wanted.push_back(0xFF000000U | i);
    }
    constexpr QRgb untouched = 0x12345678;
    wanted.push_back(untouched);
    for (const colorer_t* colorer :
         {static_cast<colorer_t*>(&range), static_cast<colorer_t*>(&cycle)}) {
        std::vector<QRgb> colors(count + 1, untouched);
        colorer->colors(values.data(), colors.data(), count);
        QCOMPARE(colors, wanted);
    }
}

void tst_colorer::colorsManyValuesAsZeroWithoutATable()
{
    const std::vector<float> values = {0.0F, nan_, infinity};
    const std::vector<QRgb> wanted = {0, 0, 0, 7};
    std::vector<QRgb> colors(4, 7);
    rangeColorer_t().colors(values.data(), colors.data(), 3);
    QCOMPARE(colors, wanted);
    colors.assign(4, 7);
    cycleColorer_t().colors(values.data(), colors.data(), 3);
    QCOMPARE(colors, wanted);
}

static std::size_t plainRangeEntry(float value, float min, float max, std::size_t entries)
{
    const auto span = static_cast<float>(static_cast<double>(max) - static_cast<double>(min));
    const float scale =
        span == 0.0F ? 0.0F
                     : static_cast<float>(static_cast<double>(entries) / static_cast<double>(span));
    const double x =
        (static_cast<double>(value) - static_cast<double>(min)) * static_cast<double>(scale);
    if (!(x >= 1.0 && x < 2147483648.0))
        return 0;
    return std::min(static_cast<std::size_t>(std::floor(x)), entries - 1);
}

static std::size_t plainCycleEntry(float value, float interval, std::size_t entries)
{
    const double x = std::fabs(static_cast<double>(value) / static_cast<double>(interval));
    const std::size_t band =
        x < 2147483648.0 ? static_cast<std::size_t>(std::floor(x)) : 2147483648U;
    return band % entries;
}

// Names the first value whose colour is not that of the entry wanted, one by one or among many.
template <typename entryOf_t>
static QString firstWrong(const colorer_t& colorer, const std::vector<float>& values,
                          const entryOf_t& wantedEntry)
{
    std::vector<QRgb> colors(values.size());
    colorer.colors(values.data(), colors.data(), static_cast<unsigned>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const QRgb wanted = colorer.colorTable()[wantedEntry(values[i])];
        if (colorer.color(values[i]) != wanted || colors[i] != wanted)
            return QStringLiteral("%1: %2 alone, %3 among others instead of %4")
                .arg(static_cast<double>(values[i]), 0, 'g', 9)
                .arg(colorer.color(values[i]), 0, 16)
                .arg(colors[i], 0, 16)
                .arg(wanted, 0, 16);
    }
    return {};
}

void tst_colorer::rangesAgreeWithThePlainRule()
{
    random_t random;
    const std::vector<std::pair<float, float>> ranges = {
        {0.0F, 10.0F},    {10.0F, 0.0F},     {-1.0F, 1.0F},         {3.0F, 3.0F},
        {0.0F, 1e-30F},   {-1e30F, 1e30F},   {-greatest, greatest}, {0.0F, least},
        {0.0F, infinity}, {-infinity, 0.0F}, {nan_, 1.0F},          {0.0F, nan_},
        {0.0F, 1.0F / 3}, {1e6F, 1e6F + 1},  {0.0F, 2147483648.0F}};
    for (const unsigned entries : tableSizes) {
        const table_t table = countingTable(entries);
        for (const auto& range : ranges) {
            rangeColorer_t colorer;
            setTable(colorer, table);
            colorer.setRangeValues(range.first, range.second);
            const std::vector<float> values =
                samples(random, {range.first, range.second, 0.5F * (range.first + range.second)});
            QCOMPARE(firstWrong(colorer, values,
                                [&](float value) {
                                    return plainRangeEntry(value, range.first, range.second,
                                                           entries);
                                }),
                     QString());
        }
    }
}

void tst_colorer::cyclesAgreeWithThePlainRule()
{
    random_t random;
    for (const unsigned entries : tableSizes) {
        cycleColorer_t colorer;
        setTable(colorer, countingTable(entries));
        for (const float interval : {0.0F, -0.0F, 1.0F, 5.0F, -5.0F, 0.1F, 1.0F / 3, 1e-8F, 1e-30F,
                                     1e30F, least, greatest, infinity, nan_}) {
            colorer.setInterval(interval);
            const auto turn = static_cast<float>(entries) * interval;
            std::vector<float> values =
                samples(random, {interval, 2 * interval, turn, 3 * turn, 1e5F * turn});
            for (int i = 0; i < 1000; ++i) // the last bands that fit, where a remainder is hardest
                values.push_back(static_cast<float>(random.real(0.0, 2147483648.0)) * interval);
            QCOMPARE(
                firstWrong(colorer, values,
                           [&](float value) { return plainCycleEntry(value, interval, entries); }),
                QString());
        }
    }
}

ZORBIN_TEST_MAIN(tst_colorer, QApplication)
#include "tst_colorer.moc"
