#include "support/randomNumbers.h"
#include "testCase.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <zorbin/latLonParser.h>
#include <zorbin/latLonPrinter.h>

using zorbin::latLonParser_t;
using zorbin::latLonPrinter_t;

Q_DECLARE_METATYPE(latLonPrinter_t::coordFormat_t)
Q_DECLARE_METATYPE(latLonPrinter_t::hemiFormat_t)
Q_DECLARE_METATYPE(latLonPrinter_t::sepFormat_t)

static constexpr double NOTHING = std::numeric_limits<double>::quiet_NaN();
static constexpr double INFINITE = std::numeric_limits<double>::infinity();
static constexpr auto CF_D = latLonPrinter_t::CF_D;
static constexpr auto CF_DM = latLonPrinter_t::CF_DM;
static constexpr auto CF_DMS = latLonPrinter_t::CF_DMS;
static constexpr auto HF_NEG_PREFIX = latLonPrinter_t::HF_NEG_PREFIX;
static constexpr auto HF_SIGN_PREFIX = latLonPrinter_t::HF_SIGN_PREFIX;
static constexpr auto HF_CHAR_SUFFIX = latLonPrinter_t::HF_CHAR_SUFFIX;
static constexpr auto SF_SPACE = latLonPrinter_t::SF_SPACE;
static constexpr auto SF_MARK = latLonPrinter_t::SF_MARK;
static constexpr auto SF_MARK_SPACE = latLonPrinter_t::SF_MARK_SPACE;

static latLonPrinter_t printerFor(latLonPrinter_t::coordFormat_t fields, unsigned decimals,
                                  latLonPrinter_t::hemiFormat_t hemisphere,
                                  latLonPrinter_t::sepFormat_t separator)
{
    latLonPrinter_t printer;
    printer.coordFormat(fields);
    printer.precision(decimals);
    printer.hemisphereFormat(hemisphere);
    printer.separatorFormat(separator);
    return printer;
}

// As the editors print.
static latLonPrinter_t maskPrinter(latLonPrinter_t::coordFormat_t fields)
{
    const unsigned decimals[] = {8, 6, 4};
    return printerFor(fields, decimals[fields], HF_CHAR_SUFFIX, SF_MARK_SPACE);
}

static std::string bytes(const QString& text)
{
    return text.toLatin1().toStdString();
}

static QString latitude(const latLonPrinter_t& printer, double value)
{
    return QString::fromLatin1(printer.printLatitude(value).c_str());
}

static QString longitude(const latLonPrinter_t& printer, double value)
{
    return QString::fromLatin1(printer.printLongitude(value).c_str());
}

// What the parser makes of a text; NOTHING if it fails, in which case it must leave the value
// alone.
static double readLatitude(const std::string& text)
{
    double value = -1234.5;
    const int result = latLonParser_t().parseLatitude(text, value);
    if (result == 0)
        return value;
    return result == -1 && value == -1234.5 ? NOTHING : INFINITE;
}

static double readLongitude(const std::string& text)
{
    double value = -1234.5;
    const int result = latLonParser_t().parseLongitude(text, value);
    if (result == 0)
        return value;
    return result == -1 && value == -1234.5 ? NOTHING : INFINITE;
}

// How many values the round trips take.
static int valueCount()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("ZORBIN_TEST_VALUES", &isNumber);
    return isNumber ? wanted : 100000;
}

// Numbers as some languages write them: 3.599,5.
class commas_t : public std::numpunct<char>
{
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// The printer and the parser of coordinates in libzorbin.
class tst_latLonText : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithDegreesMarksAndAMinus();
    void numbersItsFormats();
    void printsEachLayout_data();
    void printsEachLayout();
    void printsTheLayoutOfTheMasks();
    void roundsAndCarries_data();
    void roundsAndCarries();
    void printsZeroWithoutAMinus_data();
    void printsZeroWithoutAMinus();
    void printsNoDigitsOfWhatDoesNotFit_data();
    void printsNoDigitsOfWhatDoesNotFit();
    void printsAtMostTheDecimalsThatMakeSense();

