#include "mainWindow.h"
#include "aboutBox.h"
#include "chartPanel.h"
#include "depthPanel.h"
#include "labels.h"
#include "navigationPanel.h"
#include "notices.h"
#include "notifierWidget.h"
#include "paletteChooser.h"
#include "positionPanel.h"
#include "recordingLoader.h"
#include "recordingsPanel.h"
#include "replayControls.h"
#include "sonarPanel.h"
#include "speedPanel.h"
#include "statusLamps.h"
#include "stripChart.h"
#include "texts.h"
#include "theme.h"
#include "timeAxis.h"
#include "timeRuler.h"
#include "trackPanel.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace survey_console {
namespace {

const QSize USUAL_SIZE(1280, 800);
const int FRAME_INTERVAL = 33; // ms
const int COLUMNS = 2;
const int SPACING = 6;            // px between panels
const int INSTRUMENT_WIDTH = 160; // px
const int SURVEY_WIDTH = 360;     // px, at least, of what stands beside the track

std::vector<chartPanelSetup_t> panelSetups()
{
    const QColor first = theme::firstCurve();
    const QColor second = theme::secondCurve();
    const QString degrees = QStringLiteral("\u00b0");
    std::vector<chartPanelSetup_t> setups(6);
    setups[0].title = mainWindow_t::tr("Depth");
    setups[0].unit = QStringLiteral("m");
    setups[0].minRange = 5.0;
    setups[0].isDepth = true;
    setups[0].hasPalette = true;
    setups[0].curves = {{CHANNEL_DEPTH, QString(), first}};

    setups[1].title = mainWindow_t::tr("Heading");
    setups[1].unit = degrees;
    setups[1].minRange = 5.0;
    setups[1].isAngle = true;
    setups[1].curves = {{CHANNEL_GYRO_HEADING, mainWindow_t::tr("gyro"), first},
                        {CHANNEL_HEADING, mainWindow_t::tr("INS"), second}};

    setups[2].title = mainWindow_t::tr("Speed");
    setups[2].unit = QStringLiteral("kn");
    setups[2].curves = {{CHANNEL_SPEED, mainWindow_t::tr("over ground"), first},
                        {CHANNEL_SPEED_MADE_GOOD, mainWindow_t::tr("made good, 10 s"), second}};

    setups[3].title = mainWindow_t::tr("Course");
    setups[3].unit = degrees;
    setups[3].minRange = 5.0;
    setups[3].isAngle = true;
    setups[3].curves = {{CHANNEL_COURSE, mainWindow_t::tr("over ground"), first},
                        {CHANNEL_COURSE_MADE_GOOD, mainWindow_t::tr("made good, 10 s"), second}};

    setups[4].title = mainWindow_t::tr("Roll and pitch");
    setups[4].unit = degrees;
    setups[4].decimals = 2;
    setups[4].hasZeroLine = true;
    setups[4].curves = {{CHANNEL_ROLL, mainWindow_t::tr("roll"), first},
                        {CHANNEL_PITCH, mainWindow_t::tr("pitch"), second}};

    setups[5].title = mainWindow_t::tr("Heave");
    setups[5].unit = QStringLiteral("m");
    setups[5].decimals = 2;
    setups[5].minRange = 1.0;
    setups[5].hasZeroLine = true;
    setups[5].curves = {{CHANNEL_HEAVE, QString(), first}};
    return setups;
}

} // namespace

