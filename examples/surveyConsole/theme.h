#pragma once
#include <QColor>
#include <QStringList>

class QApplication;
class QWidget;

/// Colours of the console, told apart by the colour-blind, too: quiet on dark for a dim bridge, at
/// first, or dark on light for daylight. Widgets take them when they are made.
namespace survey_console::theme {

enum name_t
{
    THEME_DARK,
    THEME_LIGHT
};

/// The themes' names in settings and on the command line, in their order.
QStringList names();

/// Takes the colours of a theme from now on.
void choose(name_t name);
name_t chosen();

struct colors_t
{
    QColor window;
    QColor panel;
    QColor chart;
    QColor frame;
    QColor text;
    QColor quietText;
    QColor accent;
    QColor firstCurve;
    QColor secondCurve;
    QColor zeroLine; ///< lets a curve below it show
    QColor running;
    QColor paused;
    QColor alarm;
};

/// Those of the chosen theme.
const colors_t& colors();

inline QColor window()
{
    return colors().window;
}
inline QColor panel()
{
    return colors().panel;
}
inline QColor chart()
{
    return colors().chart;
}
inline QColor frame()
{
    return colors().frame;
}
inline QColor text()
{
    return colors().text;
}
inline QColor quietText()
{
    return colors().quietText;
}
inline QColor accent()
{
    return colors().accent;
}
inline QColor firstCurve()
{
    return colors().firstCurve;
}
inline QColor secondCurve()
{
    return colors().secondCurve;
}
inline QColor zeroLine()
{
    return colors().zeroLine;
}
inline QColor running()
{
    return colors().running;
}
inline QColor paused()
{
    return colors().paused;
}
inline QColor alarm()
{
    return colors().alarm;
}

/// Makes \p application look so.
void apply(QApplication* application);

/// Draws the axis, ticks and labels of a ruler in quietText().
void setUpRuler(QWidget* ruler);

/// Draws the frames around notices and prompts without glaring edges.
void setUpNotifier(QWidget* notifier);

} // namespace survey_console::theme
