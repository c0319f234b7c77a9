#include "recordingReader.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QGeoPositionInfo>
#include <QNmeaPositionInfoSource>
#include <QTimeZone>
#include <cmath>
#include <limits>
#include <optional>

namespace survey_console {
namespace {

const qint64 MAX_LINE = 1024; // bytes; a sentence has at most 82
const double DAY = 86400.0;   // s
const double LARGE = 1e6;     // beyond what any channel measures
const int STAMP_LENGTH = 19;  // of "2014-08-01T00:00:00", before the fraction

// What stands between '$' and '*', when the sentence is whole and printable. The checksum is the
// exclusive or of these bytes, two hexadecimal digits after the '*'.
struct body_t
{
    QByteArray text;
    bool checked = false; // has a checksum, which is right
};

std::optional<body_t> bodyOf(const QByteArray& sentence)
{
    if (sentence.size() < 2 || sentence[0] != '$')
        return std::nullopt;
    for (const char c : sentence) {
        if (c < ' ' || c > '~')
            return std::nullopt;
    }
    const int star = static_cast<int>(sentence.lastIndexOf('*'));
    if (star < 0)
        return body_t{sentence.mid(1), false};
    const QByteArray text = sentence.mid(1, star - 1);
    int sum = 0;
    for (const char c : text)
        sum ^= c;
    bool isHex = false;
    if (sentence.size() != star + 3 || sentence.mid(star + 1).toInt(&isHex, 16) != sum || !isHex)
        return std::nullopt;
    return body_t{text, true};
}

} // namespace

// Opens Qt's parser of single sentences, which is protected, to the reader.
class positionParser_t : public QNmeaPositionInfoSource
{
public:
    positionParser_t() : QNmeaPositionInfoSource(SimulationMode) {}

    // What the sentence says, or nothing when it is malformed.
    std::optional<QGeoPositionInfo> parse(const QByteArray& sentence, bool* hasFix)
    {
        QGeoPositionInfo info;
        if (!parsePosInfoFromNmeaData(sentence.constData(), static_cast<int>(sentence.size()),
                                      &info, hasFix))
            return std::nullopt;
        return info;
    }
};

// The fields of one sentence. Remembers whether one that was asked for is malformed.
class recordingReader_t::fields_t
{
public:
    explicit fields_t(const QByteArray& body) : m_fields(body.split(',')) {}

    QByteArray text(int index) const { return m_fields.value(index); }

    // The number in a field, or nothing when it is empty. Anything else is malformed, as is a field
    // that the sentence is too short for.
    std::optional<double> number(int index, double min, double max)
    {
        const QByteArray field = text(index);
        bool isNumber = false;
        const double value = field.toDouble(&isNumber);
        if (isNumber && value >= min && value <= max) // NaN is in no range
            return value;
        if (index >= m_fields.size() || !field.isEmpty())
            m_malformed = true;
        return std::nullopt;
    }

