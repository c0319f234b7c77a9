#include "paletteBox.h"
#include "curvePalette.h"

#include <algorithm>

using zorbin_qt_gui::palette_t;

namespace survey_console {
namespace {

const QSize ICON_SIZE(28, 12);

const standardPalette_t& standardPalette(palette_t::standardPalette_t which)
{
    const auto& all = standardPalettes();
    return *std::find_if(all.begin(), all.end(), [which](const standardPalette_t& palette) {
        return palette.which == which;
    });
}

std::unique_ptr<palette_t> greys()
{
    std::vector<unsigned int> table;
    for (int level = 0; level < 256; ++level)
        table.push_back(qRgb(level, level, level));
    auto palette = std::make_unique<palette_t>();
    palette->setColorTable(table, palette_t::DEPTH_24);
    return palette;
}

} // namespace

const std::vector<standardPalette_t>& standardPalettes()
{
    static const std::vector<standardPalette_t> all = {
        {palette_t::SP_BATHY, "bathy", QT_TRANSLATE_NOOP("paletteBox_t", "Bathymetry")},
        {palette_t::SP_IMAGERY, "imagery", QT_TRANSLATE_NOOP("paletteBox_t", "Imagery")},
        {palette_t::SP_INTENSITY, "intensity", QT_TRANSLATE_NOOP("paletteBox_t", "Intensity")},
        {palette_t::SP_SIDESCAN, "sidescan", QT_TRANSLATE_NOOP("paletteBox_t", "Sidescan")},
        {palette_t::SP_SUBBOTTOM, "subbottom", QT_TRANSLATE_NOOP("paletteBox_t", "Sub-bottom")},
        {palette_t::SP_WATERCOLUMN, "watercolumn",
         QT_TRANSLATE_NOOP("paletteBox_t", "Water column")},
    };
    return all;
}

paletteBox_t::paletteBox_t(const std::vector<palette_t::standardPalette_t>& offered)
{
    setToolTip(tr("The colours of the levels"));
    setIconSize(ICON_SIZE);
    for (const palette_t::standardPalette_t which : offered) {
        auto palette = std::make_unique<palette_t>();
        if (!palette->load(which) || palette->colorTable().empty())
            continue;
        const standardPalette_t& standard = standardPalette(which);
        addItem(QIcon(swatch(*palette, ICON_SIZE)), tr(standard.name),
                QString::fromLatin1(standard.choice));
        m_palettes.push_back(std::move(palette));
    }
    setEnabled(count() > 0);
    if (m_palettes.empty())
        m_palettes.push_back(greys());
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &paletteBox_t::paletteChosen);
}

paletteBox_t::~paletteBox_t() = default;

const palette_t& paletteBox_t::chosen() const
{
    return *m_palettes[static_cast<std::size_t>(std::max(currentIndex(), 0))];
}

QString paletteBox_t::choice() const
{
    return currentData().toString();
}

void paletteBox_t::chooseAgain(const QString& choice)
{
    const int row = findData(choice);
    if (row < 0)
        return;
    setCurrentIndex(row);
    Q_EMIT paletteChosen();
}

} // namespace survey_console
