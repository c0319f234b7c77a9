#pragma once
#include "recording.h"

#include <QFrame>

class QDoubleSpinBox;
class QLabel;

namespace zorbin_qt_gui {
class slidingGauge_t;
}

namespace survey_console {

/// The vessel's speed against the planned one: a gauge beside a ruler, its bar up to the measured
/// speed and a line across it at the planned one, which the user sets below.
///
/// Shows the speed over ground as received, or that made good where none is. A speed that is older
/// than its channel's samples are apart leaves the gauge empty.
class speedPanel_t : public QFrame
{
    Q_OBJECT
public:
    static constexpr double DEFAULT_PLANNED_SPEED = 9.0; // kn
    static constexpr double MAX_PLANNED_SPEED = 60.0;    // kn, of the longest scale

    /// Copies the speeds from \p recording.
    explicit speedPanel_t(const recording_t& recording, QWidget* parent = nullptr);

    /// The planned speed in kn, limited to the gauge's scale.
    double plannedSpeed() const;
    void setPlannedSpeed(double speed);

public Q_SLOTS:
    /// Shows the speed at \p time_, in seconds.
    void showTime(double time_);

private:
    const std::vector<sample_t> m_speeds; // kn
    const double m_maxAge;                // s
    zorbin_qt_gui::slidingGauge_t* m_gauge;
    QLabel* m_speedLabel;
    QDoubleSpinBox* m_plannedBox;
};

} // namespace survey_console
