#include "recordingLoader.h"

#include <QElapsedTimer>

namespace survey_console {
namespace {

const int LINES_BETWEEN_LOOKS_AT_THE_CLOCK = 50;

} // namespace

recordingLoader_t::recordingLoader_t(QString path, QObject* parent)
    : QObject(parent), m_path(std::move(path))
{
    connect(&m_timer, &QTimer::timeout, this, [this] { readSlice(SLICE); });
}

void recordingLoader_t::start()
{
    const QString error = openRecordingFile(m_path, &m_file);
    if (!error.isEmpty()) {
        readResult_t line;
        line.error = error;
        finish(std::move(line));
        return;
    }
    m_timer.start(0); // whenever there are no other events
    readSlice(FIRST_SLICE);
}

void recordingLoader_t::readSlice(int duration)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_reader.addLines(&m_file, LINES_BETWEEN_LOOKS_AT_THE_CLOCK)) {
        if (elapsed.elapsed() >= duration) {
            Q_EMIT progressed(static_cast<double>(m_file.pos()) /
                              static_cast<double>(m_file.size()));
            return;
        }
    }
    finish(takeResult(m_path, m_file, &m_reader));
}

void recordingLoader_t::finish(readResult_t line)
{
    m_timer.stop();
    m_file.close();
    Q_EMIT finished(std::make_shared<readResult_t>(std::move(line)));
}

} // namespace survey_console
