#pragma once
#include "consoleState.h"
#include "echogramPanel.h"
#include "recordingReader.h"
#include "replayClock.h"
#include "sonarRecord.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <map>
#include <memory>
#include <vector>

class QGridLayout;
class QKeySequence;
class QMenu;
class QStackedWidget;

namespace zorbin_qt_gui {
class notifierWidget_t;
}

namespace survey_console {
class chartPanel_t;
class depthPanel_t;
class navigationPanel_t;
class notices_t;
class positionPanel_t;
class recordingLoader_t;
class recordingsPanel_t;
class replayControls_t;
class sonarPanel_t;
class speedPanel_t;

/// The console: the survey line's charts with their time axes and instruments to be read at a
/// glance, above them the time and position, below them the replay's controls. A sidescan record
/// and those of an echosounder have pages of their own. Notices at the lower edge tell of the
/// start, the end and gaps of the recording.
///
/// Everything can be done by keys, which the menu lists: Tab goes from control to control, the
/// other keys work wherever the focus is, unless it is in a field where they are typed.
class mainWindow_t : public QWidget
{
    Q_OBJECT
public:
    /// Shows the recording in \p line, standing at its start and paused. \p realTime is what the
    /// replay clock reads.
    mainWindow_t(const QString& lineName, readResult_t line, std::function<double()> realTime,
                 QWidget* parent = nullptr);
    ~mainWindow_t() override;

    /// Adds the page of a sidescan record, once, which holds at least one ping. It follows the
    /// clock from the line's start on.
    void addSonar(const QString& name, sonarRecord_t record);
    /// Adds the page of an echosounder's records, once, of which there is at least one. It follows
    /// the clock likewise.
    void addEchograms(std::vector<echogram_t> echograms);
    /// Adds the page of the survey, once: where the vessel is and was, and which recordings there
    /// are. The buttons of the pages stand in the order in which the pages are added.
    void addSurvey();
    /// Null until the page of the survey is there.
    recordingsPanel_t* recordings() const { return m_recordings; }
    /// Turns to a page that is there.
    void showPage(page_t page);
    page_t page() const;
    sonarPanel_t* sonarPanel() const { return m_sonarPanel; }
    echogramPanel_t* echogramPanel() const { return m_echogramPanel; }
    notices_t* notices() const { return m_notices; }

    /// The recording that is replayed, a copy.
    readResult_t line() const { return {m_recording, m_counts, QString()}; }

    /// What is to be kept for another window or another run.
    consoleState_t state() const;
    /// Takes over what was kept, once all pages are there and before the window is shown. What
    /// there is no page, palette or place for stays as it is, and is kept on.
    void restore(const consoleState_t& state);

    /// Reads another recording and asks the user whether to replay it in place of this one. If it
    /// can't be read, a notice says why. While a long one is read the replay goes on, and the user
    /// sees how far the reading is and can cancel it.
    void openRecording(const QString& path);

    bool eventFilter(QObject* watched, QEvent* event) override;

    /// What the keys do, a line each: the key, a tab, and what it does.
    QStringList shortcuts() const { return m_shortcuts; }

    /// The clock all panels follow. While it runs, a timer advances it once a frame.
    replayClock_t* clock() { return &m_clock; }
    const std::vector<chartPanel_t*>& chartPanels() const { return m_chartPanels; }

Q_SIGNALS:
    /// The user wants to replay the recording read from \p path_.
    void recordingChosen(const QString& path_, std::shared_ptr<readResult_t> line_);
    /// The user wants the window in other colours, which takes a new one.
    void themeChosen(theme::name_t theme_);

private:
    QWidget* makeChartPage();
    void addPage(page_t page, QWidget* widget, const QString& name);
    void letReplay(pingPanel_t* panel);
    void addTimeAxes(QGridLayout* charts);
    QWidget* makeInstruments();
    template <typename panel_t>
    void letFollow(panel_t* panel);
    void makeMenu();
    void openFileDialog();
    void showLoading(const QString& path);
    void closePrompt();
    QWidget* makePrompt(const char* objectName);
    void askToReplay(const QString& path, std::shared_ptr<readResult_t> line);
    void showAbout();
    void restorePlace(const QByteArray& geometry);
    void orderTabs();
    void addShortcuts();
    void addShortcut(const QKeySequence& key, const QString& text, std::function<void()> action);
    void addAction(QMenu* menu, const QString& text, const QKeySequence& key,
                   void (mainWindow_t::*slot)());
    void listShortcut(const QKeySequence& key, const QString& text);
    void showShortcuts();
    void followData();
    void toggleFullScreen();
    void toggleTheme();
    void quit();
    void dismissNewest();
    void showReplay();

    const recording_t m_recording;
    const lineCounts_t m_counts;
    sonarRecord_t m_sonarRecord;
    std::vector<echogram_t> m_echograms;
    replayClock_t m_clock;
    QTimer m_frameTimer;
    navigationPanel_t* m_navigationPanel;
    replayControls_t* m_controls;
    depthPanel_t* m_depthPanel = nullptr;
    speedPanel_t* m_speedPanel = nullptr;
    std::vector<chartPanel_t*> m_chartPanels;
    QString m_lineName;
    zorbin_qt_gui::notifierWidget_t* m_notifier;
    notices_t* m_notices;
    QPointer<QWidget> m_prompt;           // while the user is asked, or shown how far the loader is
    QPointer<recordingLoader_t> m_loader; // while it reads
    QStackedWidget* m_pages;
    std::map<page_t, QWidget*> m_pageWidgets; // those that there are
    sonarPanel_t* m_sonarPanel = nullptr;     // until there is a record, as the next
    echogramPanel_t* m_echogramPanel = nullptr;
    positionPanel_t* m_positionPanel = nullptr; // until there is a survey, as the next
    recordingsPanel_t* m_recordings = nullptr;
    consoleState_t m_kept; // as restored
    QStringList m_shortcuts;
};

} // namespace survey_console