    bool malformed() const { return m_malformed; }

private:
    QList<QByteArray> m_fields;
    bool m_malformed = false;
};

recordingReader_t::recordingReader_t() : m_positionParser(std::make_unique<positionParser_t>())
{
}

recordingReader_t::~recordingReader_t() = default;

void recordingReader_t::addLine(const QByteArray& line)
{
    const QByteArray trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return;
    ++m_counts.lines;
    switch (read(trimmed)) {
    case VERDICT_USED:
        ++m_counts.used;
        break;
    case VERDICT_UNUSED:
        ++m_counts.unused;
        break;
    case VERDICT_BAD:
        ++m_counts.bad;
        break;
    }
}

void recordingReader_t::addLines(QIODevice* device)
{
    while (addLines(device, std::numeric_limits<int>::max()))
        continue;
}

bool recordingReader_t::addLines(QIODevice* device, int count)
{
    for (; count > 0 && !device->atEnd(); --count) {
        const QByteArray line = device->readLine(MAX_LINE);
        if (line.isEmpty())
            return false; // a read error
        // The rest of an overlong line belongs to the line that was just counted as bad.
        if (!m_isWithinLine)
            addLine(line);
        m_isWithinLine = !line.endsWith('\n');
    }
    if (!device->atEnd())
        return true;
    m_isWithinLine = false;
    return false;
}

recording_t recordingReader_t::takeRecording()
{
    if (!m_stamped) {
        m_recording.setDated(m_dated);
        m_recording.shift(static_cast<double>(m_firstDay) * DAY);
    }
    m_recording.deriveRates();
    recording_t recording = std::move(m_recording);
    m_recording = recording_t();
    m_stamped = m_timed = m_dated = false;
    m_time = 0.0;
    m_firstDay = 0;
    return recording;
}

recordingReader_t::verdict_t recordingReader_t::read(const QByteArray& line)
{
    const int blank = line[0] == '$' ? -1 : static_cast<int>(line.indexOf(' '));
    const QByteArray sentence = line.mid(blank + 1);
    const std::optional<body_t> body = bodyOf(sentence);
    if (!body || (blank >= 0 && !stamp(line.left(blank))))
        return VERDICT_BAD;

    fields_t fields(body->text);
    const QByteArray address = fields.text(0);
    const QByteArray kind = address.startsWith('P') ? address : address.mid(2);
    const bool isPosition = kind == "GGA" || kind == "GLL" || kind == "RMC" || kind == "ZDA";
    const bool isAttitude = kind == "PSXN" && fields.text(1) == "23";
    if (!isPosition && !isAttitude && kind != "VTG" && kind != "HDT" && kind != "DPT" &&
        kind != "DBT")
        return VERDICT_UNUSED;
    if (!body->checked)
        return VERDICT_BAD; // a cut number still looks like one
    return isPosition ? readPosition(sentence, address) : readValues(address, kind, &fields);
}

// All fields are read before any is added, so that a malformed sentence gives nothing.
recordingReader_t::verdict_t recordingReader_t::readValues(const QByteArray& address,
                                                           const QByteArray& kind, fields_t* fields)
{
    struct reading_t
    {
        channelId_t id;
        std::optional<double> value;
    };
    std::vector<reading_t> readings;
    const auto take = [&](channelId_t id, int index, double min, double max) {
        readings.push_back({id, fields->number(index, min, max)});
    };
    if (kind == "VTG") {
        take(CHANNEL_COURSE, 1, 0.0, 360.0);
        take(CHANNEL_SPEED, 5, 0.0, LARGE);
    } else if (kind == "HDT") {
        take(address == "HEHDT" ? CHANNEL_GYRO_HEADING : CHANNEL_HEADING, 1, 0.0, 360.0);
    } else if (kind == "DPT") {
        take(CHANNEL_DEPTH, 1, 0.0, LARGE);
    } else if (kind == "DBT") {
        take(CHANNEL_DEPTH, 3, 0.0, LARGE);
    } else { // PSXN,23
        take(CHANNEL_ROLL, 2, -180.0, 180.0);
        take(CHANNEL_PITCH, 3, -90.0, 90.0);
        take(CHANNEL_HEADING, 4, 0.0, 360.0);
        take(CHANNEL_HEAVE, 5, -LARGE, LARGE);
    }
    if (fields->malformed())
        return VERDICT_BAD;
    bool used = false;
    for (const reading_t& reading : readings) {
        if (reading.value && add(reading.id, address, *reading.value))
            used = true;
    }
    return used ? VERDICT_USED : VERDICT_UNUSED;
}

recordingReader_t::verdict_t recordingReader_t::readPosition(const QByteArray& sentence,
                                                             const QByteArray& address)
{
    bool hasFix = false;
    const std::optional<QGeoPositionInfo> info = m_positionParser->parse(sentence, &hasFix);
    if (!info)
        return VERDICT_BAD;
    const QTime time = info->timestamp().time();
    if (!m_stamped && time.isValid()) {
        const QDate date = info->timestamp().date();
        timeOfDay(time.msecsSinceStartOfDay() / 1000.0,
                  date.isValid() ? QDate(1970, 1, 1).daysTo(date) : -1);
    }
    if (!hasFix || !m_timed || !info->coordinate().isValid())
        return VERDICT_UNUSED;
    return m_recording.addFix(QString::fromLatin1(address), {m_time, info->coordinate()})
               ? VERDICT_USED
               : VERDICT_UNUSED;
}

// Takes over a time of reception such as "2014-08-01T00:00:00.183000Z". False if it is none, goes
// back or leaps ahead by more than a day, as one with a damaged digit does.
bool recordingReader_t::stamp(const QByteArray& text)
{
    if (text.size() <= STAMP_LENGTH || !text.endsWith('Z'))
        return false;
    const QDateTime whole =
        QDateTime::fromString(QString::fromLatin1(text.left(STAMP_LENGTH)), Qt::ISODate);
    const QByteArray fractionText = text.mid(STAMP_LENGTH, text.size() - STAMP_LENGTH - 1);
    bool isNumber = true;
    const double fraction = fractionText.isEmpty() ? 0.0 : fractionText.toDouble(&isNumber);
    if (!whole.isValid() || !isNumber || !(fraction >= 0.0 && fraction < 1.0))
        return false;
    if (m_timed && !m_stamped)
        return true; // the times of the sentences came first and stay the only ones
    static const QTimeZone zone = QTimeZone::utc();
    const QDateTime utc(whole.date(), whole.time(), zone);
    const double time = static_cast<double>(utc.toSecsSinceEpoch()) + fraction;
    if (m_timed && !(time >= m_time && time <= m_time + DAY))
        return false;
    m_stamped = m_timed = true;
    m_time = time;
    return true;
}

// Takes over a time of day from a sentence, and the date if the sentence has one (else -1, in days
// since 1970). Of the days it may belong to it is taken for the one nearest to the time so far, so
// midnight leads to the next day; a late sentence doesn't turn the time back.
void recordingReader_t::timeOfDay(double seconds, qint64 dateDay)
{
    const double day = m_timed ? std::round((m_time - seconds) / DAY) : 0.0;
    const double time = day * DAY + seconds;
    if (!m_timed || time > m_time)
        m_time = time;
    m_timed = true;
    if (dateDay >= 0 && !m_dated) {
        m_dated = true;
        m_firstDay = dateDay - static_cast<qint64>(std::floor(time / DAY));
    }
}

bool recordingReader_t::add(channelId_t id, const QByteArray& source, double value)
{
    return m_timed && m_recording.add(id, QString::fromLatin1(source), {m_time, value});
}

QStringList recordingNameFilters()
{
    return {QStringLiteral("*.log"), QStringLiteral("*.nmea"), QStringLiteral("*.txt")};
}

QString openRecordingFile(const QString& path, QFile* file)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) // a pipe would be waited for, a device may never end
        return QStringLiteral("'%1' is not a regular file").arg(path);
    file->setFileName(path);
    if (!file->open(QIODevice::ReadOnly))
        return QStringLiteral("cannot open '%1': %2").arg(path, file->errorString());
    if (file->size() == 0)
        return QStringLiteral("'%1' is empty").arg(path);
    return {};
}

readResult_t takeResult(const QString& path, const QFile& file, recordingReader_t* reader)
{
    readResult_t result;
    result.counts = reader->counts();
    if (file.error() != QFileDevice::NoError) {
        result.error = QStringLiteral("cannot read '%1': %2").arg(path, file.errorString());
        return result;
    }
    result.recording = reader->takeRecording();
    if (result.recording.isEmpty())
        result.error = QStringLiteral("'%1' holds nothing to replay: %2 lines, %3 of them damaged")
                           .arg(path)
                           .arg(result.counts.lines)
                           .arg(result.counts.bad);
    return result;
}

readResult_t readRecording(const QString& path)
{
    QFile file;
    const QString error = openRecordingFile(path, &file);
    if (!error.isEmpty()) {
        readResult_t result;
        result.error = error;
        return result;
    }
    recordingReader_t reader;
    reader.addLines(&file);
    return takeResult(path, file, &reader);
}

} // namespace survey_console
