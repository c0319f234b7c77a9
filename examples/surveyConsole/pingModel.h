#pragma once
#include "sonarRecord.h"
#include "waterfallModel.h"

#include <deque>

namespace survey_console {

/// The newest pings of a sonar, the oldest of them dropped when there would be more than CAPACITY.
class pingModel_t : public zorbin_qt_gui::baseWaterfallModel_t
{
    Q_OBJECT
public:
    static constexpr int CAPACITY = 2000;

    explicit pingModel_t(QObject* parent = nullptr) : baseWaterfallModel_t(parent) {}

    /// Adds a ping, the newest one. At capacity the oldest one is dropped first.
    void addPing(const ping_t& ping);

    bool dropItem() override;

    /// Holds \p pings, at most CAPACITY, in place of those it held; the first one has the index
    /// \p begin. Emits modelReset().
    void replace(int begin, std::deque<ping_t> pings);

    /// The ping of an index from begin() up to, but without, end().
    const ping_t& ping(int index) const
    {
        return m_pings[static_cast<std::size_t>(index - begin())];
    }
    /// Whether there is one.
    bool holds(int index) const { return index >= begin() && index < end(); }

private:
    std::deque<ping_t> m_pings; // as many as itemCount() says
};

} // namespace survey_console
