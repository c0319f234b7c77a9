#include "pingModel.h"

namespace survey_console {

void pingModel_t::addPing(const ping_t& ping)
{
    if (m_pings.size() >= CAPACITY)
        dropItem();
    m_pings.push_back(ping);
    _addItem();
}

bool pingModel_t::dropItem()
{
    if (m_pings.empty())
        return false;
    m_pings.pop_front();
    _dropItem();
    return true;
}

void pingModel_t::replace(int begin, std::deque<ping_t> pings)
{
    m_pings = std::move(pings);
    reset(begin, static_cast<unsigned>(m_pings.size()));
}

} // namespace survey_console
