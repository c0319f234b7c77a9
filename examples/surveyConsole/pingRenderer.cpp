#include "pingRenderer.h"
#include "palette.h"
#include "pingModel.h"

#include <algorithm>
#include <cmath>

namespace survey_console {

pingRenderer_t::pingRenderer_t(double slantRange, QObject* parent)
    : baseWaterfallRenderer_t(parent), m_slantRange(slantRange)
{
}

void pingRenderer_t::setPalette(const zorbin_qt_gui::palette_t& palette)
{
    m_colorer.setPalette(palette);
    m_colorer.setRangeValues(m_min, m_max); // follows the size of the table
    Q_EMIT rendererChanged();
}

void pingRenderer_t::setLevels(float min, float max)
{
    m_min = min;
    m_max = max;
    m_colorer.setRangeValues(m_min, m_max);
    Q_EMIT rendererChanged();
}

void pingRenderer_t::render(const context_t* context, QRgb* pixels,
                            zorbin_qt_gui::baseWaterfallModel_t* model, unsigned int index)
{
    const std::vector<float>& levels =
        static_cast<pingModel_t*>(model)->ping(static_cast<int>(index)).levels;
    const double samples = static_cast<double>(levels.size());
    const double perMetre = samples / (2.0 * m_slantRange);
    const double step = perMetre / context->scale; // samples a pixel
    const double first = (context->beg + m_slantRange) * perMetre;
    if (!std::isfinite(first) || !std::isfinite(step) || step <= 0.0)
        return;
    // The pixels whose middle is inside the ping.
    const double count = context->numPixels;
    const auto begin =
        static_cast<std::size_t>(std::clamp(std::ceil((0.0 - first) / step - 0.5), 0.0, count));
    const auto end =
        static_cast<std::size_t>(std::clamp(std::ceil((samples - first) / step - 0.5), 0.0, count));
    if (begin >= end)
        return;
    m_line.resize(end - begin);
    for (std::size_t pixel = begin; pixel < end; ++pixel) {
        const double from = first + static_cast<double>(pixel) * step;
        const auto left = static_cast<std::size_t>(std::clamp(from, 0.0, samples - 1.0));
        const auto right =
            std::max(left + 1, static_cast<std::size_t>(std::clamp(from + step, 0.0, samples)));
        float sum = 0.0F;
        for (std::size_t sample = left; sample < right; ++sample)
            sum += levels[sample];
        m_line[pixel - begin] = sum / static_cast<float>(right - left);
    }
    m_colorer.colors(m_line.data(), pixels + begin, static_cast<unsigned>(m_line.size()));
}

} // namespace survey_console