    void readsEachLayout_data();
    void readsEachLayout();
    void readsBothLimits();
    void readsTheDegreeSignAsOneByte();
    void keepsTheSignOfZero();
    void refuses_data();
    void refuses();
    void refusesALetterOfTheOtherKind();
    void refusesMoreThanTheLimit_data();
    void refusesMoreThanTheLimit();

    void givesBackWhatItPrinted();
    void printsAgainWhatItRead();
    void takesNoNoticeOfTheLocale();
};

void tst_latLonText::startsWithDegreesMarksAndAMinus()
{
    const latLonPrinter_t printer;
    QCOMPARE(latitude(printer, 12.5), QStringLiteral("12.500000°"));
    QCOMPARE(longitude(printer, -12.5), QStringLiteral("-012.500000°"));
}

void tst_latLonText::numbersItsFormats()
{
    QCOMPARE(static_cast<int>(CF_D), 0);
    QCOMPARE(static_cast<int>(CF_DM), 1);
    QCOMPARE(static_cast<int>(CF_DMS), 2);
    QCOMPARE(static_cast<int>(HF_NEG_PREFIX), 0);
    QCOMPARE(static_cast<int>(HF_SIGN_PREFIX), 1);
    QCOMPARE(static_cast<int>(HF_CHAR_SUFFIX), 2);
    QCOMPARE(static_cast<int>(SF_SPACE), 0);
    QCOMPARE(static_cast<int>(SF_MARK), 1);
    QCOMPARE(static_cast<int>(SF_MARK_SPACE), 2);
}

