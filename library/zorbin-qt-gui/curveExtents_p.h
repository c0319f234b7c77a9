#pragma once
#include "curveIndex_p.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace zorbin_qt_gui {
struct stripChartCurveData_t;

/// The extremes of all curves of a chart together, over one time window. Only curves that may have
/// changed are asked again, and each takes a time that grows with the logarithm of their number.
class curveExtents_t
{
public:
    curveExtents_t();
    ~curveExtents_t();

    /// Takes a curve in, which leaves by itself when it is destroyed.
    void add(const stripChartCurveData_t& curve);
    /// Does nothing for a curve that is not in.
    void remove(const stripChartCurveData_t& curve);

    /// The least and the greatest value that any curve has from \p from to \p to, as
    /// windowExtremes() gives them.
    extremes_t over(double from, double to);
    /// Whether nothing has changed since over() was called, so that it would give the same again
    /// for the same window.
    bool isCurrent() const { return m_noted.empty(); }

    /// How often a curve was asked so far. For tests.
    quint64 asked() const { return m_asked; }
    /// Whether places and nodes fit together. For tests.
    bool isConsistent() const;

private:
    class entry_t;

    void remove(entry_t* entry);
    void note(entry_t* entry);
    void unnote(entry_t* entry);
    void grow();
    void setLeaf(size_t leaf, const extremes_t& extremes);
    void combineAll();
    extremes_t combined(size_t node) const;

    std::unordered_map<const stripChartCurveData_t*, std::unique_ptr<entry_t>> m_entries;
    std::vector<entry_t*> m_byLeaf; // all of them
    std::vector<entry_t*> m_noted;  // those to be asked again
    // A binary tree: node 1 combines all, node n the nodes 2n and 2n + 1; the second half are the
    // leaves, each for one curve, in the order of m_byLeaf, and behind them empty ones.
    std::vector<extremes_t> m_nodes;
    double m_from = std::numeric_limits<double>::quiet_NaN(); // no window was asked for yet
    double m_to = std::numeric_limits<double>::quiet_NaN();
    quint64 m_asked = 0;
};
} // namespace zorbin_qt_gui
