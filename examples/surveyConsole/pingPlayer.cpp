#include "pingPlayer.h"
#include "pingModel.h"

#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const double MIN_INTERVAL = 0.01; // s between the last ping and the first one

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

void pingPlayer_t::play(const sonarRecord_t& record)
{
    m_record = &record;
    m_model->clear(0);
}

void pingPlayer_t::goTo(double seconds)
{
    const std::vector<ping_t>& pings = m_record->pings;
    const double duration = durationOf(*m_record);
    const double rounds = std::floor(std::max(seconds, 0.0) / duration);
    const double time = pings.front().time + std::max(seconds, 0.0) - rounds * duration;
    const auto later = std::upper_bound(pings.begin(), pings.end(), time,
                                        [](double t, const ping_t& ping) { return t < ping.time; });
    const auto count = static_cast<qint64>(pings.size());
    const qint64 end = static_cast<qint64>(rounds) * count + (later - pings.begin());
    if (end < m_model->end() || end - m_model->end() > pingModel_t::CAPACITY)
        m_model->clear(static_cast<int>(std::max<qint64>(end - pingModel_t::CAPACITY, 0)));
    for (qint64 index = m_model->end(); index < end; ++index)
        m_model->addPing(pings[static_cast<std::size_t>(index % count)]);
}

} // namespace survey_console
