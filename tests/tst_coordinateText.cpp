#include "coordinateText_p.h"
#include "testCase.h"

#include <limits>

using namespace zorbin_qt_gui;

static constexpr double NOTHING = std::numeric_limits<double>::quiet_NaN();

static double valueOf(const std::optional<coordinateText_t>& coordinate)
{
    return coordinate ? coordinate->value : NOTHING;
}

/// What is taken for a coordinate when it comes from elsewhere.
class tst_coordinateText : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void readsUsualForms_data();
    void readsUsualForms();
    void tellsWhetherThereIsAHemisphere();
    void tellsPlainMagnitudes();
    void tellsPairs();
};

// 12.575 degrees are 12 degrees 34 minutes 30 seconds; 45.25 are 45 degrees 15 minutes.
void tst_coordinateText::readsUsualForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    const auto row = [](const QString& text, double latitude, double longitude) {
        QTest::newRow(qPrintable(text)) << text << latitude << longitude;
    };
    row(QStringLiteral("12.575"), 12.575, 12.575);
    row(QStringLiteral("-12.575"), -12.575, -12.575);
    row(QStringLiteral("\u221212.575\u00B0"), -12.575, -12.575);
    row(QStringLiteral("12\u00B034.5'N"), 12.575, NOTHING);
    row(QStringLiteral("12 34.5 N"), 12.575, NOTHING);
    row(QStringLiteral("12 34.5 s"), -12.575, NOTHING);
    row(QStringLiteral("12\u00B034'30\"W"), NOTHING, -12.575);
    row(QStringLiteral("N12\u00B034'30\""), 12.575, NOTHING);
    row(QStringLiteral("E 12 34 30"), NOTHING, 12.575);
    row(QStringLiteral("12\u00BA34\u203230\u2033 N"), 12.575, NOTHING);
    row(QStringLiteral("12\u00B034\u201930\u201D N"), 12.575, NOTHING);
    row(QStringLiteral("12\u00B034'30''N"), 12.575, NOTHING);
    row(QStringLiteral("12:34:30"), 12.575, 12.575);
    row(QStringLiteral("12:34:30 S"), -12.575, NOTHING);
    row(QStringLiteral("  12\t34.5\u00A0N\n"), 12.575, NOTHING);
    row(QStringLiteral("12\u00B034,5'N"), 12.575, NOTHING);
    row(QStringLiteral("12,575N"), 12.575, NOTHING);
    row(QStringLiteral("+1234.5"), 12.575, NOTHING);
    row(QStringLiteral("-1234.5"), -12.575, NOTHING);
    row(QStringLiteral("+123430"), 12.575, NOTHING);
    row(QStringLiteral("-01234.5"), NOTHING, -12.575);
    row(QStringLiteral("+0123430"), NOTHING, 12.575);
    row(QStringLiteral("1234.5N"), 12.575, NOTHING);
    row(QStringLiteral("1234.500,N"), 12.575, NOTHING);
    row(QStringLiteral("12.575, -45.25"), 12.575, -45.25);
    row(QStringLiteral("12.575,45.25"), 12.575, 45.25);
    row(QStringLiteral("12.575; 45.25"), 12.575, 45.25);
    row(QStringLiteral("12, 45"), 12.0, 45.0);
    row(QStringLiteral("12.575,-45.25"), 12.575, -45.25);
    row(QStringLiteral("-12.575;-45.25"), -12.575, -45.25);
    row(QStringLiteral("12/-45"), 12.0, -45.0);
    row(QStringLiteral("N: 12:34.5"), 12.575, NOTHING);
    row(QStringLiteral("12\u00B034.5'S 45\u00B015'W"), -12.575, -45.25);
    row(QStringLiteral("12\u00B034.5'S, 45\u00B015'W"), -12.575, -45.25);
    row(QStringLiteral("N12 34.5 E45 15"), 12.575, 45.25);
    row(QStringLiteral("E45 15 N12 34.5"), 12.575, 45.25);
    row(QStringLiteral("45 15 E, 12 34.5 N"), 12.575, 45.25);
    row(QStringLiteral("+1234.5-04515.0/"), 12.575, -45.25);
    row(QStringLiteral("12.575N -45.25"), 12.575, -45.25);
    row(QStringLiteral("12 34.5 N E 45 15"), 12.575, 45.25);
    row(QStringLiteral("1234.500,N,04515.000,E"), 12.575, 45.25);
    row(QStringLiteral("12.575 45.25"), 12.575, 45.25);
    row(QStringLiteral("12.575\u00B0\t45.25\u00B0"), 12.575, 45.25);

    // Hyphens between degrees, minutes and seconds.
    row(QStringLiteral("12-34.5S 045-15.0W"), -12.575, -45.25);
    row(QStringLiteral("12\u201334.5S, 045\u201315.0W"), -12.575, -45.25);
    row(QStringLiteral("N12-34.5/E045-15"), 12.575, 45.25);
    row(QStringLiteral("S 12-34.5"), -12.575, NOTHING);
    row(QStringLiteral("12-34-30N"), 12.575, NOTHING);
    row(QStringLiteral("12\u00B0-34'-30\"W"), NOTHING, -12.575);
    row(QStringLiteral("12-34,5S"), -12.575, NOTHING);
    row(QStringLiteral("12-34.5"), 12.575, 12.575);
    row(QStringLiteral("12-34-30"), 12.575, 12.575);
    row(QStringLiteral("12-34.5, 45-15"), 12.575, 45.25);
    row(QStringLiteral("-12-34.5, -45-15"), -12.575, -45.25);
    row(QStringLiteral("12-34.5N -45.25"), 12.575, -45.25);
    row(QStringLiteral("+12-045"), 12.0, -45.0);
    row(QStringLiteral("+12.575-45.25"), 12.575, -45.25);
    row(QStringLiteral("12 -45.25"), 12.0, -45.25);
    row(QStringLiteral("-12-34.5"), NOTHING, NOTHING); // minutes, or a longitude?
    row(QStringLiteral("+12-34-56"), NOTHING, NOTHING);
    row(QStringLiteral("12.575-45.25"), 12.575, -45.25); // no minutes
    row(QStringLiteral("12-34.5-045-15.0"), NOTHING, NOTHING);
    row(QStringLiteral("12 - 34.5"), NOTHING, NOTHING);
    row(QStringLiteral("12 - 34.5 S"), NOTHING, NOTHING);
    row(QStringLiteral("12--34.5S"), NOTHING, NOTHING);
    row(QStringLiteral("12-345S"), NOTHING, NOTHING);
    row(QStringLiteral("12.5-34.5S"), NOTHING, NOTHING);
    row(QStringLiteral("2026-12-24"), NOTHING, NOTHING);

    // Letters for marks. A capital S is a hemisphere.
    row(QStringLiteral("12.575d"), 12.575, 12.575);
    row(QStringLiteral("12.575dS"), -12.575, NOTHING);
    row(QStringLiteral("12d34.5mE"), NOTHING, 12.575);
    row(QStringLiteral("-12d34.5m"), -12.575, -12.575);
    row(QStringLiteral("12d34m30s"), 12.575, 12.575);
    row(QStringLiteral("12d 34m 30s S"), -12.575, NOTHING);
    row(QStringLiteral("12D34M30sS"), -12.575, NOTHING);
    row(QStringLiteral("S12d34m30s"), -12.575, NOTHING);
    row(QStringLiteral("12d34m30S"), -12.575, NOTHING);
    row(QStringLiteral("12d34.5ms"), -12.575, NOTHING);
    row(QStringLiteral("12d34m30sS 045d15mW"), -12.575, -45.25);
    row(QStringLiteral("12d34m30s, 045d15m00s"), 12.575, 45.25);
    row(QStringLiteral("12D34M30S"), NOTHING, NOTHING); // seconds, or south?
    row(QStringLiteral("12d34s"), NOTHING, NOTHING);
    row(QStringLiteral("12d34.5m30s"), NOTHING, NOTHING);
    row(QStringLiteral("12d34m30s 045d15m00s"), NOTHING, NOTHING);
    row(QStringLiteral("12 34.5m"), NOTHING, NOTHING);
    row(QStringLiteral("34m30s"), NOTHING, NOTHING);

    // Words.
    row(QStringLiteral("lat -12.575 lon -45.25"), -12.575, -45.25);
    row(QStringLiteral("lon 45.25 lat 12.575"), 12.575, 45.25);
    row(QStringLiteral("Latitude: 12\u00B034.5'S, Longitude: 45\u00B015'W"), -12.575, -45.25);
    row(QStringLiteral("LAT. S 12-34.5; LONG. W 045-15"), -12.575, -45.25);
    row(QStringLiteral("lat=12.575&lng=-45.25"), 12.575, -45.25);
    row(QStringLiteral("lat 12,575 lon 45,25"), 12.575, 45.25);
    row(QStringLiteral("lat 12d34m30s lon 45d15m00s"), 12.575, 45.25);
    row(QStringLiteral("lat 12.575"), 12.575, NOTHING);
    row(QStringLiteral("Longitude 45 15 E"), NOTHING, 45.25);
    row(QStringLiteral("Lat: N 12:34:30"), 12.575, NOTHING);
    row(QStringLiteral("lat -12-34.5"), -12.575, NOTHING); // can't be a pair
    row(QStringLiteral("lat"), NOTHING, NOTHING);
    row(QStringLiteral("lat lon"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575 lat 45.25"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575 lon"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575 lon 200"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575E"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575E lon 45.25N"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575, -45.25"), NOTHING, NOTHING);
    row(QStringLiteral("lat 12.575 lon 45.25 lat 1"), NOTHING, NOTHING);

    // URIs.
    row(QStringLiteral("geo:-12.575,-45.25"), -12.575, -45.25);
    row(QStringLiteral("GEO:12.575, 45.25"), 12.575, 45.25);
    row(QStringLiteral("geo:12,45"), 12.0, 45.0);
    row(QStringLiteral("geo:12.575,45.25,-100.5"), 12.575, 45.25);
    row(QStringLiteral("geo:12.575,45.25;u=35"), 12.575, 45.25);
    row(QStringLiteral("geo:12.575,45.25;crs=wgs84;u=35;name"), 12.575, 45.25);
    row(QStringLiteral("geo:12.575,45.25?z=17"), 12.575, 45.25);
    row(QStringLiteral("geo:12.575,45.25;crs=nad27"), NOTHING, NOTHING); // another position
    row(QStringLiteral("geo:0,0?q=12.575,45.25"), NOTHING, NOTHING);
    row(QStringLiteral("geo:12.575"), NOTHING, NOTHING);
    row(QStringLiteral("geo:95,45"), NOTHING, NOTHING);
    row(QStringLiteral("geo:-1234.5,-04515"), NOTHING, NOTHING);
    row(QStringLiteral("geo 12.575,45.25"), NOTHING, NOTHING);

    // Well-known text has the longitude first.
    row(QStringLiteral("POINT(-45.25 -12.575)"), -12.575, -45.25);
    row(QStringLiteral("Point ( 45.25 12.575 )"), 12.575, 45.25);
    row(QStringLiteral("POINT Z (45.25 12.575 100)"), 12.575, 45.25);
    row(QStringLiteral("SRID=4326;POINT(45.25 12.575)"), 12.575, 45.25);
    row(QStringLiteral("SRID=3857;POINT(45.25 12.575)"), NOTHING, NOTHING);
    row(QStringLiteral("POINT(45.25 95)"), NOTHING, NOTHING);
    row(QStringLiteral("POINT(45.25, 12.575)"), NOTHING, NOTHING);
    row(QStringLiteral("POINT(45.25)"), NOTHING, NOTHING);
    row(QStringLiteral("POINT EMPTY"), NOTHING, NOTHING);
    row(QStringLiteral("MULTIPOINT(45.25 12.575)"), NOTHING, NOTHING);

    row(QStringLiteral("90"), 90.0, 90.0);
    row(QStringLiteral("120"), NOTHING, 120.0);
    row(QString(), NOTHING, NOTHING);
    row(QStringLiteral("N"), NOTHING, NOTHING);
    row(QStringLiteral("12,575"), NOTHING, NOTHING); // a pair, or a number?
    row(QStringLiteral("-12,575"), NOTHING, NOTHING);
    row(QStringLiteral("1234.5"), NOTHING, NOTHING); // packed only with a hemisphere
    row(QStringLiteral("12 60 N"), NOTHING, NOTHING);
    row(QStringLiteral("91 N"), NOTHING, NOTHING);
    row(QStringLiteral("181 E"), NOTHING, NOTHING);
    row(QStringLiteral("95, 45"), NOTHING, NOTHING); // and therefore no pair
    row(QStringLiteral("-12 N"), NOTHING, NOTHING);
    row(QStringLiteral("N 12 S"), NOTHING, NOTHING);
    row(QStringLiteral("12.5N 13.5N"), NOTHING, NOTHING);
    row(QStringLiteral("1.5 2.5 3.5"), NOTHING, NOTHING);
    row(QStringLiteral("depth 12.5"), NOTHING, NOTHING);
    row(QStringLiteral("12.5 m"), NOTHING, NOTHING);
    QTest::newRow("long") << QString(101, QLatin1Char('1')) << NOTHING << NOTHING;
}

