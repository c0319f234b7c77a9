#include "sonarRecord.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <limits>
#include <optional>

namespace survey_console {
namespace {

const int MAX_COLUMNS = 16384;
const int MAX_ROWS = 100000;
const int MAX_AMPLITUDE = 65535;
const qint64 MAX_HEADER = 4096;   // bytes, comments included
const qint64 MAX_LINE = 4096;     // bytes
const double MAX_RANGE = 1000.0;  // m
const double MAX_SPACING = 10.0;  // m, of samples
const double MAX_DEPTH = 12000.0; // m
const double MAX_FREQUENCY = 1e7; // Hz

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

enum kind_t
{
    KIND_SIDESCAN,
    KIND_ECHOGRAM
};

// What the table says about one ping; nothing that isn't there or isn't sound.
struct row_t
{
    std::optional<double> time;
    std::optional<double> scale; // m: the slant range, or from one sample to the next
    std::optional<int> samples;  // as many as the picture has columns, or fewer
    std::optional<double> depth;
    std::optional<double> frequency;
};

// The numbers of the table's columns, -1 for one that isn't there.
struct columns_t
{
    int time;
    int scale;
    int samples;
    int depth;
    int frequency;
};

std::optional<double> timeOf(const QByteArray& text)
{
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs);
    if (!time.isValid() || time.timeSpec() != Qt::UTC || time.toMSecsSinceEpoch() < 0)
        return std::nullopt;
    return static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
}

std::optional<double> numberOf(const QByteArray& text, double min, double max)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !(number >= min && number <= max)) // NaN is in no range
        return std::nullopt;
    return number;
}

std::optional<int> countOf(const QByteArray& text, int max)
{
    bool isNumber = false;
    const int count = text.toInt(&isNumber);
    if (!isNumber || count < 1 || count > max)
        return std::nullopt;
    return count;
}

// Above 0.
std::optional<double> lengthOf(const QByteArray& text, double max)
{
    return numberOf(text, std::numeric_limits<double>::min(), max);
}

// A line without its end; nothing at the file's end and for one that is too long.
std::optional<QByteArray> lineOf(QFile* file)
{
    const QByteArray line = file->readLine(MAX_LINE);
    if (line.isEmpty() || (line.size() == MAX_LINE - 1 && !line.endsWith('\n')))
        return std::nullopt;
    return line.trimmed();
}

// Nothing if one is missing that a table of this kind must have.
std::optional<columns_t> columnsOf(const QByteArray& header, kind_t kind)
{
    const QList<QByteArray> names = header.split(',');
    const auto find = [&names](const char* name) { return static_cast<int>(names.indexOf(name)); };
    const bool isEchogram = kind == KIND_ECHOGRAM;
    const columns_t columns = {find("time_utc"),
                               find(isEchogram ? "sample_spacing_m" : "slant_range_m"),
                               find("samples"), find("depth_m"), find("frequency_hz")};
    if (columns.time < 0 || columns.scale < 0 || (isEchogram && columns.samples < 0))
        return std::nullopt;
    return columns;
}

row_t rowOf(const QByteArray& line, const columns_t& columns, kind_t kind, int maxSamples)
{
    const QList<QByteArray> fields = line.split(',');
    row_t row;
    row.time = timeOf(fields.value(columns.time));
    if (kind == KIND_SIDESCAN) {
        row.scale = lengthOf(fields.value(columns.scale), MAX_RANGE);
        row.samples = maxSamples;
        return row;
    }
    row.scale = lengthOf(fields.value(columns.scale), MAX_SPACING);
    row.samples = countOf(fields.value(columns.samples), maxSamples);
    row.depth = numberOf(fields.value(columns.depth), 0.0, MAX_DEPTH);
    row.frequency = numberOf(fields.value(columns.frequency), 1.0, MAX_FREQUENCY);
    return row;
}

