#include "numbers_p.h"
#include "testCase.h"

#include <limits>

using zorbin_qt_gui::rounded;
using zorbin_qt_gui::truncated;
using zorbin_qt_gui::truncatedOrLeast;
using zorbin_qt_gui::truncatedToUnsigned;

class tst_numbers : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void truncatesTowardZeroAndSaturates_data();
    void truncatesTowardZeroAndSaturates();
    void truncatesTowardZeroOrGivesTheLeast_data();
    void truncatesTowardZeroOrGivesTheLeast();
    void truncatesToUnsignedAndSaturates_data();
    void truncatesToUnsignedAndSaturates();
    void roundsHalvesToTheEven_data();
    void roundsHalvesToTheEven();
};

void tst_numbers::truncatesTowardZeroAndSaturates_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int intMax = 2147483647;
    constexpr int intMin = -2147483647 - 1;
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("wanted");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("minus zero") << -0.0 << 0;
    QTest::newRow("just below one") << 0.9999999 << 0;
    QTest::newRow("just above minus one") << -0.9999999 << 0;
    QTest::newRow("negative") << -3.7 << -3;
    QTest::newRow("greatest int") << 2147483647.0 << intMax;
    QTest::newRow("greatest int and a fraction") << 2147483647.5 << intMax;
    QTest::newRow("one beyond the greatest int") << 2147483648.0 << intMax;
    QTest::newRow("least int") << -2147483648.0 << intMin;
    QTest::newRow("least int and a fraction") << -2147483648.5 << intMin;
    QTest::newRow("one beyond the least int") << -2147483649.0 << intMin;
    QTest::newRow("huge") << 1e300 << intMax;
    QTest::newRow("minus huge") << -1e300 << intMin;
    QTest::newRow("infinity") << infinity << intMax;
    QTest::newRow("minus infinity") << -infinity << intMin;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void tst_numbers::truncatesTowardZeroAndSaturates()
{
    QFETCH(double, x);
    QTEST(truncated(x), "wanted");
}

void tst_numbers::truncatesTowardZeroOrGivesTheLeast_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int intMin = -2147483647 - 1;
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("wanted");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("minus zero") << -0.0 << 0;
    QTest::newRow("just below one") << 0.9999999 << 0;
    QTest::newRow("just above minus one") << -0.9999999 << 0;
    QTest::newRow("negative") << -3.7 << -3;
    QTest::newRow("greatest int") << 2147483647.0 << 2147483647;
    QTest::newRow("greatest int and a fraction") << 2147483647.5 << 2147483647;
    QTest::newRow("one beyond the greatest int") << 2147483648.0 << intMin;
    QTest::newRow("one above the least int") << -2147483647.0 << -2147483647;
    QTest::newRow("least int") << -2147483648.0 << intMin;
    QTest::newRow("least int and a fraction") << -2147483648.5 << intMin;
    QTest::newRow("one beyond the least int") << -2147483649.0 << intMin;
    QTest::newRow("huge") << 1e300 << intMin;
    QTest::newRow("minus huge") << -1e300 << intMin;
    QTest::newRow("infinity") << infinity << intMin;
    QTest::newRow("minus infinity") << -infinity << intMin;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << intMin;
}

void tst_numbers::truncatesTowardZeroOrGivesTheLeast()
{
    QFETCH(double, x);
    QTEST(truncatedOrLeast(x), "wanted");
}

void tst_numbers::truncatesToUnsignedAndSaturates_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr unsigned unsignedMax = 4294967295u;
    QTest::addColumn<double>("x");
    QTest::addColumn<unsigned>("wanted");
    QTest::newRow("zero") << 0.0 << 0u;
    QTest::newRow("minus zero") << -0.0 << 0u;
    QTest::newRow("just below one") << 0.9999999 << 0u;
    QTest::newRow("a fraction") << 3.7 << 3u;
    QTest::newRow("just below zero") << -1e-300 << 0u;
    QTest::newRow("negative") << -3.7 << 0u;
    QTest::newRow("beyond the greatest int") << 2147483648.5 << 2147483648u;
    QTest::newRow("greatest") << 4294967295.0 << unsignedMax;
    QTest::newRow("greatest and a fraction") << 4294967295.5 << unsignedMax;
    QTest::newRow("one beyond the greatest") << 4294967296.0 << unsignedMax;
    QTest::newRow("huge") << 1e300 << unsignedMax;
    QTest::newRow("minus huge") << -1e300 << 0u;
    QTest::newRow("infinity") << infinity << unsignedMax;
    QTest::newRow("minus infinity") << -infinity << 0u;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0u;
}

void tst_numbers::truncatesToUnsignedAndSaturates()
{
    QFETCH(double, x);
    QTEST(truncatedToUnsigned(x), "wanted");
}

void tst_numbers::roundsHalvesToTheEven_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("wanted");
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("just below a half") << 0.49999999999999994 << 0.0;
    QTest::newRow("a half") << 0.5 << 0.0;
    QTest::newRow("just above a half") << 0.5000000000000001 << 1.0;
    QTest::newRow("one and a half") << 1.5 << 2.0;
    QTest::newRow("two and a half") << 2.5 << 2.0;
    QTest::newRow("whole") << 2147483648.0 << 2147483648.0;
    QTest::newRow("a fraction beyond the greatest int") << 2147483648.75 << 2147483649.0;
    QTest::newRow("greatest") << 2251799813685248.0 << 2251799813685248.0;
}

void tst_numbers::roundsHalvesToTheEven()
{
    QFETCH(double, x);
    QTEST(rounded(x), "wanted");
}

ZORBIN_TEST_MAIN(tst_numbers, QCoreApplication)
#include "tst_numbers.moc"