// Latitudes with two decimals. 12.575 degrees are 12 degrees 34 minutes 30 seconds.
void tst_latLonText::printsEachLayout_data()
{
    QTest::addColumn<latLonPrinter_t::coordFormat_t>("fields");
    QTest::addColumn<latLonPrinter_t::hemiFormat_t>("hemisphere");
    QTest::addColumn<latLonPrinter_t::sepFormat_t>("separator");
    QTest::addColumn<QString>("north");
    QTest::addColumn<QString>("south");

    const auto row = [](const char* name, latLonPrinter_t::coordFormat_t fields,
                        latLonPrinter_t::hemiFormat_t hemisphere,
                        latLonPrinter_t::sepFormat_t separator, const QString& north,
                        const QString& south) {
        QTest::newRow(name) << fields << hemisphere << separator << north << south;
    };
    row("D, minus, space", CF_D, HF_NEG_PREFIX, SF_SPACE, QStringLiteral("12.25"),
        QStringLiteral("-12.25"));
    row("D, minus, mark", CF_D, HF_NEG_PREFIX, SF_MARK, QStringLiteral("12.25°"),
        QStringLiteral("-12.25°"));
    row("D, minus, both", CF_D, HF_NEG_PREFIX, SF_MARK_SPACE, QStringLiteral("12.25°"),
        QStringLiteral("-12.25°"));
    row("D, sign, space", CF_D, HF_SIGN_PREFIX, SF_SPACE, QStringLiteral("+12.25"),
        QStringLiteral("-12.25"));
    row("D, sign, mark", CF_D, HF_SIGN_PREFIX, SF_MARK, QStringLiteral("+12.25°"),
        QStringLiteral("-12.25°"));
    row("D, sign, both", CF_D, HF_SIGN_PREFIX, SF_MARK_SPACE, QStringLiteral("+12.25°"),
        QStringLiteral("-12.25°"));
    row("D, letter, space", CF_D, HF_CHAR_SUFFIX, SF_SPACE, QStringLiteral("12.25 N"),
        QStringLiteral("12.25 S"));
    row("D, letter, mark", CF_D, HF_CHAR_SUFFIX, SF_MARK, QStringLiteral("12.25°N"),
        QStringLiteral("12.25°S"));
    row("D, letter, both", CF_D, HF_CHAR_SUFFIX, SF_MARK_SPACE, QStringLiteral("12.25° N"),
        QStringLiteral("12.25° S"));
    row("DM, minus, space", CF_DM, HF_NEG_PREFIX, SF_SPACE, QStringLiteral("12 15.00"),
        QStringLiteral("-12 15.00"));
    row("DM, minus, mark", CF_DM, HF_NEG_PREFIX, SF_MARK, QStringLiteral("12°15.00'"),
        QStringLiteral("-12°15.00'"));
    row("DM, minus, both", CF_DM, HF_NEG_PREFIX, SF_MARK_SPACE, QStringLiteral("12° 15.00'"),
        QStringLiteral("-12° 15.00'"));
    row("DM, sign, space", CF_DM, HF_SIGN_PREFIX, SF_SPACE, QStringLiteral("+12 15.00"),
        QStringLiteral("-12 15.00"));
    row("DM, sign, mark", CF_DM, HF_SIGN_PREFIX, SF_MARK, QStringLiteral("+12°15.00'"),
        QStringLiteral("-12°15.00'"));
    row("DM, sign, both", CF_DM, HF_SIGN_PREFIX, SF_MARK_SPACE, QStringLiteral("+12° 15.00'"),
        QStringLiteral("-12° 15.00'"));
    row("DM, letter, space", CF_DM, HF_CHAR_SUFFIX, SF_SPACE, QStringLiteral("12 15.00 N"),
        QStringLiteral("12 15.00 S"));
    row("DM, letter, mark", CF_DM, HF_CHAR_SUFFIX, SF_MARK, QStringLiteral("12°15.00'N"),
        QStringLiteral("12°15.00'S"));
    row("DM, letter, both", CF_DM, HF_CHAR_SUFFIX, SF_MARK_SPACE, QStringLiteral("12° 15.00' N"),
        QStringLiteral("12° 15.00' S"));
    row("DMS, minus, space", CF_DMS, HF_NEG_PREFIX, SF_SPACE, QStringLiteral("12 15 00.00"),
        QStringLiteral("-12 15 00.00"));
    row("DMS, minus, mark", CF_DMS, HF_NEG_PREFIX, SF_MARK, QStringLiteral("12°15'00.00\""),
        QStringLiteral("-12°15'00.00\""));
    row("DMS, minus, both", CF_DMS, HF_NEG_PREFIX, SF_MARK_SPACE, QStringLiteral("12° 15' 00.00\""),
        QStringLiteral("-12° 15' 00.00\""));
    row("DMS, sign, space", CF_DMS, HF_SIGN_PREFIX, SF_SPACE, QStringLiteral("+12 15 00.00"),
        QStringLiteral("-12 15 00.00"));
    row("DMS, sign, mark", CF_DMS, HF_SIGN_PREFIX, SF_MARK, QStringLiteral("+12°15'00.00\""),
        QStringLiteral("-12°15'00.00\""));
    row("DMS, sign, both", CF_DMS, HF_SIGN_PREFIX, SF_MARK_SPACE,
        QStringLiteral("+12° 15' 00.00\""), QStringLiteral("-12° 15' 00.00\""));
    row("DMS, letter, space", CF_DMS, HF_CHAR_SUFFIX, SF_SPACE, QStringLiteral("12 15 00.00 N"),
        QStringLiteral("12 15 00.00 S"));
    row("DMS, letter, mark", CF_DMS, HF_CHAR_SUFFIX, SF_MARK, QStringLiteral("12°15'00.00\"N"),
        QStringLiteral("12°15'00.00\"S"));
    row("DMS, letter, both", CF_DMS, HF_CHAR_SUFFIX, SF_MARK_SPACE,
        QStringLiteral("12° 15' 00.00\" N"), QStringLiteral("12° 15' 00.00\" S"));
}

