#pragma once
#include "recording.h"

#include <QByteArray>
#include <QString>
#include <memory>

class QFile;
class QIODevice;

namespace survey_console {
class positionParser_t;

/// How many lines of a recording were of use. \c lines is the sum of the others; blank lines don't
/// count.
struct lineCounts_t
{
    int lines = 0;
    int used = 0;   ///< gave a value or a position
    int unused = 0; ///< sound, but empty, of no known kind, before the first time, or a second
                    ///< source of something
    int bad = 0; ///< damaged: no sentence, wrong or missing checksum, malformed, time out of order
};

/// Builds a recording from NMEA 0183 sentences, one a line.
///
/// A line is a sentence, or an ISO 8601 time of reception in UTC, a blank and a sentence. Without
/// times of reception the times of day in the position and ZDA sentences are taken, and their date
/// as soon as one gives it. Position sentences (GGA, GLL, RMC, ZDA) are read by Qt Positioning;
/// VTG, HDT, DPT, DBT and PSXN,23 here. A sentence of these kinds needs its checksum. Bad lines are
/// counted and skipped.
class recordingReader_t
{
public:
    recordingReader_t();
    ~recordingReader_t();

    /// Reads one line, with or without its line end.
    void addLine(const QByteArray& line);
    /// Reads what \p device, open for reading, still holds.
    void addLines(QIODevice* device);
    /// Reads about \p count lines of it. Returns whether it holds more.
    bool addLines(QIODevice* device, int count);

    /// The recording so far, with its rates derived. The reader starts anew.
    recording_t takeRecording();
    /// The counts since the reader was made.
    const lineCounts_t& counts() const { return m_counts; }

private:
    class fields_t;
    enum verdict_t
    {
        VERDICT_USED,
        VERDICT_UNUSED,
        VERDICT_BAD
    };

    verdict_t read(const QByteArray& line);
    verdict_t readValues(const QByteArray& address, const QByteArray& kind, fields_t* fields);
    verdict_t readPosition(const QByteArray& sentence, const QByteArray& address);
    bool stamp(const QByteArray& text);
    void timeOfDay(double seconds, qint64 dateDay);
    bool add(channelId_t id, const QByteArray& source, double value);

    const std::unique_ptr<positionParser_t> m_positionParser; // owned
    recording_t m_recording;
    lineCounts_t m_counts;
    bool m_isWithinLine = false; // an overlong one, whose rest is to be passed over
    bool m_stamped = false;      // lines carry times of reception
    bool m_timed = false;        // m_time is known
    double m_time = 0.0;   // of the current line; without times of reception since day 0's start
    bool m_dated = false;  // m_firstDay is known
    qint64 m_firstDay = 0; // days from 1970-01-01 to day 0
};

/// A recording read from a file, or why it could not be.
struct readResult_t
{
    recording_t recording; ///< empty in case of an error
    lineCounts_t counts;
    QString error; ///< one sentence for the user; empty on success
};

/// The names that recordings go by, as wildcards.
QStringList recordingNameFilters();

/// Opens the regular file \p path. Returns why that isn't possible, or an empty text.
QString openRecordingFile(const QString& path, QFile* file);
/// What \p reader has made of all lines of \p file, opened so.
readResult_t takeResult(const QString& path, const QFile& file, recordingReader_t* reader);

/// Reads the regular file \p path. A file without a single usable line is an error.
readResult_t readRecording(const QString& path);

} // namespace survey_console
