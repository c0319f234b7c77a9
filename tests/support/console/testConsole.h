#pragma once
#include "mainWindow.h"
#include "testRecords.h"
#include "testWindow.h"

class QComboBox;
class QLabel;
class QToolButton;

namespace zorbin_qt_gui {
class colorPicker_t;
class stripChart_t;
} // namespace zorbin_qt_gui

namespace survey_console {
class chartPanel_t;
class paletteChooser_t;
class timeRuler_t;
class valueRuler_t;

/// The chart panels of the console, row by row.
enum chartIndex_t
{
    PANEL_DEPTH,
    PANEL_HEADING,
    PANEL_SPEED,
    PANEL_COURSE,
    PANEL_ATTITUDE,
    PANEL_HEAVE
};

/// The console over a line, its real time set by hand. It has the page of the charts alone.
struct console_t : testWindow_t
{
    explicit console_t(readResult_t line = testLine(),
                       const QString& lineName = QStringLiteral("test line"));

    double realTime = 0.0; // s
    mainWindow_t window;

    replayClock_t* clock() { return window.clock(); }
    /// Seconds into the line, if it is testLine().
    double elapsed() { return window.clock()->time() - lineStart; }
    void pass(double seconds);

    chartPanel_t* panel(chartIndex_t index) { return window.chartPanels().at(index); }
    zorbin_qt_gui::stripChart_t* chart(chartIndex_t index);
    /// The chart's drawing area.
    QWidget* area(chartIndex_t index);
    valueRuler_t* ruler(chartIndex_t index);
    /// The time ruler of a column.
    timeRuler_t* timeRuler(const char* axis);
    QToolButton* autoscaleButton(chartIndex_t index);
    QLabel* label(chartIndex_t index, const char* name);
    QString text(chartIndex_t index, const char* name);
    QColor textColor(chartIndex_t index, const char* name);
    zorbin_qt_gui::colorPicker_t* picker(chartIndex_t index, const char* name);

    paletteChooser_t* chooser();
    QComboBox* paletteBox();
    /// Chooses the row of the palette box as a user does.
    void choosePalette(int row);
};

/// The console with all its pages.
struct wholeConsole_t : console_t
{
    explicit wholeConsole_t(readResult_t line = testLine());
};
} // namespace survey_console
