#pragma once

class QWidget;

namespace survey_console {

/// Lets the wheel turn \p widget only while the user is at it: one that passes over, on the way to
/// something else, changes nothing. Clicks and the Tab key give it the focus.
void letWheelPass(QWidget* widget);

} // namespace survey_console