void tst_latLonText::printsEachLayout()
{
    QFETCH(latLonPrinter_t::coordFormat_t, fields);
    QFETCH(latLonPrinter_t::hemiFormat_t, hemisphere);
    QFETCH(latLonPrinter_t::sepFormat_t, separator);
    const latLonPrinter_t printer = printerFor(fields, 2, hemisphere, separator);
    QTEST(latitude(printer, 12.25), "north");
    QTEST(latitude(printer, -12.25), "south");
    // A longitude has a digit more, and letters of its own.
    QFETCH(QString, north);
    const QString east = QString(north)
                             .replace(QStringLiteral("12"), QStringLiteral("012"))
                             .replace(QLatin1Char('N'), QLatin1Char('E'));
    QCOMPARE(longitude(printer, 12.25), east);
    QFETCH(QString, south);
    const QString west = QString(south)
                             .replace(QStringLiteral("12"), QStringLiteral("012"))
                             .replace(QLatin1Char('S'), QLatin1Char('W'));
    QCOMPARE(longitude(printer, -12.25), west);
}

void tst_latLonText::printsTheLayoutOfTheMasks()
{
    QCOMPARE(latitude(maskPrinter(CF_D), 5.0), QStringLiteral("05.00000000° N"));
    QCOMPARE(latitude(maskPrinter(CF_DM), 5.0), QStringLiteral("05° 00.000000' N"));
    QCOMPARE(latitude(maskPrinter(CF_DMS), 5.0), QStringLiteral("05° 00' 00.0000\" N"));
    QCOMPARE(longitude(maskPrinter(CF_D), -5.0), QStringLiteral("005.00000000° W"));
    QCOMPARE(longitude(maskPrinter(CF_DM), -5.0), QStringLiteral("005° 00.000000' W"));
    QCOMPARE(longitude(maskPrinter(CF_DMS), -5.0), QStringLiteral("005° 00' 00.0000\" W"));
    QCOMPARE(maskPrinter(CF_D).printLatitude(5.0)[11], '\xB0');
}

void tst_latLonText::roundsAndCarries_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<latLonPrinter_t::coordFormat_t>("fields");
    QTest::addColumn<unsigned>("decimals");
    QTest::addColumn<QString>("text");

    QTest::newRow("down") << 1.4999 << CF_D << 0u << QStringLiteral("01°N");
    QTest::newRow("up") << 1.5001 << CF_D << 0u << QStringLiteral("02°N");
    QTest::newRow("the magnitude of a negative one")
        << -1.5001 << CF_D << 0u << QStringLiteral("02°S");
    QTest::newRow("degrees carry digits") << 9.999 << CF_D << 2u << QStringLiteral("10.00°N");
    QTest::newRow("minutes carry") << 9.99999 << CF_DM << 2u << QStringLiteral("10°00.00'N");
    QTest::newRow("minutes just don't") << 9.9998 << CF_DM << 2u << QStringLiteral("09°59.99'N");
    QTest::newRow("seconds carry a minute")
        << 1.0 + 59.9999 / 3600.0 << CF_DMS << 2u << QStringLiteral("01°01'00.00\"N");
    QTest::newRow("seconds carry a degree")
        << 1.0 + 3599.999 / 3600.0 << CF_DMS << 2u << QStringLiteral("02°00'00.00\"N");
    QTest::newRow("seconds just don't")
        << 1.0 + 3599.994 / 3600.0 << CF_DMS << 2u << QStringLiteral("01°59'59.99\"N");
    QTest::newRow("whole seconds")
        << 1.0 + 3599.5 / 3600.0 << CF_DMS << 0u << QStringLiteral("02°00'00\"N");
    QTest::newRow("to the pole") << 89.9999999999 << CF_DMS << 4u
                                 << QStringLiteral("90°00'00.0000\"N");
    QTest::newRow("just below 1") << std::nextafter(1.0, 0.0) << CF_DMS << 11u
                                  << QStringLiteral("01°00'00.00000000000\"N");
}

void tst_latLonText::roundsAndCarries()
{
    QFETCH(double, value);
    QFETCH(latLonPrinter_t::coordFormat_t, fields);
    QFETCH(unsigned, decimals);
    QTEST(latitude(printerFor(fields, decimals, HF_CHAR_SUFFIX, SF_MARK), value), "text");
}