mainWindow_t::mainWindow_t(const QString& lineName, readResult_t line,
                           std::function<double()> realTime, QWidget* parent)
    : QWidget(parent), m_recording(std::move(line.recording)), m_counts(line.counts),
      m_clock(realTime),
      m_navigationPanel(new navigationPanel_t(lineName, line.counts, m_recording)),
      m_controls(new replayControls_t(&m_clock)), m_lineName(lineName),
      m_notifier(new zorbin_qt_gui::notifierWidget_t),
      m_notices(
          new notices_t(eventsOf(lineName, m_recording), std::move(realTime), m_notifier, this)),
      m_pages(new QStackedWidget)
{
    setWindowTitle(tr("Survey console - %1").arg(lineName));
    makeMenu();
    addPage(PAGE_CHARTS, makeChartPage(), tr("Charts"));
    showPage(PAGE_CHARTS);
    m_notifier->setMainWidget(m_pages);
    m_notifier->setAnimated(true);
    theme::setUpNotifier(m_notifier);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(SPACING);
    layout->addWidget(m_navigationPanel);
    layout->addWidget(m_notifier, 1);
    layout->addWidget(m_controls);

    connect(m_navigationPanel, &navigationPanel_t::pageChosen, this,
            [this](int page) { showPage(static_cast<page_t>(page)); });
    connect(&m_clock, &replayClock_t::timeAdvanced, m_navigationPanel,
            &navigationPanel_t::showTime);
    connect(&m_clock, &replayClock_t::timeJumped, m_navigationPanel, &navigationPanel_t::showTime);
    connect(&m_clock, &replayClock_t::timeAdvanced, m_notices, &notices_t::showTime);
    connect(&m_clock, &replayClock_t::timeJumped, m_notices, &notices_t::jumpTo);
    connect(&m_clock, &replayClock_t::timeJumped, this, &mainWindow_t::showReplay);
    connect(&m_clock, &replayClock_t::speedChanged, this, &mainWindow_t::showReplay);
    connect(&m_clock, &replayClock_t::runningChanged, this, &mainWindow_t::showReplay);

    m_frameTimer.setTimerType(Qt::PreciseTimer);
    m_frameTimer.setInterval(FRAME_INTERVAL);
    connect(&m_frameTimer, &QTimer::timeout, &m_clock, &replayClock_t::advance);
    connect(&m_clock, &replayClock_t::runningChanged, &m_frameTimer, [this](bool running) {
        if (running)
            m_frameTimer.start();
        else
            m_frameTimer.stop();
    });

    orderTabs();
    addShortcuts();
    QCoreApplication::instance()->installEventFilter(this); // for keys, wherever the focus is
    m_clock.setSpan(m_recording.startTime(), m_recording.endTime());
}

mainWindow_t::~mainWindow_t() = default;

QWidget* mainWindow_t::makeChartPage()
{
    auto* charts = new QGridLayout;
    charts->setSpacing(SPACING);
    for (const chartPanelSetup_t& setup : panelSetups()) {
        auto* panel = new chartPanel_t(setup, m_recording);
        const int index = static_cast<int>(m_chartPanels.size());
        charts->addWidget(panel, index / COLUMNS, index % COLUMNS);
        charts->setRowStretch(index / COLUMNS, 1);
        charts->setColumnStretch(index % COLUMNS, 1);
        m_chartPanels.push_back(panel);
        connect(&m_clock, &replayClock_t::timeAdvanced, panel, &chartPanel_t::showTime);
        connect(&m_clock, &replayClock_t::timeJumped, panel, &chartPanel_t::jumpTo);
        connect(m_controls, &replayControls_t::timeSpanChanged, panel, &chartPanel_t::timeSpan);
    }
    addTimeAxes(charts);

    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACING);
    layout->addLayout(charts, 1);
    layout->addWidget(makeInstruments());
    return page;
}

// Shows the clock's time, running or jumping, in a panel that makes no difference of it.
template <typename panel_t>
void mainWindow_t::letFollow(panel_t* panel)
{
    connect(&m_clock, &replayClock_t::timeAdvanced, panel, &panel_t::showTime);
    connect(&m_clock, &replayClock_t::timeJumped, panel, &panel_t::showTime);
}

// What is read at a glance, beside the charts.
QWidget* mainWindow_t::makeInstruments()
{
    auto* instruments = new QWidget;
    instruments->setFixedWidth(INSTRUMENT_WIDTH);
    auto* layout = new QVBoxLayout(instruments);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACING);
    const auto add = [this, layout](auto* panel, int stretch) {
        layout->addWidget(panel, stretch);
        letFollow(panel);
    };
    m_depthPanel = new depthPanel_t(m_recording);
    m_speedPanel = new speedPanel_t(m_recording);
    add(m_depthPanel, 0);
    add(new statusLamps_t(m_recording), 0);
    add(new trackPanel_t(m_recording), 0);
    add(m_speedPanel, 1);
    return instruments;
}