void tst_coordinateText::readsUsualForms()
{
    QFETCH(QString, text);
    QTEST(valueOf(readLatitude(text)), "latitude");
    QTEST(valueOf(readLongitude(text)), "longitude");
}

void tst_coordinateText::tellsWhetherThereIsAHemisphere()
{
    QVERIFY(!readLatitude(QStringLiteral("12.5"))->hasHemisphere);
    QVERIFY(!readLatitude(QStringLiteral("12 34.5"))->hasHemisphere);
    QVERIFY(readLatitude(QStringLiteral("+12.5"))->hasHemisphere);
    QVERIFY(readLatitude(QStringLiteral("12.5N"))->hasHemisphere);
    QVERIFY(readLatitude(QStringLiteral("12.5, 45.5"))->hasHemisphere);
    QVERIFY(!readLatitude(QStringLiteral("12-34.5"))->hasHemisphere);
    QVERIFY(!readLatitude(QStringLiteral("12d34m30s"))->hasHemisphere);
    QVERIFY(!readLatitude(QStringLiteral("lat 12.5"))->hasHemisphere);
    QVERIFY(readLatitude(QStringLiteral("lat 12.5 lon 45.5"))->hasHemisphere);
}

void tst_coordinateText::tellsPlainMagnitudes()
{
    QVERIFY(readLatitude(QStringLiteral("12"))->isPlainMagnitude);
    QVERIFY(readLatitude(QStringLiteral(" 12.5 "))->isPlainMagnitude);
    QVERIFY(readLatitude(QStringLiteral("12.5:"))->isPlainMagnitude);
    QVERIFY(!readLatitude(QStringLiteral("12.5\u00B0"))->isPlainMagnitude);
    QVERIFY(!readLatitude(QStringLiteral("12 34"))->isPlainMagnitude);
    QVERIFY(!readLatitude(QStringLiteral("-12.5"))->isPlainMagnitude);
    QVERIFY(!readLatitude(QStringLiteral("12.5, 45.5"))->isPlainMagnitude);
    QVERIFY(!readLatitude(QStringLiteral("lat 12.5"))->isPlainMagnitude);
}

void tst_coordinateText::tellsPairs()
{
    for (const auto& text : {QStringLiteral("12.5, 45.5"), QStringLiteral("12N 45E"),
                             QStringLiteral("geo:12,45"), QStringLiteral("lat 12 lon 45")}) {
        QVERIFY(readLatitude(text)->isOfPair);
        QVERIFY(readLongitude(text)->isOfPair);
    }
    for (const auto& text : {QStringLiteral("12.5"), QStringLiteral("12 34.5 N"),
                             QStringLiteral("lat 12.5"), QStringLiteral("12-34.5")})
        QVERIFY(!readLatitude(text)->isOfPair);
}

ZORBIN_TEST_MAIN(tst_coordinateText, QCoreApplication)
#include "tst_coordinateText.moc"
