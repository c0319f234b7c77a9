#pragma once
#include "recordingReader.h"
#include "replayClock.h"

#include <QTimer>
#include <QWidget>
#include <vector>

class QGridLayout;

namespace survey_console {
class chartPanel_t;
class navigationPanel_t;

/// The console: the survey line's charts with their time axes and a speed gauge, above them the
/// time and position, below them the replay's controls. Space pauses and resumes; Left, Right, Page
/// Up, Page Down, Home and End seek.
class mainWindow_t : public QWidget
{
    Q_OBJECT
public:
    /// Shows the recording in \p line, standing at its start and paused. \p realTime is what the
    /// replay clock reads.
    mainWindow_t(const QString& lineName, readResult_t line, std::function<double()> realTime,
                 QWidget* parent = nullptr);
    ~mainWindow_t() override;

    /// The clock all panels follow. While it runs, a timer advances it once a frame.
    replayClock_t* clock() { return &m_clock; }
    const std::vector<chartPanel_t*>& chartPanels() const { return m_chartPanels; }

private:
    void addTimeAxes(QGridLayout* charts);
    void addShortcut(int key, std::function<void()> action);
    void showReplay();

    const recording_t m_recording;
    replayClock_t m_clock;
    QTimer m_frameTimer;
    navigationPanel_t* m_navigationPanel;
    std::vector<chartPanel_t*> m_chartPanels;
};

} // namespace survey_console
