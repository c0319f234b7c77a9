#include "recording.h"

#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const double RATE_BASE = 10.0;       // s of track behind a rate
const double MIN_RATE_BASE = 5.0;    // s
const double MIN_WAY = 1.0;          // m; the bearing of less is noise
const double KNOT = 1852.0 / 3600.0; // m/s
const double TURN = 360.0;           // deg

// The newest element at or before the time in a list of increasing times, or null.
template <typename timed_t>
const timed_t* newest(const std::vector<timed_t>& list, double time)
{
    const auto later =
        std::upper_bound(list.begin(), list.end(), time,
                         [](double wanted, const timed_t& timed) { return wanted < timed.time; });
    return later == list.begin() ? nullptr : &*std::prev(later);
}

template <typename timed_t>
bool append(std::vector<timed_t>* list, QString* listSource, const QString& source,
            const timed_t& timed)
{
    if (list->empty())
        *listSource = source;
    else if (*listSource != source || !(timed.time > list->back().time))
        return false;
    list->push_back(timed);
    return true;
}

} // namespace

bool recording_t::add(channelId_t id, const QString& source, const sample_t& sample)
{
    channel_t& channel = m_channels[id];
    return append(&channel.samples, &channel.source, source, sample);
}

bool recording_t::addFix(const QString& source, const fix_t& fix)
{
    return append(&m_fixes, &m_fixSource, source, fix);
}

void recording_t::shift(double seconds)
{
    for (channel_t& channel : m_channels) {
        for (sample_t& sample : channel.samples)
            sample.time += seconds;
    }
    for (fix_t& fix : m_fixes)
        fix.time += seconds;
}

void recording_t::deriveRates()
{
    m_channels[CHANNEL_COURSE_MADE_GOOD] = channel_t();
    m_channels[CHANNEL_SPEED_MADE_GOOD] = channel_t();
    auto from = m_fixes.cbegin();
    for (const fix_t& to : m_fixes) {
        while (from->time < to.time - RATE_BASE)
            ++from;
        const double duration = to.time - from->time;
        if (duration < MIN_RATE_BASE)
            continue;
        const double way = from->position.distanceTo(to.position);
        add(CHANNEL_SPEED_MADE_GOOD, m_fixSource, {to.time, way / duration / KNOT});
        if (way >= MIN_WAY)
            add(CHANNEL_COURSE_MADE_GOOD, m_fixSource,
                {to.time, from->position.azimuthTo(to.position)});
    }
}

bool recording_t::isEmpty() const
{
    return m_fixes.empty() && std::all_of(m_channels.begin(), m_channels.end(),
                                          [](const channel_t& c) { return c.samples.empty(); });
}

double recording_t::startTime() const
{
    if (isEmpty())
        return 0.0;
    double start = m_fixes.empty() ? HUGE_VAL : m_fixes.front().time;
    for (const channel_t& channel : m_channels) {
        if (!channel.samples.empty())
            start = std::min(start, channel.samples.front().time);
    }
    return start;
}

double recording_t::endTime() const
{
    if (isEmpty())
        return 0.0;
    double end = m_fixes.empty() ? -HUGE_VAL : m_fixes.back().time;
    for (const channel_t& channel : m_channels) {
        if (!channel.samples.empty())
            end = std::max(end, channel.samples.back().time);
    }
    return end;
}

const sample_t* newestAt(const std::vector<sample_t>& samples, double time)
{
    return newest(samples, time);
}

const fix_t* newestAt(const std::vector<fix_t>& fixes, double time)
{
    return newest(fixes, time);
}

const fix_t* nearestTo(const std::vector<fix_t>& fixes, const QGeoCoordinate& place)
{
    const fix_t* nearest = nullptr;
    double range = HUGE_VAL;
    for (const fix_t& fix : fixes) {
        const double distance = fix.position.distanceTo(place);
        if (distance < range) {
            range = distance;
            nearest = &fix;
        }
    }
    return nearest;
}

double gapThreshold(const std::vector<sample_t>& samples)
{
    if (samples.size() < 2)
        return 0.0;
    std::vector<double> steps;
    steps.reserve(samples.size() - 1);
    for (std::size_t i = 1; i < samples.size(); ++i)
        steps.push_back(samples[i].time - samples[i - 1].time);
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return 1.8 * *middle;
}

std::vector<sample_t> unwrapped(std::vector<sample_t> samples, double near)
{
    for (sample_t& sample : samples) {
        sample.value -= TURN * std::round((sample.value - near) / TURN);
        near = sample.value;
    }
    return samples;
}

} // namespace survey_console