// The table's rows, at most as many as the picture has.
std::optional<std::vector<row_t>> readTable(QFile* file, const picture_t& picture, kind_t kind)
{
    const std::optional<QByteArray> header = lineOf(file);
    const std::optional<columns_t> columns = header ? columnsOf(*header, kind) : std::nullopt;
    if (!columns)
        return std::nullopt;
    std::vector<row_t> rows;
    while (static_cast<int>(rows.size()) < picture.rows) {
        const std::optional<QByteArray> line = lineOf(file);
        if (!line)
            break;
        rows.push_back(rowOf(*line, *columns, kind, picture.columns));
    }
    return rows;
}

// The level of each amplitude that a file may hold; more than the greatest is the greatest.
std::vector<float> levelTable(kind_t kind, int maxAmplitude)
{
    const auto levelOf = [kind, maxAmplitude](int amplitude) {
        if (kind == KIND_ECHOGRAM)
            return static_cast<float>(amplitude);
        const double level = 20.0 * std::log10(static_cast<double>(amplitude) / maxAmplitude);
        return amplitude > 0 ? static_cast<float>(level) : MIN_LEVEL;
    };
    std::vector<float> levels(MAX_AMPLITUDE + 1, levelOf(maxAmplitude));
    for (int amplitude = 0; amplitude < maxAmplitude; ++amplitude)
        levels[static_cast<std::size_t>(amplitude)] = levelOf(amplitude);
    return levels;
}

std::vector<float> levelsOf(const QByteArray& row, int samples, bool isWide,
                            const std::vector<float>& table)
{
    std::vector<float> levels(static_cast<std::size_t>(samples));
    const auto* bytes = reinterpret_cast<const uchar*>(row.constData());
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = table[isWide ? bytes[2 * i] * 256U + bytes[2 * i + 1] : bytes[i]];
    return levels;
}

sonarResult_t failure(const QString& error)
{
    return {sonarRecord_t(), error};
}

sonarResult_t readRecord(const QString& path, kind_t kind)
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
    const auto rows = readTable(&table, *picture, kind);
    if (!rows)
        return failure(QStringLiteral("'%1' is no table of pings").arg(tablePath));

    sonarResult_t result;
    sonarRecord_t& record = result.record;
    const std::vector<float> levels = levelTable(kind, picture->maxAmplitude);
    const bool isWide = picture->maxAmplitude > 255; // two bytes, the higher one first
    const int rowSize = picture->columns * (isWide ? 2 : 1);
    std::optional<double> scale; // the first one is that of all
    for (const row_t& row : *rows) {
        const QByteArray samples = amplitudes.read(rowSize);
        if (samples.size() < rowSize)
            break; // cut off
        if (!scale)
            scale = row.scale;
        const bool isInOrder =
            row.time && (record.pings.empty() || *row.time >= record.pings.back().time);
        if (!isInOrder || !row.scale || row.scale != scale || !row.samples)
            continue;
        ping_t ping = {*row.time, levelsOf(samples, *row.samples, isWide, levels)};
        if (row.depth)
            ping.depth = *row.depth;
        if (record.pings.empty())
            record.frequency = row.frequency.value_or(0.0);
        record.pings.push_back(std::move(ping));
    }
    if (record.pings.empty())
        return failure(QStringLiteral("'%1' holds no whole ping").arg(path));
    record.damaged = picture->rows - static_cast<int>(record.pings.size());
    record.fullLevel = levels.back();
    record.extent = kind == KIND_SIDESCAN
                        ? extent_t{-*scale, *scale, picture->columns}
                        : extent_t{0.0, *scale * picture->columns, picture->columns};
    return result;
}

} // namespace

sonarResult_t readSonarRecord(const QString& path)
{
    return readRecord(path, KIND_SIDESCAN);
}

sonarResult_t readEchogram(const QString& path)
{
    return readRecord(path, KIND_ECHOGRAM);
}

} // namespace survey_console
