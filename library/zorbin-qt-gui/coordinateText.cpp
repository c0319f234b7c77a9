#include "coordinateText_p.h"

#include <QRegularExpression>
#include <algorithm>
#include <vector>
#include <zorbin/latLonParser.h>

namespace zorbin_qt_gui {
namespace {

constexpr int MAX_LENGTH = 100; // no coordinate is longer

enum kind_t
{
    LATITUDE,
    LONGITUDE
};

// Texts of a pair; either may be missing.
struct halves_t
{
    QString latitude;
    QString longitude;
};

struct pair_t
{
    double latitude;
    double longitude;
};

QRegularExpression pattern(const char* text)
{
    return QRegularExpression(QString::fromLatin1(text));
}

// One spelling for each mark, and no more than single blanks.
QString withPlainMarks(QString text)
{
    const struct
    {
        const char16_t* variants;
        const char16_t* mark;
    } spellings[] = {
        {u"\u00BA\u02DA", u"\u00B0"},              // ordinal indicator, ring above
        {u"\u2032\u2019\u2018\u00B4`", u"'"},      // primes, quotation marks, accents
        {u"\u2033\u201D\u201C\u201E", u"\""},      // the same, double
        {u"\u2212\u2010\u2011\u2012\u2013", u"-"}, // minus, hyphens, dashes
    };
    for (const auto& spelling : spellings)
        for (const char16_t* variant = spelling.variants; *variant != u'\0'; ++variant)
            text.replace(QChar(*variant), QString::fromUtf16(spelling.mark));
    text.replace(QStringLiteral("''"), QStringLiteral("\""));
    return text.simplified(); // other white space becomes blanks
}

QString withoutColons(QString text)
{
    return text.replace(QLatin1Char(':'), QLatin1Char(' ')).simplified();
}

// Letters behind degrees, minutes and seconds become marks. False if an S might be either.
bool settleLetters(QString& text)
{
    static const QRegularExpression seconds(pattern("(\\d) ?[dD] ?(\\d+) ?[mM] ?([\\d.]+) ?s"));
    static const QRegularExpression eitherMarkOrSouth(
        pattern("[dD] ?(?:\\d+ ?M ?[\\d.]+ ?S|[\\d.]+ ?s)"));
    static const QRegularExpression minutes(pattern("(\\d) ?[dD] ?([\\d.]+) ?[mM]"));
    static const QRegularExpression degrees(pattern("(\\d) ?[dD]"));
    text.replace(seconds, QStringLiteral("\\1\u00B0 \\2' \\3\""));
    if (text.contains(eitherMarkOrSouth))
        return false;
    text.replace(minutes, QStringLiteral("\\1\u00B0 \\2'"));
    text.replace(degrees, QStringLiteral("\\1\u00B0"));
    return true;
}

// Reads a single coordinate.
std::optional<coordinateText_t> readOne(QString text, kind_t kind)
{
    static const QRegularExpression letterBefore(pattern("^([NSEW]) ?([^NSEW]*)$"));
    static const QRegularExpression hyphen(pattern("(?<=[\\d\xB0'])-(?=\\d\\d?(?!\\d))"));
    static const QRegularExpression packedLatitude(
        pattern("^([+-]?)(\\d\\d)(\\d\\d)(\\d\\d)?(\\.\\d+)?( ?[NS])?$"));
    static const QRegularExpression packedLongitude(
        pattern("^([+-]?)(\\d\\d\\d)(\\d\\d)(\\d\\d)?(\\.\\d+)?( ?[EW])?$"));
    static const QRegularExpression hemisphere(pattern("[NSEW+-]"));
    static const QRegularExpression number(pattern("^[\\d.]+$"));

    text = text.trimmed();
    text.replace(letterBefore, QStringLiteral("\\2\\1"));
    text.replace(hyphen, QStringLiteral(" "));
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
    return coordinateText_t{value, hasHemisphere, text.contains(number), false};
}

// Reads both of a pair.
std::optional<pair_t> readBoth(const halves_t& halves)
{
    const auto latitude = readOne(halves.latitude, LATITUDE);
    const auto longitude = readOne(halves.longitude, LONGITUDE);
    if (!latitude || !longitude)
        return std::nullopt;
    return pair_t{latitude->value, longitude->value};
}

coordinateText_t oneOf(const pair_t& pair, kind_t kind)
{
    return {kind == LATITUDE ? pair.latitude : pair.longitude, true, false, true};
}

// Finds what a text names as a latitude and a longitude.
std::optional<halves_t> namedHalves(const QString& text)
{
    static const QRegularExpression geoUri(
        pattern("^GEO: ?(-?\\d{1,3}(?:\\.\\d+)?) ?, ?(-?\\d{1,3}(?:\\.\\d+)?)(?: ?, ?-?[\\d.]+)?"
                "(?:;CRS=WGS84)?(?:;(?!CRS=)[A-Z\\d-]+(?:=[^;?]*)?)*(?:\\?Z=[\\d.]+)?$"));
    static const QRegularExpression wktPoint(
        pattern("^(?:SRID=4326;)?POINT ?(?:Z|M|ZM)? ?\\( ?([+-]?\\d{1,3}(?:\\.\\d+)?) "
                "([+-]?\\d{1,3}(?:\\.\\d+)?)(?: [+-]?[\\d.]+){0,2} ?\\)$"));
    static const QRegularExpression names(
        pattern("^(LATITUDE|LAT|LONGITUDE|LONG|LON|LNG)\\.? ?[:=]? ?(.+?)(?: ?[,;&/]? ?"
                "(LATITUDE|LAT|LONGITUDE|LONG|LON|LNG)\\.? ?[:=]? ?(.+))?$"));
    static const QRegularExpression betweenDigits(pattern("(?<=\\d),(?=\\d)"));

    if (const auto geo = geoUri.match(text); geo.hasMatch())
        return halves_t{geo.captured(1), geo.captured(2)};
    if (const auto point = wktPoint.match(text); point.hasMatch())
        return halves_t{point.captured(2), point.captured(1)};
    const QRegularExpressionMatch named = names.match(text);
    if (!named.hasMatch())
        return std::nullopt;
    halves_t halves;
    for (const int i : {1, 3}) {
        const QString name = named.captured(i);
        if (name.isEmpty())
            continue; // only one is named
        QString& half = name.startsWith(QLatin1String("LA")) ? halves.latitude : halves.longitude;
        if (!half.isEmpty())
            return halves_t(); // named twice
        half = withoutColons(named.captured(i + 1));
        if (!half.contains(QLatin1Char('.')))
            half.replace(betweenDigits, QStringLiteral("."));
    }
    return halves;
}

std::optional<coordinateText_t> readNamed(const halves_t& halves, kind_t kind)
{
    if (const auto pair = readBoth(halves))
        return oneOf(*pair, kind);
    if (!halves.latitude.isEmpty() && !halves.longitude.isEmpty())
        return std::nullopt;
    auto one = readOne(kind == LATITUDE ? halves.latitude : halves.longitude, kind);
    if (one)
        one->isPlainMagnitude = false;
    return one;
}

// Commas become points or separators, by what is beside them. False if they might be either.
bool settleSeparators(QString& text)
{
    static const QRegularExpression beforeLetter(pattern(" ?, ?([NSEW])(?= ?(,|$))"));
    static const QRegularExpression betweenDigits(pattern("(\\d),(?=\\d)"));
    static const QRegularExpression clearlyNoPair(pattern("[NSEW\xB0'\"]"));
    static const QRegularExpression betweenDecimals(
        pattern("^([+-]?\\d+\\.\\d+\xB0?) ([+-]?\\d+\\.\\d+\xB0?)$"));
    text.replace(beforeLetter, QStringLiteral("\\1"));
    if (text.contains(betweenDigits) && !text.contains(QLatin1Char('.'))) {
        if (!text.contains(clearlyNoPair))
            return false;
        text.replace(betweenDigits, QStringLiteral("\\1."));
    }
    text.replace(QLatin1Char(','), QLatin1Char(';'));
    // A blank separates two numbers with decimals, which are no degrees and minutes.
    text.replace(betweenDecimals, QStringLiteral("\\1;\\2"));
    return true;
}

// Reads the pairs that a text may stand for. Signs and letters stand at the ends of a coordinate.
// If hyphens are separators within one, a hyphen behind an unsigned number isn't a sign.
std::vector<pair_t> readPairs(const QString& text, bool areHyphensSeparators)
{
    static const QRegularExpression letter(pattern("[NSEW]"));
    static const QRegularExpression placeToDivide(
        pattern("[;/]|(?<=[NSEW])(?=.)|(?<=.)(?=[NSEW])|(?<=.)(?=[+-](?! ))"));
    static const QRegularExpression unsignedBefore(pattern("^(?![+-]).*\\d$"));
    std::vector<pair_t> pairs;
    QRegularExpressionMatchIterator places = placeToDivide.globalMatch(text);
    while (places.hasNext()) {
        const QRegularExpressionMatch place = places.next();
        const QString first = text.left(place.capturedStart());
        const QString second = text.mid(place.capturedEnd());
        const bool isBeforeSign =
            place.capturedLength() == 0 && second.startsWith(QLatin1Char('-'));
        if (areHyphensSeparators && isBeforeSign && first.contains(unsignedBefore))
            continue;
        const bool haveLetters = first.contains(letter) && second.contains(letter);
        auto pair = readBoth({first, second});
        if (!pair && haveLetters) // without letters the latitude comes first
            pair = readBoth({second, first});
        const auto isSame = [&pair](const pair_t& other) {
            return other.latitude == pair->latitude && other.longitude == pair->longitude;
        };
        if (pair && std::none_of(pairs.begin(), pairs.end(), isSame))
            pairs.push_back(*pair);
    }
    return pairs;
}

std::optional<coordinateText_t> read(const QString& original, kind_t kind)
{
    if (original.size() > MAX_LENGTH)
        return std::nullopt;
    QString text = withPlainMarks(original);
    if (!settleLetters(text))
        return std::nullopt;
    text = text.toUpper();
    if (const auto halves = namedHalves(text))
        return readNamed(*halves, kind);
    text = withoutColons(text);
    if (!settleSeparators(text))
        return std::nullopt;
    if (text.endsWith(QLatin1Char('/')))
        text.chop(1);

    const auto latitude = readOne(text, LATITUDE);
    const auto longitude = readOne(text, LONGITUDE);
    const bool isSingle = latitude || longitude;
    const std::vector<pair_t> pairs = readPairs(text, isSingle || text.count(QLatin1Char('-')) > 1);
    if (pairs.empty())
        return kind == LATITUDE ? latitude : longitude;
    if (pairs.size() > 1 || isSingle)
        return std::nullopt; // a hyphen may be a sign or a separator
    return oneOf(pairs.front(), kind);
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
