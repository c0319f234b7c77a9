#pragma once
#include <QObject>
#include <functional>

namespace survey_console {

/// The time of a replay: runs through a span of recorded time at a multiple of real time.
///
/// It reads real time from a function given to it and moves only when advance() is called, usually
/// once a frame by a timer; a test gives it a function of its own and calls advance() by hand.
/// Stands at the start of an empty span at first, paused, at speed 1.
class replayClock_t : public QObject
{
    Q_OBJECT
public:
    static constexpr double MIN_SPEED = 1.0;
    static constexpr double MAX_SPEED = 100.0;

    /// \p realTime gives seconds since any fixed moment and never goes back.
    explicit replayClock_t(std::function<double()> realTime, QObject* parent = nullptr);

    /// Sets the span to replay, in seconds, and goes to its start. \p end must not be before
    /// \p start.
    void setSpan(double start, double end);

    double start() const { return m_start; }
    double end() const { return m_end; }
    double time() const { return m_time; }
    double speed() const { return m_speed; }
    bool isRunning() const { return m_running; }
    bool isAtEnd() const { return m_time >= m_end; }

public Q_SLOTS:
    /// Starts or stops the time. Started at the end, it replays from the start.
    void setRunning(bool running_);
    /// Sets the multiple of real time, limited to 1 to 100; NaN is ignored.
    void setSpeed(double speed_);
    /// Goes to \p time_, limited to the span; NaN is ignored. Running or paused stays as it is.
    void seek(double time_);
    /// Moves the time by the real time since the last call, times the speed. At the end of the span
    /// it stops.
    void advance();

Q_SIGNALS:
    /// The time moved forward by running.
    void timeAdvanced(double time_);
    /// The time was set by setSpan(), seek() or a new start, to before or after what it was.
    void timeJumped(double time_);
    void runningChanged(bool running_);
    void speedChanged(double speed_);

private:
    const std::function<double()> m_realTime;
    double m_start = 0.0;
    double m_end = 0.0;
    double m_time = 0.0;
    double m_speed = 1.0;
    bool m_running = false;
    double m_lastReal = 0.0; // when m_time was right; of use while running
};

} // namespace survey_console
