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

void pingModel_t::clear(int begin)
{
    m_pings.clear();
    reset(begin, 0);
}

} // namespace survey_console
