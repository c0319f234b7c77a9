#pragma once
#include "rangeColorer.h"
#include "waterfallRenderer.h"

#include <vector>

namespace zorbin_qt_gui {
class palette_t;
}

namespace survey_console {

/// Draws the pings of a pingModel_t: metres across the track, port negative, as columns, the levels
/// coloured by a palette over a range of dB. A pixel shows the mean of the samples it covers.
class pingRenderer_t : public zorbin_qt_gui::baseWaterfallRenderer_t
{
    Q_OBJECT
public:
    /// All pings reach \p slantRange (m, positive) to either side.
    explicit pingRenderer_t(double slantRange, QObject* parent = nullptr);

    /// Sets the colours. Emits rendererChanged().
    void setPalette(const zorbin_qt_gui::palette_t& palette);
    /// Sets the levels of the first and the last colour. Emits rendererChanged().
    void setLevels(float min, float max);

    void render(const context_t* context, QRgb* pixels, zorbin_qt_gui::baseWaterfallModel_t* model,
                unsigned int index) override;

private:
    const double m_slantRange; // m
    float m_min = -60.0F;      // dB
    float m_max = 0.0F;
    zorbin_qt_gui::rangeColorer_t m_colorer;
    std::vector<float> m_line; // the levels of a line's pixels, kept for its room
};

} // namespace survey_console
