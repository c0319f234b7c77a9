#pragma once
#include <QColor>

class QApplication;
class QWidget;

/// Colours of the console: quiet on dark for a dim bridge, told apart by the colour-blind, too.
namespace survey_console::theme {

inline QColor window()
{
    return {0x15, 0x1d, 0x25};
}
inline QColor panel()
{
    return {0x1d, 0x28, 0x32};
}
inline QColor chart()
{
    return {0x0c, 0x13, 0x19};
}
inline QColor frame()
{
    return {0x33, 0x43, 0x51};
}
inline QColor text()
{
    return {0xdd, 0xe6, 0xec};
}
inline QColor quietText()
{
    return {0x8f, 0xa3, 0xb2};
}
inline QColor accent()
{
    return {0x2f, 0x7f, 0xa8};
}
inline QColor firstCurve()
{
    return {0x62, 0xc6, 0xe6};
}
inline QColor secondCurve()
{
    return {0xf0, 0xb0, 0x52};
}
inline QColor zeroLine()
{
    return {0x8f, 0xa3, 0xb2, 0x60};
} // lets a curve below it show
inline QColor running()
{
    return {0x7c, 0xcf, 0x9a};
}
inline QColor paused()
{
    return {0xf0, 0xb0, 0x52};
}
inline QColor alarm()
{
    return {0xf2, 0x6b, 0x5e};
}

/// Makes \p application look so.
void apply(QApplication* application);

/// Draws the axis, ticks and labels of a ruler in quietText().
void setUpRuler(QWidget* ruler);

/// Draws the frames around notices and prompts without glaring edges.
void setUpNotifier(QWidget* notifier);

} // namespace survey_console::theme
