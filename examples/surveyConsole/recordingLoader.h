#pragma once
#include "recordingReader.h"

#include <QFile>
#include <QObject>
#include <QTimer>

namespace survey_console {

/// Reads a recording in slices of a few milliseconds between other events, so that a long one
/// neither stops the replay nor keeps the user from thinking better of it. Destroying the loader
/// ends the reading.
class recordingLoader_t : public QObject
{
    Q_OBJECT
public:
    static constexpr int FIRST_SLICE = 50; ///< ms; what takes less is read at once
    static constexpr int SLICE = 10;       ///< ms

    explicit recordingLoader_t(QString path, QObject* parent = nullptr);

    /// Begins to read, once. A short recording is finished when the call returns.
    void start();

Q_SIGNALS:
    /// How much of the file is read, 0.0 to 1.0.
    void progressed(double share_);
    /// The recording, or why there is none; the last signal.
    void finished(std::shared_ptr<readResult_t> line_);

private:
    void readSlice(int duration);
    void finish(readResult_t line);

    const QString m_path;
    QFile m_file;
    recordingReader_t m_reader;
    QTimer m_timer; // runs while there is more to read
};

} // namespace survey_console