void tst_latLonText::printsZeroWithoutAMinus_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("0") << 0.0;
    QTest::newRow("-0") << -0.0;
    QTest::newRow("what rounds to it") << 4e-7;
    QTest::newRow("what rounds to it from below") << -4e-7;
    QTest::newRow("the least") << -std::numeric_limits<double>::denorm_min();
}

void tst_latLonText::printsZeroWithoutAMinus()
{
    QFETCH(double, value);
    const auto printer = [](latLonPrinter_t::hemiFormat_t hemisphere) {
        return printerFor(CF_D, 6, hemisphere, SF_MARK);
    };
    QCOMPARE(latitude(printer(HF_CHAR_SUFFIX), value), QStringLiteral("00.000000°N"));
    QCOMPARE(longitude(printer(HF_CHAR_SUFFIX), value), QStringLiteral("000.000000°E"));
    QCOMPARE(latitude(printer(HF_NEG_PREFIX), value), QStringLiteral("00.000000°"));
    QCOMPARE(latitude(printer(HF_SIGN_PREFIX), value), QStringLiteral("+00.000000°"));
    QCOMPARE(latitude(printerFor(CF_DMS, 2, HF_CHAR_SUFFIX, SF_MARK), value),
             QStringLiteral("00°00'00.00\"N"));
}

// What the masks have no room for would otherwise be shown with digits missing: as a wrong
// position.
void tst_latLonText::printsNoDigitsOfWhatDoesNotFit_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("latitudeText");
    QTest::addColumn<QString>("longitudeText");
    QTest::newRow("NaN") << NOTHING << QStringLiteral("N") << QStringLiteral("E");
    QTest::newRow("infinity") << INFINITE << QStringLiteral("N") << QStringLiteral("E");
    QTest::newRow("-infinity") << -INFINITE << QStringLiteral("N") << QStringLiteral("E");
    QTest::newRow("the largest") << std::numeric_limits<double>::max() << QStringLiteral("N")
                                 << QStringLiteral("E");
    QTest::newRow("1000") << 1000.0 << QStringLiteral("N") << QStringLiteral("E");
    QTest::newRow("to be rounded to 1000")
        << 999.999999999 << QStringLiteral("N") << QStringLiteral("E");
    QTest::newRow("below 1000") << 999.9999999 << QStringLiteral("N")
                                << QStringLiteral("999° 59.999994' E");
    QTest::newRow("100") << -100.0 << QStringLiteral("N") << QStringLiteral("100° 00.000000' W");
    QTest::newRow("to be rounded to 100")
        << 99.999999999 << QStringLiteral("N") << QStringLiteral("100° 00.000000' E");
    QTest::newRow("below 100") << 99.5 << QStringLiteral("99° 30.000000' N")
                               << QStringLiteral("099° 30.000000' E");
}

void tst_latLonText::printsNoDigitsOfWhatDoesNotFit()
{
    QFETCH(double, value);
    QTEST(latitude(maskPrinter(CF_DM), value), "latitudeText");
    QTEST(longitude(maskPrinter(CF_DM), value), "longitudeText");
}

void tst_latLonText::printsAtMostTheDecimalsThatMakeSense()
{
    const auto printed = [](latLonPrinter_t::coordFormat_t fields) {
        return latitude(printerFor(fields, 4000000000u, HF_NEG_PREFIX, SF_MARK), 1.5);
    };
    QCOMPARE(printed(CF_D), QStringLiteral("01.500000000000000°"));
    QCOMPARE(printed(CF_DM), QStringLiteral("01°30.0000000000000'"));
    QCOMPARE(printed(CF_DMS), QStringLiteral("01°30'00.00000000000\""));
}

