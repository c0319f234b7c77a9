#include "pingPlayer.h"
#include "pingModel.h"

#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const double MIN_INTERVAL = 0.01; // s between the last ping and the first one
const qint64 MAX_STEPS = 100;     // pings that come one by one

// In seconds, from one start to the next; positive.
double durationOf(const sonarRecord_t& record)
{
    const double span = record.pings.back().time - record.pings.front().time;
    return span + std::max(span / static_cast<double>(record.pings.size()), MIN_INTERVAL);
}

} // namespace

pingPlayer_t::pingPlayer_t(const sonarRecord_t& record, pingModel_t* model, QObject* parent)
    : QObject(parent), m_record(&record), m_model(model)
{
}

void pingPlayer_t::play(const sonarRecord_t& record, double seconds)
{
    m_record = &record;
    fill(endAt(seconds));
}

void pingPlayer_t::goTo(double seconds)
{
    const qint64 end = endAt(seconds);
    if (end < m_model->end() || end - m_model->end() > MAX_STEPS)
        fill(end);
    for (qint64 index = m_model->end(); index < end; ++index)
        m_model->addPing(pingAt(index));
}

// How many pings have come, those of earlier rounds included.
qint64 pingPlayer_t::endAt(double seconds) const
{
    const std::vector<ping_t>& pings = m_record->pings;
    const double duration = durationOf(*m_record);
    const double rounds = std::floor(std::max(seconds, 0.0) / duration);
    const double time = pings.front().time + std::max(seconds, 0.0) - rounds * duration;
    const auto later = std::upper_bound(pings.begin(), pings.end(), time,
                                        [](double t, const ping_t& ping) { return t < ping.time; });
    return static_cast<qint64>(rounds) * static_cast<qint64>(pings.size()) +
           (later - pings.begin());
}

// With the newest ones of those that have come.
void pingPlayer_t::fill(qint64 end)
{
    const qint64 begin = std::max<qint64>(end - pingModel_t::CAPACITY, 0);
    std::deque<ping_t> pings;
    for (qint64 index = begin; index < end; ++index)
        pings.push_back(pingAt(index));
    m_model->replace(static_cast<int>(begin), std::move(pings));
}

const ping_t& pingPlayer_t::pingAt(qint64 index) const
{
    return m_record->pings[static_cast<std::size_t>(index) % m_record->pings.size()];
}

} // namespace survey_console
