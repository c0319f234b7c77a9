#include "cycleColorer.h"

#include "colorer_p.h"
#include "numbers_p.h"

#include <cmath>

namespace zorbin_qt_gui {

struct cycleColorer_t::privateData_t
{
    float interval = 0.0F;

    double position(float value) const
    {
        return std::abs(static_cast<double>(value) / static_cast<double>(interval));
    }
};

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
    const auto band = static_cast<unsigned>(truncatedOrLeast(m_d->position(value)));
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
    // The remainder without an integer division: all numbers are whole and below 2^53, so only the
    // quotient is inexact, by less than one.
    const auto entries = static_cast<double>(table.size());
    const double perEntry = 1.0 / entries;
    const double beyond = std::fmod(firstBeyondInt, entries);
    const privateData_t cycle = *m_d;
    lookUp(table, values, colors, count,
           [=](const float* samples, std::int32_t* indices, unsigned n) {
               for (unsigned i = 0; i < n; ++i) {
                   const double x = cycle.position(samples[i]);
                   const bool fits = x < firstBeyondInt; // NaN doesn't
                   const double band = static_cast<std::int32_t>(fits ? x : 0.0);
                   const double turns = static_cast<std::int32_t>(band * perEntry);
                   double entry = band - turns * entries;
                   entry += entry < 0.0 ? entries : 0.0;
                   entry -= entry >= entries ? entries : 0.0;
                   indices[i] = static_cast<std::int32_t>(fits ? entry : beyond);
               }
           });
}
} // namespace zorbin_qt_gui
