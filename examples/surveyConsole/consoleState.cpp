#include "consoleState.h"

#include <QSettings>

using zorbin_qt_gui::latLonEditor_t;

namespace survey_console {
namespace {

const int MAX_GEOMETRY = 1024; // bytes; that of a window has less than a hundred
const int MAX_CHOICE = 4096;   // characters, of a palette or the path of its file
const double MIN_SPAN = 1.0;   // s
const double MAX_SPAN = 86400.0;

const char GEOMETRY[] = "window/geometry";
const char PAGE[] = "window/page";
const char DEPTH_PALETTE[] = "charts/depthPalette";
const char TIME_SPAN[] = "charts/timeSpan";
const char SONAR_PALETTE[] = "sonar/palette";
const char ECHOGRAM_PALETTE[] = "echogram/palette";
const char ECHOGRAM_BEAM[] = "echogram/beam";
const char INSTRUMENT_DEPTH[] = "echogram/instrumentDepth";
const char COORD_FORMAT[] = "survey/notation";
const char ALARM_DEPTH[] = "depth/alarm";
const char PLANNED_SPEED[] = "speed/planned";
const char THEME[] = "window/theme";
const char SPEED[] = "replay/speed";

// In the order of latLonEditor_t::coordFormat_t.
QStringList formatNames()
{
    return {QStringLiteral("degrees"), QStringLiteral("minutes"), QStringLiteral("seconds")};
}

// In the order of false and true.
QStringList visibilityNames()
{
    return {QStringLiteral("hidden"), QStringLiteral("shown")};
}

// Each leaves the value as it is unless the settings hold a good one.
void readName(const QSettings& settings, const char* key, const QStringList& names, int* value)
{
    const auto index = names.indexOf(settings.value(QLatin1String(key)).toString());
    if (index >= 0)
        *value = static_cast<int>(index);
}

void readNumber(const QSettings& settings, const char* key, double min, double max, double* value)
{
    bool isNumber = false;
    const double number = settings.value(QLatin1String(key)).toDouble(&isNumber);
    if (isNumber && number >= min && number <= max) // NaN is in no range
        *value = number;
}

void readChoice(const QSettings& settings, const char* key, QString* value)
{
    const QString choice = settings.value(QLatin1String(key)).toString();
    if (!choice.isEmpty() && choice.size() <= MAX_CHOICE)
        *value = choice;
}

} // namespace

QStringList pageNames()
{
    return {QStringLiteral("charts"), QStringLiteral("sonar"), QStringLiteral("echogram"),
            QStringLiteral("survey")};
}

consoleState_t readState(const QSettings& settings)
{
    consoleState_t state;
    const QByteArray geometry = settings.value(QLatin1String(GEOMETRY)).toByteArray();
    if (geometry.size() <= MAX_GEOMETRY)
        state.geometry = geometry;
    int page = state.page;
    readName(settings, PAGE, pageNames(), &page);
    state.page = static_cast<page_t>(page);
    int format = state.coordFormat;
    readName(settings, COORD_FORMAT, formatNames(), &format);
    state.coordFormat = static_cast<latLonEditor_t::coordFormat_t>(format);
    int theme = state.theme;
    readName(settings, THEME, theme::names(), &theme);
    state.theme = static_cast<theme::name_t>(theme);
    readChoice(settings, DEPTH_PALETTE, &state.depthPalette);
    readChoice(settings, SONAR_PALETTE, &state.sonarPalette);
    readChoice(settings, ECHOGRAM_PALETTE, &state.echogramPalette);
    readChoice(settings, ECHOGRAM_BEAM, &state.echogramBeam);
    int visibility = state.showsInstrumentDepth ? 1 : 0;
    readName(settings, INSTRUMENT_DEPTH, visibilityNames(), &visibility);
    state.showsInstrumentDepth = visibility == 1;
    readNumber(settings, SPEED, replayClock_t::MIN_SPEED, replayClock_t::MAX_SPEED, &state.speed);
    readNumber(settings, ALARM_DEPTH, 0.0, depthPanel_t::MAX_ALARM_DEPTH, &state.alarmDepth);
    readNumber(settings, PLANNED_SPEED, 0.0, speedPanel_t::MAX_PLANNED_SPEED, &state.plannedSpeed);
    readNumber(settings, TIME_SPAN, MIN_SPAN, MAX_SPAN, &state.timeSpan);
    return state;
}

void writeState(const consoleState_t& state, QSettings* settings)
{
    settings->setValue(QLatin1String(GEOMETRY), state.geometry);
    settings->setValue(QLatin1String(PAGE), pageNames().at(state.page));
    settings->setValue(QLatin1String(COORD_FORMAT), formatNames().at(state.coordFormat));
    settings->setValue(QLatin1String(DEPTH_PALETTE), state.depthPalette);
    settings->setValue(QLatin1String(SONAR_PALETTE), state.sonarPalette);
    settings->setValue(QLatin1String(ECHOGRAM_PALETTE), state.echogramPalette);
    settings->setValue(QLatin1String(ECHOGRAM_BEAM), state.echogramBeam);
    settings->setValue(QLatin1String(INSTRUMENT_DEPTH),
                       visibilityNames().at(state.showsInstrumentDepth ? 1 : 0));
    settings->setValue(QLatin1String(ALARM_DEPTH), state.alarmDepth);
    settings->setValue(QLatin1String(PLANNED_SPEED), state.plannedSpeed);
    settings->setValue(QLatin1String(THEME), theme::names().at(state.theme));
    settings->setValue(QLatin1String(SPEED), state.speed);
    settings->setValue(QLatin1String(TIME_SPAN), state.timeSpan);
}

} // namespace survey_console
