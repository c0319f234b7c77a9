#pragma once
#include "chartPanel.h"
#include "depthPanel.h"
#include "latLonEditor.h"
#include "replayClock.h"
#include "speedPanel.h"
#include "theme.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QSettings;

namespace survey_console {

enum page_t
{
    PAGE_CHARTS,
    PAGE_SONAR,
    PAGE_ECHOGRAM,
    PAGE_SURVEY
};

/// The pages' names in settings and on the command line, in their order.
QStringList pageNames();

/// What the console keeps from one run to the next; at first as in the very first run.
struct consoleState_t
{
    QByteArray geometry; ///< by QWidget::saveGeometry(); empty: the usual size
    page_t page = PAGE_CHARTS;
    QString depthPalette = QStringLiteral("bathy");    ///< as paletteChooser_t::choice() says it
    QString sonarPalette = QStringLiteral("sidescan"); ///< as pingPanel_t::paletteChoice() does
    QString echogramPalette = QStringLiteral("watercolumn"); ///< likewise
    QString echogramBeam; ///< as echogramPanel_t::beamChoice() says it; empty: the first one
    bool showsInstrumentDepth = true; ///< over the echogram
    zorbin_qt_gui::latLonEditor_t::coordFormat_t coordFormat = zorbin_qt_gui::latLonEditor_t::CF_DM;
    double speed = replayClock_t::MIN_SPEED;                   ///< of the replay, times real time
    double alarmDepth = depthPanel_t::DEFAULT_ALARM_DEPTH;     ///< m
    double plannedSpeed = speedPanel_t::DEFAULT_PLANNED_SPEED; ///< kn
    theme::name_t theme = theme::THEME_DARK;
    double timeSpan = chartPanel_t::DEFAULT_SPAN; ///< s, of the charts
};

/// Reads what \p settings keep. Whatever is missing or can't have been written by writeState() is
/// as in the very first run.
consoleState_t readState(const QSettings& settings);
/// Writes all of \p state.
void writeState(const consoleState_t& state, QSettings* settings);

} // namespace survey_console
