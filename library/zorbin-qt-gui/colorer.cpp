#include "colorer.h"

#include "colorer_p.h"

namespace zorbin_qt_gui {

colorer_t::colorer_t() : m_d(std::make_unique<privateData_t>())
{
}

colorer_t::~colorer_t() = default;

void colorer_t::setPalette(const palette_t& p)
{
    m_d->colorTable = p.colorTable();
}

const std::vector<unsigned int>& colorer_t::colorTable() const
{
    return m_d->colorTable;
}

bool colorer_t::isInitialized() const
{
    return !m_d->colorTable.empty() && _isInitialized();
}

void colorer_t::colors(const float* values, QRgb* colors, unsigned count) const
{
    std::transform(values, values + count, colors, [this](float value) { return color(value); });
}
} // namespace zorbin_qt_gui
