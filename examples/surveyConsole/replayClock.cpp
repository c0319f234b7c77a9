#include "replayClock.h"

#include <algorithm>
#include <cmath>

namespace survey_console {

replayClock_t::replayClock_t(std::function<double()> realTime, QObject* parent)
    : QObject(parent), m_realTime(std::move(realTime))
{
}

void replayClock_t::setSpan(double start, double end)
{
    m_start = start;
    m_end = end;
    m_time = start;
    m_lastReal = m_realTime();
    Q_EMIT timeJumped(m_time);
}

void replayClock_t::setRunning(bool running_)
{
    if (m_running == running_)
        return;
    if (running_) {
        if (isAtEnd())
            seek(m_start);
        m_lastReal = m_realTime();
    } else {
        advance(); // up to the moment of the pause
        if (!m_running)
            return; // that reached the end, which has stopped it
    }
    m_running = running_;
    Q_EMIT runningChanged(running_);
}

void replayClock_t::setSpeed(double speed_)
{
    if (std::isnan(speed_))
        return;
    speed_ = std::clamp(speed_, MIN_SPEED, MAX_SPEED);
    if (m_speed == speed_)
        return;
    advance(); // what has passed until now, at the old speed
    m_speed = speed_;
    Q_EMIT speedChanged(speed_);
}

void replayClock_t::seek(double time_)
{
    if (std::isnan(time_))
        return;
    m_lastReal = m_realTime();
    time_ = std::clamp(time_, m_start, m_end);
    if (m_time == time_)
        return;
    m_time = time_;
    Q_EMIT timeJumped(time_);
}

void replayClock_t::advance()
{
    if (!m_running)
        return;
    const double now = m_realTime();
    const double time = std::min(m_time + (now - m_lastReal) * m_speed, m_end);
    m_lastReal = now;
    if (m_time != time) {
        m_time = time;
        Q_EMIT timeAdvanced(time);
    }
    if (isAtEnd() && m_running) { // a slot may have paused it already
        m_running = false;
        Q_EMIT runningChanged(false);
    }
}

} // namespace survey_console
