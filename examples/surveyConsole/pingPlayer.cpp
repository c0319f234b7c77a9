#include "pingPlayer.h"
#include "pingModel.h"

#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const double MIN_INTERVAL = 0.01; // s between the last ping and the first one

} // namespace

pingPlayer_t::pingPlayer_t(const sonarRecord_t& record, pingModel_t* model, QObject* parent)
    : QObject(parent), m_record(record), m_model(model)
{
    const double span = record.pings.back().time - record.pings.front().time;
    m_duration = span + std::max(span / static_cast<double>(record.pings.size()), MIN_INTERVAL);
}

void pingPlayer_t::goTo(double seconds)
{
    const double rounds = std::floor(std::max(seconds, 0.0) / m_duration);
    const double time = m_record.pings.front().time + std::max(seconds, 0.0) - rounds * m_duration;
    const auto later = std::upper_bound(m_record.pings.begin(), m_record.pings.end(), time,
                                        [](double t, const ping_t& ping) { return t < ping.time; });
    const auto count = static_cast<qint64>(m_record.pings.size());
    const qint64 end = static_cast<qint64>(rounds) * count + (later - m_record.pings.begin());
    if (end < m_model->end() || end - m_model->end() > pingModel_t::CAPACITY)
        m_model->clear(static_cast<int>(std::max<qint64>(end - pingModel_t::CAPACITY, 0)));
    for (qint64 index = m_model->end(); index < end; ++index)
        m_model->addPing(m_record.pings[static_cast<std::size_t>(index % count)]);
}

} // namespace survey_console
