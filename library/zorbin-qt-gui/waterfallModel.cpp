#include "waterfallModel.h"

#include <algorithm>
#include <limits>

namespace zorbin_qt_gui {

// Invariant: begin <= end.
struct baseWaterfallModelPrivate_t
{
    int begin = 0;
    int end = 0;
};

baseWaterfallModel_t::baseWaterfallModel_t(QObject* parent)
    : QObject(parent), m_d(std::make_unique<baseWaterfallModelPrivate_t>())
{
}

baseWaterfallModel_t::~baseWaterfallModel_t() = default;

unsigned int baseWaterfallModel_t::itemCount() const
{
    return static_cast<unsigned>(m_d->end) - static_cast<unsigned>(m_d->begin);
}

int baseWaterfallModel_t::begin() const
{
    return m_d->begin;
}

int baseWaterfallModel_t::end() const
{
    return m_d->end;
}

bool baseWaterfallModel_t::dropItem()
{
    return false;
}

void baseWaterfallModel_t::reset(int begin, unsigned int count)
{
    constexpr qint64 last = std::numeric_limits<int>::max();
    m_d->begin = begin;
    m_d->end = static_cast<int>(std::min(begin + static_cast<qint64>(count), last));
    Q_EMIT modelReset();
}

void baseWaterfallModel_t::_addItem()
{
    if (m_d->end == std::numeric_limits<int>::max())
        return;
    ++m_d->end;
    Q_EMIT itemAdded();
}

void baseWaterfallModel_t::_dropItem()
{
    if (m_d->begin == m_d->end)
        return;
    ++m_d->begin;
    Q_EMIT itemDropped();
}
} // namespace zorbin_qt_gui
