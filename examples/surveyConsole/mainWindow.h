#pragma once
#include "recordingReader.h"
#include "replayClock.h"
#include "sonarRecord.h"

#include <QTimer>
#include <QWidget>
#include <vector>

class QGridLayout;
class QStackedWidget;

namespace survey_console {
class chartPanel_t;
class navigationPanel_t;
class replayControls_t;
class sonarPanel_t;

/// The console: the survey line's charts with their time axes and a speed gauge, above them the
/// time and position, below them the replay's controls. Space pauses and resumes; Left, Right, Page
/// Up, Page Down, Home and End seek.
class mainWindow_t : public QWidget
{
    Q_OBJECT
public:
    enum page_t
    {
        PAGE_CHARTS,
        PAGE_SONAR
    };

    /// Shows the recording in \p line, standing at its start and paused. \p realTime is what the
    /// replay clock reads.
    mainWindow_t(const QString& lineName, readResult_t line, std::function<double()> realTime,
                 QWidget* parent = nullptr);
    ~mainWindow_t() override;

    /// Adds the page of a sidescan record, once, which holds at least one ping. It follows the
    /// clock from the line's start on.
    void addSonar(const QString& name, sonarRecord_t record);
    /// Turns to a page. That of the sonar has to be added before.
    void showPage(page_t page);
    sonarPanel_t* sonarPanel() const { return m_sonarPanel; }

    /// The clock all panels follow. While it runs, a timer advances it once a frame.
    replayClock_t* clock() { return &m_clock; }
    const std::vector<chartPanel_t*>& chartPanels() const { return m_chartPanels; }

private:
    QWidget* makeChartPage(replayControls_t* controls);
    void addTimeAxes(QGridLayout* charts);
    void addShortcut(int key, std::function<void()> action);
    void showReplay();

    const recording_t m_recording;
    sonarRecord_t m_sonarRecord;
    replayClock_t m_clock;
    QTimer m_frameTimer;
    navigationPanel_t* m_navigationPanel;
    std::vector<chartPanel_t*> m_chartPanels;
    QStackedWidget* m_pages;
    sonarPanel_t* m_sonarPanel = nullptr; // until there is a record
};

} // namespace survey_console