void tst_latLonText::readsEachLayout_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("degrees as shown") << QStringLiteral("12.50000000°N") << 12.5;
    QTest::newRow("minutes as shown") << QStringLiteral("12° 30.000000'N") << 12.5;
    QTest::newRow("seconds as shown") << QStringLiteral("12° 15' 00.0000\"N") << 12.25;
    QTest::newRow("south") << QStringLiteral("12.50000000°S") << -12.5;
    QTest::newRow("no marks") << QStringLiteral("12 15 36.0 N") << 12.26;
    QTest::newRow("no blanks") << QStringLiteral("12°15'36\"N") << 12.26;
    QTest::newRow("plain") << QStringLiteral("12.5") << 12.5;
    QTest::newRow("plain, minus") << QStringLiteral("-12.5") << -12.5;
    QTest::newRow("plain, plus") << QStringLiteral("+12.5") << 12.5;
    QTest::newRow("letter without a mark") << QStringLiteral("12.5S") << -12.5;
    QTest::newRow("sign and marks") << QStringLiteral("-12°30'") << -12.5;
    QTest::newRow("some marks") << QStringLiteral("12°15 36N") << 12.26;
    QTest::newRow("whole degrees") << QStringLiteral("7N") << 7.0;
    QTest::newRow("leading zeros") << QStringLiteral("0007.50°N") << 7.5;
    QTest::newRow("blanks for digits, before") << QStringLiteral(" 7° 30.000000'N") << 7.5;
    QTest::newRow("blanks for digits, behind")
        << QStringLiteral("7 ° 30.5     'N") << 7.0 + 30.5 / 60.0;
    QTest::newRow("blanks for decimals") << QStringLiteral("07.5       °N") << 7.5;
    QTest::newRow("blanks all over") << QStringLiteral("  -  7  °  30  '  0  \"  ") << -7.5;
    QTest::newRow("no degree") << QStringLiteral("0° 0' 36\"S") << -0.01;
    QTest::newRow("many decimals") << QStringLiteral("1.50000000000000000000000000000N") << 1.5;
    QTest::newRow("just below a minute")
        << QStringLiteral("1° 59.999999'N") << 1.0 + 59.999999 / 60.0;
}

void tst_latLonText::readsEachLayout()
{
    QFETCH(QString, text);
    QTEST(readLatitude(bytes(text)), "value");
    const QString asLongitude = QString(text)
                                    .replace(QLatin1Char('N'), QLatin1Char('E'))
                                    .replace(QLatin1Char('S'), QLatin1Char('W'));
    QTEST(readLongitude(bytes(asLongitude)), "value");
}

void tst_latLonText::readsBothLimits()
{
    QCOMPARE(readLatitude("90\xB0 00' 00.0000\"N"), 90.0);
    QCOMPARE(readLatitude("90.00000000\xB0S"), -90.0);
    QCOMPARE(readLongitude("180\xB0 00.000000'E"), 180.0);
    QCOMPARE(readLongitude("-180"), -180.0);
}

void tst_latLonText::readsTheDegreeSignAsOneByte()
{
    QCOMPARE(readLatitude("12\xB0N"), 12.0);
    QCOMPARE(readLatitude("12\xC2\xB0N"), NOTHING); // in UTF-8
}

void tst_latLonText::keepsTheSignOfZero()
{
    QVERIFY(std::signbit(readLatitude("00.00000000\xB0S")));
    QVERIFY(std::signbit(readLatitude("-0")));
    QVERIFY(!std::signbit(readLatitude("00.00000000\xB0N")));
}

