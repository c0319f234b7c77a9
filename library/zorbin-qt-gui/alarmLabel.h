#pragma once
#include "zorbinQtGuiExport.h"

#include <QLabel>
#include <memory>

namespace zorbin_qt_gui {

/// A label whose colours flash during an alarm: every 500 ms it changes between its plain look and
/// a rounded box in the flash colours. All labels of the process change on the same ticks, of a
/// clock that is started on a whole second of the wall clock; one whose alarm begins while others
/// show the flash shows its own when they don't.
///
/// Making the first label of a process therefore blocks for up to a second; later ones don't. In a
/// later QApplication of the process the clock goes on, in step with the wall clock as before.
///
/// The flash uses the label's style sheet: do not set one of your own. GUI thread only.
/// \image html alarmLabel.png
class ZORBIN_QT_GUI_EXPORT alarmLabel_t : public QLabel
{
    Q_OBJECT

public:
    /// Makes a label without alarm and without text, indented by 2 pixels.
    explicit alarmLabel_t(QWidget* parent = nullptr);
    ~alarmLabel_t() override;

    /// Sets the text colour of the next flash; at first the application palette's
    /// QPalette::HighlightedText of the time when the label was made.
    void flashFgColor(const QColor& color);
    /// Sets the background colour of the next flash; at first the application palette's
    /// QPalette::Highlight of the time when the label was made.
    void flashBgColor(const QColor& color);

public Q_SLOTS:
    /// Starts flashing with the next tick, or stops it and restores the plain look.
    void alarm(bool enable_);
    /// Changes from the plain to the flash look or back; what a tick does during an alarm.
    void flash();
    /// Restores the plain look: empties the style sheet.
    void clearFlash();

private:
    struct alarmLabelData_t;
    const std::unique_ptr<alarmLabelData_t> m_d;
};
} // namespace zorbin_qt_gui
