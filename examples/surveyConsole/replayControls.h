#pragma once
#include <QFrame>

class QComboBox;
class QLabel;
class QPushButton;
class QSlider;

namespace survey_console {
class replayClock_t;

/// The strip at the bottom: pause and resume, speed, seek slider, length of the time window.
class replayControls_t : public QFrame
{
    Q_OBJECT
public:
    /// Drives \p clock, which must outlive the controls, and follows it.
    explicit replayControls_t(replayClock_t* clock, QWidget* parent = nullptr);

    /// The length of the time window that is chosen, in seconds.
    double timeSpan() const;
    /// Chooses it; does nothing unless it is one of those to choose from.
    void setTimeSpan(double seconds);

    /// Lets the Tab key come here from \p last.
    void followInTabOrder(QWidget* last);
    /// Goes over to the speed so many steps further in the list, or to its last or first one.
    void changeSpeed(int steps);

Q_SIGNALS:
    void timeSpanChanged(double seconds_);

private:
    void showTime(double time);
    void showRunning();
    void showSpeed(double speed);

    replayClock_t* const m_clock;
    QPushButton* m_pauseButton;
    QComboBox* m_speedBox;
    QSlider* m_seekSlider;
    QLabel* m_elapsedLabel;
    QLabel* m_remainingLabel;
    QComboBox* m_spanBox;
};

} // namespace survey_console