void tst_latLonText::refuses_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << QString();
    QTest::newRow("blanks") << QStringLiteral("   ");
    QTest::newRow("a letter") << QStringLiteral("N");
    QTest::newRow("a sign") << QStringLiteral("-");
    QTest::newRow("an empty mask, degrees") << QStringLiteral("  .        °N");
    QTest::newRow("an empty mask, minutes") << QStringLiteral("  °   .      'N");
    QTest::newRow("an empty mask, seconds") << QStringLiteral("  °   '   .    \"N");
    QTest::newRow("missing degrees") << QStringLiteral("  ° 30.000000'N");
    QTest::newRow("missing minutes") << QStringLiteral("12°   .      'N");
    QTest::newRow("missing minutes before seconds") << QStringLiteral("12°   ' 30.0000\"N");
    QTest::newRow("missing seconds") << QStringLiteral("12° 30'   .    \"N");
    QTest::newRow("missing digits before the point") << QStringLiteral("  .50000000°N");
    QTest::newRow("missing digits behind the point") << QStringLiteral("12.        °N");
    QTest::newRow("a gap between digits") << QStringLiteral("12.5 5     °N");
    QTest::newRow("minutes of 60") << QStringLiteral("12° 60.000000'N");
    QTest::newRow("minutes of 99") << QStringLiteral("12° 99' 00.0000\"N");
    QTest::newRow("seconds of 60") << QStringLiteral("12° 00' 60.0000\"N");
    QTest::newRow("decimals before the last field") << QStringLiteral("12.5° 30'N");
    QTest::newRow("decimals before the last field, minutes") << QStringLiteral("12° 3.5' 30\"N");
    QTest::newRow("four fields") << QStringLiteral("12° 30' 30\" 30N");
    QTest::newRow("the marks of other fields") << QStringLiteral("12' 30\"N");
    QTest::newRow("a mark twice") << QStringLiteral("12°° 30'N");
    QTest::newRow("nothing between fields") << QStringLiteral("1.52.5N");
    QTest::newRow("two signs") << QStringLiteral("+-12");
    QTest::newRow("a sign and a letter") << QStringLiteral("-12S");
    QTest::newRow("a sign behind") << QStringLiteral("12-");
    QTest::newRow("a sign within") << QStringLiteral("12° -30'");
    QTest::newRow("a letter before") << QStringLiteral("N12");
    QTest::newRow("two letters") << QStringLiteral("12NN");
    QTest::newRow("a small letter") << QStringLiteral("12n");
    QTest::newRow("a comma") << QStringLiteral("12,5N");
    QTest::newRow("an exponent") << QStringLiteral("1e1N");
    QTest::newRow("hexadecimal") << QStringLiteral("0x1N");
    QTest::newRow("a number's name") << QStringLiteral("nan");
    QTest::newRow("a tabulator") << QStringLiteral("12\tN");
    QTest::newRow("a line's end") << QStringLiteral("12N\n");
    QTest::newRow("a 0 character") << QStringLiteral("12") + QChar(0);
    QTest::newRow("text behind") << QStringLiteral("12N 1");
    QTest::newRow("beyond doubles") << QString(400, QLatin1Char('9'));
}

void tst_latLonText::refuses()
{
    QFETCH(QString, text);
    QCOMPARE(readLatitude(bytes(text)), NOTHING);
    QCOMPARE(readLongitude(bytes(text.replace(QLatin1Char('N'), QLatin1Char('E'))
                                     .replace(QLatin1Char('S'), QLatin1Char('W')))),
             NOTHING);
}

void tst_latLonText::refusesALetterOfTheOtherKind()
{
    QCOMPARE(readLatitude("12\xB0"
                          "E"),
             NOTHING);
    QCOMPARE(readLatitude("12\xB0W"), NOTHING);
    QCOMPARE(readLongitude("12\xB0N"), NOTHING);
    QCOMPARE(readLongitude("12\xB0S"), NOTHING);
}

void tst_latLonText::refusesMoreThanTheLimit_data()
{
    QTest::addColumn<QString>("latitudeText");
    QTest::addColumn<QString>("longitudeText");
    QTest::newRow("degrees") << QStringLiteral("90.00000001°N") << QStringLiteral("180.00000001°E");
    QTest::newRow("negative") << QStringLiteral("90.00000001°S") << QStringLiteral("-180.00000001");
    QTest::newRow("minutes") << QStringLiteral("90° 00.000001'N")
                             << QStringLiteral("180° 00.000001'W");
    QTest::newRow("seconds") << QStringLiteral("90° 00' 00.0001\"S")
                             << QStringLiteral("180° 00' 00.0001\"E");
    QTest::newRow("whole degrees")
        << QStringLiteral("95° 00.000000'N") << QStringLiteral("181° 00.000000'E");
}

