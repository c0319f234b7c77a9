#include "testCase.h"
#include "testRecords.h"
#include "texts.h"

#include <QGeoCoordinate>
#include <cmath>
#include <limits>

using namespace survey_console;

/// How the console writes times, angles and other values.
class tst_consoleTexts : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void writesTimes_data();
    void writesTimes();
    void writesAngles_data();
    void writesAngles();
    void writesBearingsInThreeDigits();
    void writesValuesWithoutMinusZero();
    void writesPositions_data();
    void writesPositions();
    void writesRanges_data();
    void writesRanges();
};

void tst_consoleTexts::writesTimes_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<QString>("seconds");
    QTest::addColumn<QString>("tenths");
    QTest::addColumn<QString>("date");
    const QString none = noValueText();
    QTest::newRow("ship") << lineStart + 205.47 << "00:03:25"
                          << "00:03:25.4"
                          << "2014-08-01";
    QTest::newRow("just before midnight") << lineStart - 0.01 << "23:59:59"
                                          << "23:59:59.9"
                                          << "2014-07-31";
    QTest::newRow("zero") << 0.0 << "00:00:00"
                          << "00:00:00.0"
                          << "1970-01-01";
    QTest::newRow("last") << 253402300799.0 << "23:59:59"
                          << "23:59:59.0"
                          << "9999-12-31";
    QTest::newRow("after the last") << 253402300800.0 << none << none << none;
    QTest::newRow("negative") << -1.0 << none << none << none;
    QTest::newRow("NaN") << std::nan("") << none << none << none;
    QTest::newRow("infinite") << HUGE_VAL << none << none << none;
}

void tst_consoleTexts::writesTimes()
{
    QFETCH(double, time);
    QFETCH(QString, seconds);
    QFETCH(QString, tenths);
    QFETCH(QString, date);
    QCOMPARE(timeText(time), seconds);
    QCOMPARE(timeText(time, 1), tenths);
    QCOMPARE(dateText(time), date);
}

void tst_consoleTexts::writesAngles_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << 218.53 << "218.5";
    QTest::newRow("north") << 0.0 << "0.0";
    QTest::newRow("a turn") << 360.0 << "0.0";
    QTest::newRow("rounds to a turn") << 359.96 << "0.0";
    QTest::newRow("rounds below a turn") << 359.94 << "359.9";
    QTest::newRow("left of north") << -1.4 << "358.6";
    QTest::newRow("a little left of north") << -0.04 << "0.0";
    QTest::newRow("turns") << 730.5 << "10.5";
    QTest::newRow("NaN") << std::nan("") << noValueText();
    QTest::newRow("infinite") << -HUGE_VAL << noValueText();
}

void tst_consoleTexts::writesAngles()
{
    QFETCH(double, degrees);
    QFETCH(QString, text);
    QCOMPARE(angleText(degrees, 1), text);
}

void tst_consoleTexts::writesBearingsInThreeDigits()
{
    QCOMPARE(bearingText(0.0), QStringLiteral("000.0\u00b0"));
    QCOMPARE(bearingText(9.96), QStringLiteral("010.0\u00b0"));
    QCOMPARE(bearingText(39.2), QStringLiteral("039.2\u00b0"));
    QCOMPARE(bearingText(359.96), QStringLiteral("000.0\u00b0"));
    QCOMPARE(bearingText(-90.0), QStringLiteral("270.0\u00b0"));
    QCOMPARE(bearingText(std::nan("")), noValueText());
}

void tst_consoleTexts::writesValuesWithoutMinusZero()
{
    QCOMPARE(valueText(-0.04, 1), QStringLiteral("0.0"));
    QCOMPARE(valueText(-0.0, 2), QStringLiteral("0.00"));
    QCOMPARE(valueText(-0.06, 1), QStringLiteral("-0.1"));
    QCOMPARE(valueText(4674.7, 1), QStringLiteral("4674.7"));
    QCOMPARE(valueText(1e300, 0).size(), 301);
    QCOMPARE(valueText(HUGE_VAL, 1), noValueText());
    QCOMPARE(valueText(std::nan(""), 1), noValueText());
    QCOMPARE(durationText(3909.7), QStringLiteral("1:05:09"));
    QCOMPARE(durationText(0.0), QStringLiteral("0:00:00"));
}

void tst_consoleTexts::writesPositions_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QString>("text");
    QTest::newRow("south west") << -22.00184832 << -17.93932387
                                << "22\u00b000.111' S  017\u00b056.359' W";
    QTest::newRow("north east") << 60.08451667 << 23.5391
                                << "60\u00b005.071' N  023\u00b032.346' E";
    QTest::newRow("minutes never read 60")
        << 9.999999 << 179.9999999 << "10\u00b000.000' N  180\u00b000.000' E";
    QTest::newRow("no position") << 91.0 << 0.0 << noValueText();
}

void tst_consoleTexts::writesPositions()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QString, text);
    QCOMPARE(positionText(QGeoCoordinate(latitude, longitude)), text);
}

void tst_consoleTexts::writesRanges_data()
{
    QTest::addColumn<double>("metres");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << "0 m";
    QTest::newRow("rounded") << 523.6 << "524 m";
    QTest::newRow("below a mile") << 1851.4 << "1851 m";
    QTest::newRow("a mile") << 1852.0 << "1.00 nmi";
    QTest::newRow("far") << 185200.0 << "100.00 nmi";
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << QString(u'\u2013');
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QString(u'\u2013');
}

void tst_consoleTexts::writesRanges()
{
    QFETCH(double, metres);
    QFETCH(QString, text);
    QCOMPARE(rangeText(metres), text);
}

ZORBIN_TEST_MAIN(tst_consoleTexts, QCoreApplication)
#include "tst_consoleTexts.moc"
