#include "coordinateText_p.h"

#include <QRegularExpression>
#include <zorbin/latLonParser.h>

namespace zorbin_qt_gui {
namespace {

constexpr int MAX_LENGTH = 100; // no coordinate is longer

enum kind_t
{
    LATITUDE,
    LONGITUDE
};

QRegularExpression pattern(const char* text)
{
    return QRegularExpression(QString::fromLatin1(text));
}

// One spelling for each mark, in upper case, without blanks at the ends.
QString normalized(const QString& text)
{
    const struct
    {
        const char16_t* variants;
        const char16_t* mark;
    } spellings[] = {
        {u"\u00BA\u02DA", u"\u00B0"},              // ordinal indicator, ring above
        {u"\u2032\u2019\u2018\u00B4`", u"'"},      // primes, quotation marks, accents
        {u"\u2033\u201D\u201C\u201E", u"\""},      // likewise double
        {u"\u2212\u2010\u2011\u2012\u2013", u"-"}, // minus, hyphens, dashes
        {u":", u" "},
    };
    QString result = text.toUpper();
    for (const auto& spelling : spellings)
        for (const char16_t* variant = spelling.variants; *variant != u'\0'; ++variant)
            result.replace(QChar(*variant), QString::fromUtf16(spelling.mark));
    result.replace(QStringLiteral("''"), QStringLiteral("\""));
    return result.simplified(); // other white space becomes blanks
}

// Reads a single coordinate.
std::optional<coordinateText_t> readOne(QString text, kind_t kind)
{
    static const QRegularExpression letterBefore(pattern("^([NSEW]) ?([^NSEW]*)$"));
    static const QRegularExpression packedLatitude(
        pattern("^([+-]?)(\\d\\d)(\\d\\d)(\\d\\d)?(\\.\\d+)?( ?[NS])?$"));
    static const QRegularExpression packedLongitude(
        pattern("^([+-]?)(\\d\\d\\d)(\\d\\d)(\\d\\d)?(\\.\\d+)?( ?[EW])?$"));
    static const QRegularExpression hemisphere(pattern("[NSEW+-]"));
    static const QRegularExpression number(pattern("^[\\d.]+$"));

    text = text.trimmed();
    text.replace(letterBefore, QStringLiteral("\\2\\1"));
    const bool hasHemisphere = text.contains(hemisphere);
    if (hasHemisphere)
        text.replace(kind == LATITUDE ? packedLatitude : packedLongitude,
                     QStringLiteral("\\1\\2 \\3 \\4\\5\\6"));
    // Without seconds a blank is left before the point.
    text.replace(QStringLiteral(" ."), QStringLiteral("."));

    const std::string bytes = text.toLatin1().toStdString();
    const zorbin::latLonParser_t parser;
    double value = 0.0;
    const int result =
        kind == LATITUDE ? parser.parseLatitude(bytes, value) : parser.parseLongitude(bytes, value);
    if (result == -1)
        return std::nullopt;
    return coordinateText_t{value, hasHemisphere, text.contains(number)};
}

// Commas become points or separators, by what is beside them. False if they might be either.
bool settleCommas(QString& text)
{
    static const QRegularExpression beforeLetter(pattern(" ?, ?([NSEW])(?= ?(,|$))"));
    static const QRegularExpression betweenDigits(pattern("(\\d),(?=\\d)"));
    static const QRegularExpression clearlyNoPair(pattern("[NSEW\xB0'\"]"));
    text.replace(beforeLetter, QStringLiteral("\\1"));
    if (text.contains(betweenDigits) && !text.contains(QLatin1Char('.'))) {
        if (!text.contains(clearlyNoPair))
            return false;
        text.replace(betweenDigits, QStringLiteral("\\1."));
    }
    text.replace(QLatin1Char(','), QLatin1Char(';'));
    return true;
}

// Reads one of a pair. There is one way at most to divide a text into two coordinates, since signs
// and letters stand at their ends.
std::optional<coordinateText_t> readOneOfPair(const QString& text, kind_t kind)
{
    static const QRegularExpression letter(pattern("[NSEW]"));
    static const QRegularExpression placeToDivide(
        pattern("[;/]|(?<=[NSEW])(?=.)|(?<=.)(?=[NSEW+-])"));
    QRegularExpressionMatchIterator places = placeToDivide.globalMatch(text);
    while (places.hasNext()) {
        const QRegularExpressionMatch place = places.next();
        const QString first = text.left(place.capturedStart());
        const QString second = text.mid(place.capturedEnd());
        const bool haveLetters = first.contains(letter) && second.contains(letter);
        for (const bool isLatitudeFirst : {true, false}) {
            if (!isLatitudeFirst && !haveLetters)
                continue; // without letters the latitude comes first
            const auto latitude = readOne(isLatitudeFirst ? first : second, LATITUDE);
            const auto longitude = readOne(isLatitudeFirst ? second : first, LONGITUDE);
            if (latitude && longitude)
                return coordinateText_t{(kind == LATITUDE ? latitude : longitude)->value, true,
                                        false};
        }
    }
    return std::nullopt;
}

std::optional<coordinateText_t> read(const QString& original, kind_t kind)
{
    if (original.size() > MAX_LENGTH)
        return std::nullopt;
    QString text = normalized(original);
    if (!settleCommas(text))
        return std::nullopt;
    if (text.endsWith(QLatin1Char('/')))
        text.chop(1);
    if (const auto one = readOne(text, kind))
        return one;
    return readOneOfPair(text, kind);
}

} // namespace

std::optional<coordinateText_t> readLatitude(const QString& text)
{
    return read(text, LATITUDE);
}

std::optional<coordinateText_t> readLongitude(const QString& text)
{
    return read(text, LONGITUDE);
}

} // namespace zorbin_qt_gui