void mainWindow_t::makeMenu()
{
    auto* menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    addAction(menu, tr("Open recording\u2026"), QKeySequence::Open, &mainWindow_t::openFileDialog);
    menu->addSeparator();
    addAction(menu,
              theme::chosen() == theme::THEME_LIGHT ? tr("Dark colours") : tr("Light colours"),
              QKeySequence(Qt::CTRL | Qt::Key_L), &mainWindow_t::toggleTheme);
    addAction(menu, tr("Full screen"), Qt::Key_F11, &mainWindow_t::toggleFullScreen);
    menu->addSeparator();
    addAction(menu, tr("Keyboard\u2026"), QKeySequence(Qt::CTRL | Qt::Key_H),
              &mainWindow_t::showShortcuts);
    menu->addAction(tr("About"), this, &mainWindow_t::showAbout)
        ->setObjectName(QStringLiteral("aboutAction"));
    menu->addSeparator();
    addAction(menu, tr("Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q), &mainWindow_t::quit);
    m_navigationPanel->setMenu(menu, QKeySequence(Qt::Key_F10));
    listShortcut(Qt::Key_F10, tr("Menu"));
}

void mainWindow_t::addAction(QMenu* menu, const QString& text, const QKeySequence& key,
                             void (mainWindow_t::*slot)())
{
    menu->addAction(text, this, slot)->setShortcut(key);
    listShortcut(key, QString(text).remove(u'\u2026'));
}

void mainWindow_t::quit()
{
    QApplication::quit();
}

void mainWindow_t::toggleTheme()
{
    Q_EMIT themeChosen(theme::chosen() == theme::THEME_LIGHT ? theme::THEME_DARK
                                                             : theme::THEME_LIGHT);
}

void mainWindow_t::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

// The replay goes on behind it.
void mainWindow_t::openFileDialog()
{
    auto* dialog = new QFileDialog(this, tr("Recording"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(
        {tr("NMEA 0183 logs (%1)").arg(recordingNameFilters().join(u' ')), tr("All files (*)")});
    connect(dialog, &QFileDialog::fileSelected, this, &mainWindow_t::openRecording);
    dialog->open();
}

void mainWindow_t::openRecording(const QString& path)
{
    closePrompt(); // the user has thought better of it
    m_loader = new recordingLoader_t(path, this);
    connect(m_loader, &recordingLoader_t::finished, this,
            [this, path](const std::shared_ptr<readResult_t>& line) {
                closePrompt();
                if (line->error.isEmpty())
                    askToReplay(path, line);
                else
                    m_notices->show(line->error);
            });
    m_loader->start();
    if (m_loader) // it hasn't finished at once
        showLoading(path);
}

// Ends what it was about, too.
void mainWindow_t::closePrompt()
{
    if (m_loader) {
        m_loader->disconnect(this);
        m_loader->deleteLater();
        m_loader = nullptr;
    }
    if (m_prompt) {
        m_notifier->dismissPrompt(m_prompt);
        m_prompt->deleteLater();
        m_prompt = nullptr;
    }
}

void mainWindow_t::showLoading(const QString& path)
{
    m_prompt = makePrompt("loadingPrompt");
    auto* name = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    name->setTextFormat(Qt::PlainText);
    name->setText(tr("Reading %1").arg(QFileInfo(path).fileName()));
    auto* bar = new QProgressBar;
    bar->setObjectName(QStringLiteral("loadingBar"));
    bar->setRange(0, 100); // per cent
    bar->setToolTip(tr("How much of the recording is read"));
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("cancelButton"));
    cancel->setToolTip(tr("Don't read it (Esc)"));
    m_prompt->layout()->addWidget(name);
    m_prompt->layout()->addWidget(bar);
    m_prompt->layout()->addWidget(cancel);
    connect(m_loader, &recordingLoader_t::progressed, bar,
            [bar](double share) { bar->setValue(static_cast<int>(share * 100.0)); });
    connect(cancel, &QPushButton::clicked, this, &mainWindow_t::closePrompt);
    m_notifier->showPrompt(m_prompt);
    cancel->setFocus();
}

QWidget* mainWindow_t::makePrompt(const char* objectName)
{
    auto* prompt = new QWidget;
    prompt->setObjectName(QString::fromLatin1(objectName));
    setBackground(prompt, theme::frame());
    auto* layout = new QHBoxLayout(prompt);
    layout->setContentsMargins(12, 6, 8, 6);
    return prompt;
}

void mainWindow_t::askToReplay(const QString& path, std::shared_ptr<readResult_t> line)
{
    m_prompt = makePrompt("openPrompt");
    auto* question = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    question->setTextFormat(Qt::PlainText);
    const recording_t& recording = line->recording;
    question->setText(tr("Replay %1 (%2) in place of %3?")
                          .arg(QFileInfo(path).fileName(),
                               durationText(recording.endTime() - recording.startTime()),
                               m_lineName));
    auto* replay = new QPushButton(tr("Replay"));
    replay->setObjectName(QStringLiteral("replayButton"));
    replay->setToolTip(tr("Replay it, from its start (Enter)"));
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setToolTip(tr("Go on with this one (Esc)"));
    cancel->setObjectName(QStringLiteral("cancelButton"));
    auto* layout = static_cast<QHBoxLayout*>(m_prompt->layout());
    layout->addWidget(question, 1);
    layout->addWidget(replay);
    layout->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, this, &mainWindow_t::closePrompt);
    connect(replay, &QPushButton::clicked, this, [this, path, line] {
        closePrompt();
        Q_EMIT recordingChosen(path, line);
    });
    m_notifier->showPrompt(m_prompt);
    cancel->setFocus();
}

void mainWindow_t::showAbout()
{
    zorbin_qt_gui::aboutBox_t box(this);
    box.copyrightYears(QStringLiteral("2026"));
    box.addText(tr("<p>Replays recorded survey lines. The recordings that come with it are real; "
                   "the sounder is simulated.</p>"));
    box.showAboutBox();
}

void mainWindow_t::addSonar(const QString& name, sonarRecord_t record)
{
    m_sonarRecord = std::move(record);
    m_sonarPanel = new sonarPanel_t(name, m_sonarRecord);
    addPage(PAGE_SONAR, m_sonarPanel, tr("Sonar"));
    letReplay(m_sonarPanel);
}

void mainWindow_t::addEchograms(std::vector<echogram_t> echograms)
{
    m_echograms = std::move(echograms);
    m_echogramPanel = new echogramPanel_t(m_echograms);
    addPage(PAGE_ECHOGRAM, m_echogramPanel, tr("Echogram"));
    letReplay(m_echogramPanel);
}

// Its record starts with the line.
void mainWindow_t::letReplay(pingPanel_t* panel)
{
    const auto follow = [this, panel](double time) { panel->showTime(time - m_clock.start()); };
    connect(&m_clock, &replayClock_t::timeAdvanced, panel, follow);
    connect(&m_clock, &replayClock_t::timeJumped, panel, follow);
    follow(m_clock.time());
}

void mainWindow_t::addSurvey()
{
    m_positionPanel = new positionPanel_t(m_recording);
    letFollow(m_positionPanel);
    m_positionPanel->showTime(m_clock.time());
    connect(m_positionPanel, &positionPanel_t::timeChosen, &m_clock, &replayClock_t::seek);
    m_recordings = new recordingsPanel_t;
    connect(m_recordings, &recordingsPanel_t::recordingChosen, this, &mainWindow_t::openRecording);
    auto* trackPanel = new trackPanel_t(m_recording);
    letFollow(trackPanel);
    trackPanel->showTime(m_clock.time());

    auto* page = new QWidget;
    auto* layout = new QGridLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACING);
    layout->setRowStretch(1, 1);
    layout->setColumnStretch(1, 1);
    layout->setColumnMinimumWidth(0, SURVEY_WIDTH);
    layout->addWidget(m_positionPanel, 0, 0);
    layout->addWidget(m_recordings, 1, 0);
    layout->addWidget(trackPanel, 0, 1, 2, 1);
    addPage(PAGE_SURVEY, page, tr("Survey"));
}

void mainWindow_t::addPage(page_t page, QWidget* widget, const QString& name)
{
    m_pages->addWidget(widget);
    m_pageWidgets[page] = widget;
    const QKeySequence key(Qt::Key_F1 + page);
    m_navigationPanel->addPage(page, name, key.toString(QKeySequence::NativeText));
    addShortcut(key, tr("Page \u201c%1\u201d").arg(name), [this, page] { showPage(page); });
    orderTabs();
}

// What was added last is the last that the Tab key goes to; the controls below the pages stay last.
void mainWindow_t::orderTabs()
{
    QWidget* last = previousInFocusChain();
    while (last != this && (last->focusPolicy() == Qt::NoFocus || m_controls->isAncestorOf(last)))
        last = last->previousInFocusChain();
    m_controls->followInTabOrder(last);
}

void mainWindow_t::showPage(page_t page)
{
    m_pages->setCurrentWidget(m_pageWidgets.at(page));
    m_navigationPanel->showPage(page);
}

page_t mainWindow_t::page() const
{
    for (const auto& [page, widget] : m_pageWidgets) {
        if (widget == m_pages->currentWidget())
            return page;
    }
    return PAGE_CHARTS;
}

consoleState_t mainWindow_t::state() const
{
    consoleState_t state = m_kept;
    state.geometry = saveGeometry();
    state.page = page();
    if (const paletteChooser_t* chooser = m_chartPanels.front()->paletteChooser())
        state.depthPalette = chooser->choice();
    if (m_sonarPanel && !m_sonarPanel->paletteChoice().isEmpty())
        state.sonarPalette = m_sonarPanel->paletteChoice();
    if (m_echogramPanel) {
        if (!m_echogramPanel->paletteChoice().isEmpty())
            state.echogramPalette = m_echogramPanel->paletteChoice();
        state.echogramBeam = m_echogramPanel->beamChoice();
        state.showsInstrumentDepth = m_echogramPanel->showsDepth();
    }
    if (m_positionPanel)
        state.coordFormat = m_positionPanel->format();
    state.alarmDepth = m_depthPanel->alarmDepth();
    state.plannedSpeed = m_speedPanel->plannedSpeed();
    state.theme = theme::chosen();
    state.speed = m_clock.speed();
    state.timeSpan = m_controls->timeSpan();
    return state;
}

// One that has been tampered with may lie beyond all screens or reach over them.
void mainWindow_t::restorePlace(const QByteArray& geometry)
{
    if (!restoreGeometry(geometry))
        resize(USUAL_SIZE);
    const QRect screens = QGuiApplication::primaryScreen()->availableVirtualGeometry();
    if (!screens.intersects(this->geometry()) || width() > screens.width() ||
        height() > screens.height())
        setGeometry(QRect(screens.topLeft(), USUAL_SIZE));
}

void mainWindow_t::restore(const consoleState_t& state)
{
    m_kept = state;
    restorePlace(state.geometry);
    if (m_pageWidgets.count(state.page) > 0)
        showPage(state.page);
    if (paletteChooser_t* chooser = m_chartPanels.front()->paletteChooser())
        chooser->chooseAgain(state.depthPalette);
    if (m_sonarPanel)
        m_sonarPanel->choosePaletteAgain(state.sonarPalette);
    if (m_echogramPanel) {
        m_echogramPanel->choosePaletteAgain(state.echogramPalette);
        m_echogramPanel->chooseBeamAgain(state.echogramBeam);
        m_echogramPanel->showDepth(state.showsInstrumentDepth);
    }
    if (m_positionPanel)
        m_positionPanel->chooseFormat(state.coordFormat);
    m_depthPanel->setAlarmDepth(state.alarmDepth);
    m_speedPanel->setPlannedSpeed(state.plannedSpeed);
    m_clock.setSpeed(state.speed);
    m_controls->setTimeSpan(state.timeSpan);
}

// One below each column, that all its charts point at.
void mainWindow_t::addTimeAxes(QGridLayout* charts)
{
    const int count = static_cast<int>(m_chartPanels.size());
    for (int column = 0; column < COLUMNS; ++column) {
        auto* axis = new timeAxis_t(m_chartPanels[column]->chart());
        axis->setObjectName(QStringLiteral("timeAxis%1").arg(column));
        charts->addWidget(axis, count / COLUMNS, column);
        for (int index = column; index < count; index += COLUMNS)
            connect(m_chartPanels[index], &chartPanel_t::pointed, axis->ruler(),
                    &timeRuler_t::point);
    }
}

void mainWindow_t::addShortcuts()
{
    const auto seekBy = [this](double seconds) {
        return [this, seconds] { m_clock.seek(m_clock.time() + seconds); };
    };
    addShortcut(Qt::Key_Space, tr("Pause or resume"),
                [this] { m_clock.setRunning(!m_clock.isRunning()); });
    addShortcut(Qt::Key_Left, tr("Back by 10 s"), seekBy(-10.0));
    addShortcut(Qt::Key_Right, tr("Forward by 10 s"), seekBy(10.0));
    addShortcut(Qt::Key_PageUp, tr("Back by 1 min"), seekBy(-60.0));
    addShortcut(Qt::Key_PageDown, tr("Forward by 1 min"), seekBy(60.0));
    addShortcut(Qt::Key_Home, tr("To the start"), [this] { m_clock.seek(m_clock.start()); });
    addShortcut(Qt::Key_End, tr("To the end"), [this] { m_clock.seek(m_clock.end()); });
    addShortcut(Qt::Key_Plus, tr("Faster"), [this] { m_controls->changeSpeed(1); });
    addShortcut(Qt::Key_Minus, tr("Slower"), [this] { m_controls->changeSpeed(-1); });
    addShortcut(Qt::Key_A,
                tr("Charts: scales follow the data; sonar and echogram: the whole range"),
                [this] { followData(); });
    addShortcut(Qt::Key_Escape, tr("Answer a question by Cancel, or dismiss the newest notice"),
                [this] { dismissNewest(); });
    listShortcut(Qt::Key_Tab, tr("To the next control"));
    listShortcut(Qt::Key_Return, tr("Press the button, or open the list, that has the focus"));
}

void mainWindow_t::addShortcut(const QKeySequence& key, const QString& text,
                               std::function<void()> action)
{
    connect(new QShortcut(key, this), &QShortcut::activated, this, std::move(action));
    listShortcut(key, text);
}

void mainWindow_t::listShortcut(const QKeySequence& key, const QString& text)
{
    m_shortcuts += key.toString(QKeySequence::NativeText) + u'\t' + text;
}

// The replay goes on behind it.
void mainWindow_t::showShortcuts()
{
    QString rows;
    for (const QString& shortcut : m_shortcuts) {
        const QString text = shortcut.toHtmlEscaped();
        rows += QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(text.section(u'\t', 0, 0), text.section(u'\t', 1));
    }
    auto* box = new QMessageBox(this);
    box->setObjectName(QStringLiteral("shortcutsBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(tr("Keyboard"));
    box->setText(QStringLiteral("<table>%1</table>").arg(rows));
    box->open();
}

// Space pauses wherever the focus is, so that Enter takes its place.
bool mainWindow_t::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != this || (key != Qt::Key_Return && key != Qt::Key_Enter))
        return QWidget::eventFilter(watched, event);
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->click();
        return true;
    }
    if (auto* box = qobject_cast<QComboBox*>(widget)) {
        box->showPopup();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

// Of the page that shows.
void mainWindow_t::followData()
{
    if (page() == PAGE_CHARTS) {
        for (const chartPanel_t* panel : m_chartPanels)
            panel->chart()->autoscaleValue(true);
    } else if (page() == PAGE_SONAR) {
        m_sonarPanel->showWholeRange();
    } else if (page() == PAGE_ECHOGRAM) {
        m_echogramPanel->showWholeRange();
    }
}

void mainWindow_t::dismissNewest()
{
    if (m_prompt)
        m_prompt->findChild<QPushButton*>(QStringLiteral("cancelButton"))->click();
    else
        m_notices->dismissNewest();
}

void mainWindow_t::showReplay()
{
    m_navigationPanel->showReplay(m_clock.isRunning(), m_clock.isAtEnd(), m_clock.speed());
}

} // namespace survey_console
