#include "cycleColorer.h"

#include "colorer_p.h"
#include "numbers_p.h"

#include <cmath>

namespace zorbin_qt_gui {

struct cycleColorer_t::privateData_t
{
    float interval = 0.0F;
};

static double position(float value, float interval)
{
    return std::abs(static_cast<double>(value) / static_cast<double>(interval));
}

// The remainder without an integer division: all numbers are whole and below 2^53, so only the
// quotient is inexact. Rounded to the nearest turn it leaves half a turn to either side.
ZORBIN_ALSO_FOR_AVX2
static void computeIndices(const float* values, std::int32_t* indices, unsigned count,
                           float interval, double entries)
{
    const double perEntry = 1.0 / entries;
    for (unsigned i = 0; i < count; ++i) {
        double x = position(values[i], interval);
        x = x < firstBeyondInt ? x : firstBeyondInt; // NaN, too
        double band = rounded(x);
        band -= band > x ? 1.0 : 0.0;
        double entry = band - rounded(band * perEntry) * entries;
        entry += entry < 0.0 ? entries : 0.0;
        indices[i] = static_cast<std::int32_t>(entry);
    }
}

cycleColorer_t::cycleColorer_t() : m_d(std::make_unique<privateData_t>())
{
}

cycleColorer_t::~cycleColorer_t() = default;

void cycleColorer_t::setInterval(float interval)
{
    m_d->interval = interval;
}

QRgb cycleColorer_t::color(float value) const
{
    const std::vector<unsigned int>& table = colorer_t::m_d->colorTable;
    if (table.empty())
        return 0;
    // Deliberate: the least integer, which stands for what doesn't fit, counts as 2^31.
    const auto band = static_cast<unsigned>(truncatedOrLeast(position(value, m_d->interval)));
    return table[band % table.size()];
}

bool cycleColorer_t::_isInitialized() const
{
    return true;
}

void cycleColorer_t::colors(const float* values, QRgb* colors, unsigned count) const
{
    const std::vector<unsigned int>& table = colorer_t::m_d->colorTable;
    if (table.empty()) {
        std::fill_n(colors, count, 0U);
        return;
    }
    const float interval = m_d->interval;
    const auto entries = static_cast<double>(table.size());
    lookUp(table, values, colors, count,
           [interval, entries](const float* samples, std::int32_t* indices, unsigned n) {
               computeIndices(samples, indices, n, interval, entries);
           });
}
} // namespace zorbin_qt_gui
