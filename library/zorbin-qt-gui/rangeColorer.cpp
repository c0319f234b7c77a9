#include "rangeColorer.h"

#include "colorer_p.h"
#include "numbers_p.h"

namespace zorbin_qt_gui {

struct rangeColorer_t::privateData_t
{
    float minVal = 0.0F;
    float maxVal = 0.0F;
    float valToColor = 0.0F; // entries per unit of value
};

static double position(float value, float minVal, float valToColor)
{
    return (static_cast<double>(value) - static_cast<double>(minVal)) *
           static_cast<double>(valToColor);
}

// Clamping before the conversion instead of after it gives the same index and a defined one.
ZORBIN_ALSO_FOR_AVX2
static void computeIndices(const float* values, std::int32_t* indices, unsigned count, float minVal,
                           float valToColor, double last)
{
    for (unsigned i = 0; i < count; ++i) {
        double x = position(values[i], minVal, valToColor);
        x = x < firstBeyondInt ? x : 0.0; // NaN, too
        x = x > 0.0 ? x : 0.0;
        x = x < last ? x : last;
        indices[i] = static_cast<std::int32_t>(x);
    }
}

rangeColorer_t::rangeColorer_t() : m_d(std::make_unique<privateData_t>())
{
}

rangeColorer_t::~rangeColorer_t() = default;

void rangeColorer_t::setRangeValues(float minVal, float maxVal)
{
    m_d->minVal = minVal;
    m_d->maxVal = maxVal;
    const auto span = static_cast<float>(static_cast<double>(maxVal) - static_cast<double>(minVal));
    if (span == 0.0F)
        return;
    const auto entries = static_cast<double>(colorTable().size());
    m_d->valToColor = static_cast<float>(entries / static_cast<double>(span));
}

QRgb rangeColorer_t::color(float value) const
{
    const std::vector<unsigned int>& table = colorer_t::m_d->colorTable;
    if (table.empty())
        return 0;
    const int index = std::max(truncatedOrLeast(position(value, m_d->minVal, m_d->valToColor)), 0);
    return table[std::min(static_cast<std::size_t>(index), table.size() - 1)];
}

bool rangeColorer_t::_isInitialized() const
{
    return true;
}

void rangeColorer_t::colors(const float* values, QRgb* colors, unsigned count) const
{
    const std::vector<unsigned int>& table = colorer_t::m_d->colorTable;
    if (table.empty()) {
        std::fill_n(colors, count, 0U);
        return;
    }
    const double last = static_cast<double>(std::min<std::size_t>(table.size() - 1, 2147483647));
    const privateData_t range = *m_d;
    lookUp(table, values, colors, count,
           [range, last](const float* samples, std::int32_t* indices, unsigned n) {
               computeIndices(samples, indices, n, range.minVal, range.valToColor, last);
           });
}
} // namespace zorbin_qt_gui
