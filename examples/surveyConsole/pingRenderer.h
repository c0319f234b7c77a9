#pragma once
#include "rangeColorer.h"
#include "sonarRecord.h"
#include "waterfallRenderer.h"

#include <vector>

namespace zorbin_qt_gui {
class palette_t;
}

namespace survey_console {

/// Draws the pings of a pingModel_t, the data coordinate in metres as in extent_t: the levels
/// coloured by a palette over a range. A pixel shows the mean of the samples it covers.
class pingRenderer_t : public zorbin_qt_gui::baseWaterfallRenderer_t
{
    Q_OBJECT
public:
    /// \p extent is that of the record that all pings come from.
    explicit pingRenderer_t(const extent_t& extent, QObject* parent = nullptr);

    /// Goes over to another record's extent. Emits rendererChanged().
    void setExtent(const extent_t& extent);

    /// Sets the colours. Emits rendererChanged().
    void setPalette(const zorbin_qt_gui::palette_t& palette);
    /// Sets the levels of the first and the last colour. Emits rendererChanged().
    void setLevels(float min, float max);
    /// Sets whether the depth that the instrument has found is drawn, false at first: two pixels in
    /// the palette's colour for the bottom between two in that of its background, which set it off
    /// from echoes like it; black between white if the palette has none. Emits rendererChanged().
    void showDepth(bool show);

    void render(const context_t* context, QRgb* pixels, zorbin_qt_gui::baseWaterfallModel_t* model,
                unsigned int index) override;

private:
    void drawLevels(const context_t& context, QRgb* pixels, const std::vector<float>& levels);
    void drawDepth(const context_t& context, QRgb* pixels, double depth) const;

    extent_t m_extent;
    float m_min = -60.0F;
    float m_max = 0.0F;
    bool m_showsDepth = false;
    QRgb m_depthColor = 0; // set with the palette
    QRgb m_depthEdge = 0;
    zorbin_qt_gui::rangeColorer_t m_colorer;
    std::vector<float> m_line; // the levels of a line's pixels, kept for its room
};

} // namespace survey_console
