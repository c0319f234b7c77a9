#include "curveExtents_p.h"

#include "stripChartCurveRenderer.h"

namespace zorbin_qt_gui {
namespace {

constexpr size_t notNoted = std::numeric_limits<size_t>::max();

} // namespace

// One curve and its places.
class curveExtents_t::entry_t : public curveIndex_t::watcher_t
{
public:
    entry_t(curveExtents_t* owner, const stripChartCurveData_t* curve_)
        : curve(curve_), m_owner(owner), m_index(curve_->index.get())
    {
        m_index->watch(this);
    }

    ~entry_t() { m_index->unwatch(this); }

    entry_t(const entry_t&) = delete;
    entry_t& operator=(const entry_t&) = delete;

    void extremesChanged() override { m_owner->note(this); }
    void indexEnds() override { m_owner->remove(this); }

    const stripChartCurveData_t* const curve;
    size_t leaf = 0;           // place in m_byLeaf
    size_t notedAt = notNoted; // place in m_noted

private:
    curveExtents_t* const m_owner;
    curveIndex_t* const m_index;
};

curveExtents_t::curveExtents_t() : m_nodes(2)
{
}

curveExtents_t::~curveExtents_t() = default;

void curveExtents_t::add(const stripChartCurveData_t& curve)
{
    std::unique_ptr<entry_t>& entry = m_entries[&curve];
    if (entry != nullptr)
        return;
    entry = std::make_unique<entry_t>(this, &curve);
    entry->leaf = m_byLeaf.size();
    m_byLeaf.push_back(entry.get());
    if (m_byLeaf.size() > m_nodes.size() / 2)
        grow();
    note(entry.get());
}

void curveExtents_t::remove(const stripChartCurveData_t& curve)
{
    const auto found = m_entries.find(&curve);
    if (found != m_entries.end())
        remove(found->second.get());
}

// The last one takes the place of the one that goes.
void curveExtents_t::remove(entry_t* entry)
{
    unnote(entry);
    entry_t* const last = m_byLeaf.back();
    const extremes_t extremes = m_nodes[m_nodes.size() / 2 + last->leaf];
    setLeaf(last->leaf, extremes_t());
    if (last != entry) {
        setLeaf(entry->leaf, extremes);
        last->leaf = entry->leaf;
        m_byLeaf[last->leaf] = last;
    }
    m_byLeaf.pop_back();
    const stripChartCurveData_t* const key = entry->curve;
    m_entries.erase(key);
}

void curveExtents_t::note(entry_t* entry)
{
    if (entry->notedAt != notNoted)
        return;
    entry->notedAt = m_noted.size();
    m_noted.push_back(entry);
}

void curveExtents_t::unnote(entry_t* entry)
{
    if (entry->notedAt == notNoted)
        return;
    entry_t* const last = m_noted.back();
    m_noted[entry->notedAt] = last;
    last->notedAt = entry->notedAt;
    m_noted.pop_back();
    entry->notedAt = notNoted;
}

extremes_t curveExtents_t::over(double from, double to)
{
    if (from != m_from || to != m_to) {
        m_from = from;
        m_to = to;
        for (entry_t* const entry : m_byLeaf)
            note(entry);
    }
    // Combining all nodes once costs less than the ways from many leaves to the root.
    const bool areMany = m_noted.size() > m_byLeaf.size() / 4;
    for (entry_t* const entry : m_noted) {
        const extremes_t extremes = windowExtremes(*entry->curve, from, to);
        ++m_asked;
        if (areMany)
            m_nodes[m_nodes.size() / 2 + entry->leaf] = extremes;
        else
            setLeaf(entry->leaf, extremes);
        entry->notedAt = notNoted; // only now, as asking tells of a change
    }
    if (areMany)
        combineAll();
    m_noted.clear();
    return m_nodes[1];
}

void curveExtents_t::grow()
{
    const size_t leaves = m_nodes.size() / 2;
    std::vector<extremes_t> nodes(4 * leaves);
    std::copy(m_nodes.begin() + static_cast<std::ptrdiff_t>(leaves), m_nodes.end(),
              nodes.begin() + static_cast<std::ptrdiff_t>(2 * leaves));
    m_nodes.swap(nodes);
    combineAll();
}

extremes_t curveExtents_t::combined(size_t node) const
{
    extremes_t result = m_nodes[2 * node];
    result.include(m_nodes[2 * node + 1]);
    return result;
}

void curveExtents_t::setLeaf(size_t leaf, const extremes_t& extremes)
{
    size_t node = m_nodes.size() / 2 + leaf;
    m_nodes[node] = extremes;
    while ((node /= 2) > 0)
        m_nodes[node] = combined(node);
}

void curveExtents_t::combineAll()
{
    for (size_t node = m_nodes.size() / 2 - 1; node > 0; --node)
        m_nodes[node] = combined(node);
}

bool curveExtents_t::isConsistent() const
{
    const size_t leaves = m_nodes.size() / 2;
    if (m_entries.size() != m_byLeaf.size() || m_byLeaf.size() > leaves)
        return false;
    for (size_t i = 0; i < m_byLeaf.size(); ++i) {
        const entry_t* const entry = m_byLeaf[i];
        const auto found = m_entries.find(entry->curve);
        if (entry->leaf != i || found == m_entries.end() || found->second.get() != entry)
            return false;
        if (entry->notedAt != notNoted &&
            (entry->notedAt >= m_noted.size() || m_noted[entry->notedAt] != entry))
            return false;
    }
    for (const entry_t* const entry : m_noted) {
        if (entry->notedAt == notNoted)
            return false;
    }
    const auto isSame = [](const extremes_t& a, const extremes_t& b) {
        return a.min == b.min && a.max == b.max;
    };
    for (size_t i = m_byLeaf.size(); i < leaves; ++i) {
        if (!isSame(m_nodes[leaves + i], extremes_t()))
            return false;
    }
    for (size_t node = 1; node < leaves; ++node) {
        if (!isSame(m_nodes[node], combined(node)))
            return false;
    }
    return true;
}

} // namespace zorbin_qt_gui
