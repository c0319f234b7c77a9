#pragma once
#include "recording.h"

#include <QFrame>

class QDoubleSpinBox;

namespace zorbin_qt_gui {
class alarmLabel_t;
class scalableTextWidget_t;
} // namespace zorbin_qt_gui

namespace survey_console {

/// The depth to be read from afar, and an alarm that flashes while it is less than a depth that the
/// user sets. A sounding that is older than its channel's are apart counts as none.
class depthPanel_t : public QFrame
{
    Q_OBJECT
public:
    static constexpr double DEFAULT_ALARM_DEPTH = 20.0; // m
    static constexpr double MAX_ALARM_DEPTH = 11000.0;  // m

    /// Copies the soundings from \p recording.
    explicit depthPanel_t(const recording_t& recording, QWidget* parent = nullptr);

    /// The depth at which the alarm begins, in m, from 0 to MAX_ALARM_DEPTH.
    double alarmDepth() const;
    void setAlarmDepth(double depth);

    /// Whether the alarm is on.
    bool isAlarmed() const { return m_isAlarmed; }
    /// What the read-out says.
    QString text() const { return m_text; }

public Q_SLOTS:
    /// Shows the depth at \p time_, in seconds.
    void showTime(double time_);

private:
    const std::vector<sample_t> m_depths; // m
    const double m_maxAge;                // s
    int m_width = 0;                      // characters of the longest depth
    double m_time = 0.0;                  // shown last
    bool m_isAlarmed = false;
    QString m_text;
    zorbin_qt_gui::scalableTextWidget_t* m_readOut;
    zorbin_qt_gui::alarmLabel_t* m_alarmLabel;
    QDoubleSpinBox* m_alarmBox;
};

} // namespace survey_console