void tst_latLonText::refusesMoreThanTheLimit()
{
    QFETCH(QString, latitudeText);
    QFETCH(QString, longitudeText);
    QCOMPARE(readLatitude(bytes(latitudeText)), NOTHING);
    QCOMPARE(readLongitude(bytes(longitudeText)), NOTHING);
}

void tst_latLonText::givesBackWhatItPrinted()
{
    // Doubles below 180 lie up to 3e-14 apart, and the parser adds some of them up.
    constexpr double NOISE = 1e-13;
    random_t random;
    double worst = 0.0; // in units of the last place
    const int count = valueCount();
    for (int i = 0; i < count; ++i) {
        const bool isLatitude = random.chance(0.5);
        const double limit = isLatitude ? 90.0 : 180.0;
        double value = random.real(-limit, limit) + random.real(0.0, 1e-8);
        if (random.chance(0.3)) // at a whole minute or second, or hardly beside
            value = std::nearbyint(value * 3600.0) / 3600.0 +
                    random.integer(-2, 2) * std::pow(10.0, -random.integer(2, 16));
        value = std::min(std::max(value, -limit), limit);
        const auto fields = static_cast<latLonPrinter_t::coordFormat_t>(random.integer(0, 2));
        const int decimals = random.integer(0, 9);
        const auto hemisphere = static_cast<latLonPrinter_t::hemiFormat_t>(random.integer(0, 2));
        const auto separator = static_cast<latLonPrinter_t::sepFormat_t>(random.integer(0, 2));
        const latLonPrinter_t printer =
            printerFor(fields, static_cast<unsigned>(decimals), hemisphere, separator);
        const std::string text =
            isLatitude ? printer.printLatitude(value) : printer.printLongitude(value);
        const double back = isLatitude ? readLatitude(text) : readLongitude(text);
        const double unit = std::pow(10.0, -decimals) / std::pow(60.0, fields);
        const double error = std::abs(back - value);
        if (!(error <= 0.5 * unit + NOISE))
            QFAIL(qPrintable(QStringLiteral("value %1: %2 (%3)")
                                 .arg(i)
                                 .arg(value, 0, 'g', 17)
                                 .arg(QString::fromLatin1(text.c_str()))));
        if (unit > 1e-9)
            worst = std::max(worst, error / unit);
    }
    qInfo("%d values, the worst %.6f units of the last place off", count, worst);
    QVERIFY(worst > 0.49); // they weren't all harmless
}

void tst_latLonText::printsAgainWhatItRead()
{
    random_t random(2);
    const int count = valueCount();
    for (int i = 0; i < count; ++i) {
        const auto fields = static_cast<latLonPrinter_t::coordFormat_t>(i % 3);
        const latLonPrinter_t printer = maskPrinter(fields);
        const double value = random.real(-180.0, 180.0) + random.real(0.0, 1e-8);
        const std::string text = printer.printLongitude(value);
        QCOMPARE(printer.printLongitude(readLongitude(text)), text);
    }
}

void tst_latLonText::takesNoNoticeOfTheLocale()
{
    if (qgetenv("LC_ALL") == "de_DE.UTF-8") // a run of its own
        QCOMPARE(localeconv()->decimal_point, ",");
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new commas_t));
    const QString printed = latitude(maskPrinter(CF_DMS), 12.999);
    const double read = readLatitude("12.5\xB0N");
    const double readWithComma = readLatitude("12,5\xB0N");
    std::locale::global(before);
    QCOMPARE(printed, QStringLiteral("12° 59' 56.4000\" N"));
    QCOMPARE(read, 12.5);
    QCOMPARE(readWithComma, NOTHING);
}

ZORBIN_TEST_MAIN(tst_latLonText, QCoreApplication)
#include "tst_latLonText.moc"
