#include "sonarRecord.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <optional>

namespace survey_console {
namespace {

const int MAX_COLUMNS = 16384;
const int MAX_ROWS = 100000;
const int MAX_AMPLITUDE = 65535;
const qint64 MAX_HEADER = 4096;  // bytes, comments included
const qint64 MAX_LINE = 4096;    // bytes
const double MAX_RANGE = 1000.0; // m

struct picture_t
{
    int columns = 0;
    int rows = 0; // as declared; the file may hold fewer
    int maxAmplitude = 0;
};

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Reads the header of a binary PGM file: "P5", columns, rows and the greatest amplitude, apart by
// blanks and comments, and one blank that ends it.
class headerReader_t
{
public:
    explicit headerReader_t(QFile* file) : m_file(file) {}

    std::optional<picture_t> read()
    {
        picture_t picture;
        if (next() != 'P' || next() != '5')
            return std::nullopt;
        m_last = next();
        if (!number(&picture.columns, MAX_COLUMNS) || !number(&picture.rows, MAX_ROWS) ||
            !number(&picture.maxAmplitude, MAX_AMPLITUDE))
            return std::nullopt;
        return picture;
    }

private:
    // The next byte, or NUL at the end.
    char next()
    {
        char c = '\0';
        if (++m_read > MAX_HEADER || !m_file->getChar(&c))
            return '\0';
        return c;
    }

    // Skips the blanks and comments at m_last, of which there must be some, and reads a number from
    // 1 to max. Leaves the blank behind it in m_last.
    bool number(int* value, int max)
    {
        if (!isBlank(m_last))
            return false;
        while (isBlank(m_last) || m_last == '#') {
            if (m_last == '#') {
                while (m_last != '\n' && m_last != '\0')
                    m_last = next();
            }
            if (m_last != '\0')
                m_last = next();
        }
        *value = 0;
        while (m_last >= '0' && m_last <= '9') {
            *value = *value * 10 + (m_last - '0');
            if (*value > max)
                return false;
            m_last = next();
        }
        return *value > 0 && isBlank(m_last);
    }

    QFile* const m_file;
    qint64 m_read = 0;
    char m_last = '\0';
};

// What the table says about one ping; nothing that isn't there or isn't sound.
struct row_t
{
    std::optional<double> time;
    std::optional<double> range;
};

std::optional<double> timeOf(const QByteArray& text)
{
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs);
    if (!time.isValid() || time.timeSpec() != Qt::UTC || time.toMSecsSinceEpoch() < 0)
        return std::nullopt;
    return static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
}

std::optional<double> rangeOf(const QByteArray& text)
{
    bool isNumber = false;
    const double range = text.toDouble(&isNumber);
    if (!isNumber || !(range > 0.0 && range <= MAX_RANGE)) // NaN is in no range
        return std::nullopt;
    return range;
}

// A line without its end; nothing at the file's end and for one that is too long.
std::optional<QByteArray> lineOf(QFile* file)
{
    const QByteArray line = file->readLine(MAX_LINE);
    if (line.isEmpty() || (line.size() == MAX_LINE - 1 && !line.endsWith('\n')))
        return std::nullopt;
    return line.trimmed();
}

// The table's rows, at most `count`.
std::optional<std::vector<row_t>> readTable(QFile* file, int count)
{
    const std::optional<QByteArray> header = lineOf(file);
    if (!header)
        return std::nullopt;
    const QList<QByteArray> names = header->split(',');
    const int time = static_cast<int>(names.indexOf("time_utc"));
    const int range = static_cast<int>(names.indexOf("slant_range_m"));
    if (time < 0 || range < 0)
        return std::nullopt;
    std::vector<row_t> rows;
    while (static_cast<int>(rows.size()) < count) {
        const std::optional<QByteArray> line = lineOf(file);
        if (!line)
            break;
        const QList<QByteArray> fields = line->split(',');
        rows.push_back({timeOf(fields.value(time)), rangeOf(fields.value(range))});
    }
    return rows;
}

// The level of each amplitude that a file may hold.
std::vector<float> levelTable(int maxAmplitude)
{
    std::vector<float> levels(MAX_AMPLITUDE + 1, 0.0F); // more than the greatest is the greatest
    levels[0] = MIN_LEVEL;
    for (int amplitude = 1; amplitude < maxAmplitude; ++amplitude) {
        const double level = 20.0 * std::log10(static_cast<double>(amplitude) / maxAmplitude);
        levels[static_cast<std::size_t>(amplitude)] = static_cast<float>(level);
    }
    return levels;
}

std::vector<float> levelsOf(const QByteArray& row, const picture_t& picture,
                            const std::vector<float>& table)
{
    std::vector<float> levels(static_cast<std::size_t>(picture.columns));
    const auto* bytes = reinterpret_cast<const uchar*>(row.constData());
    const bool isWide = picture.maxAmplitude > 255; // two bytes, the higher one first
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = table[isWide ? bytes[2 * i] * 256U + bytes[2 * i + 1] : bytes[i]];
    return levels;
}

sonarResult_t failure(const QString& error)
{
    return {sonarRecord_t(), error};
}

} // namespace

sonarResult_t readSonarRecord(const QString& path)
{
    const QFileInfo info(path);
    const QString tablePath = info.dir().filePath(info.completeBaseName() + QStringLiteral(".csv"));
    QFile amplitudes(path);
    QFile table(tablePath);
    for (QFile* file : {&amplitudes, &table}) {
        const QFileInfo fileInfo(file->fileName());
        if (fileInfo.exists() && !fileInfo.isFile())
            return failure(QStringLiteral("'%1' is not a regular file").arg(file->fileName()));
        if (!file->open(QIODevice::ReadOnly))
            return failure(
                QStringLiteral("cannot open '%1': %2").arg(file->fileName(), file->errorString()));
    }
    const std::optional<picture_t> picture = headerReader_t(&amplitudes).read();
    if (!picture)
        return failure(QStringLiteral("'%1' is no sonar record: not a binary PGM file").arg(path));
    const auto rows = readTable(&table, picture->rows);
    if (!rows)
        return failure(QStringLiteral("'%1' is no table of pings").arg(tablePath));

    sonarResult_t result;
    sonarRecord_t& record = result.record;
    const std::vector<float> levels = levelTable(picture->maxAmplitude);
    const int rowSize = picture->columns * (picture->maxAmplitude > 255 ? 2 : 1);
    for (const row_t& row : *rows) {
        const QByteArray samples = amplitudes.read(rowSize);
        if (samples.size() < rowSize)
            break; // cut off
        if (record.slantRange == 0.0 && row.range)
            record.slantRange = *row.range;
        const bool isInOrder =
            row.time && (record.pings.empty() || *row.time >= record.pings.back().time);
        if (isInOrder && row.range == record.slantRange)
            record.pings.push_back({*row.time, levelsOf(samples, *picture, levels)});
    }
    record.damaged = picture->rows - static_cast<int>(record.pings.size());
    if (record.pings.empty())
        return failure(QStringLiteral("'%1' holds no whole ping").arg(path));
    return result;
}

} // namespace survey_console
