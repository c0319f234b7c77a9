#pragma once
#include "recording.h"

#include <QFrame>

namespace zorbin_qt_gui {
class indicator_t;
}

namespace survey_console {

/// Two lamps: whether there is a position, and whether data come in at all. Green while all is
/// well; blinking red else.
class statusLamps_t : public QFrame
{
    Q_OBJECT
public:
    static constexpr double MAX_SILENCE = 5.0; // s without any data

    /// \p recording must outlive the lamps.
    explicit statusLamps_t(const recording_t& recording, QWidget* parent = nullptr);

    bool hasFix() const { return m_hasFix; }
    bool hasData() const { return m_hasData; }

public Q_SLOTS:
    /// Shows the state at \p time_, in seconds.
    void showTime(double time_);

private:
    const recording_t& m_recording;
    const double m_maxFixAge; // s
    bool m_hasFix = false;
    bool m_hasData = false;
    zorbin_qt_gui::indicator_t* m_fixLamp;
    zorbin_qt_gui::indicator_t* m_dataLamp;
};

} // namespace survey_console
