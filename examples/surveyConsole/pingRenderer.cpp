#include "pingRenderer.h"
#include "palette.h"
#include "pingModel.h"

#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const int DEPTH_REACH = 2; // pixels to either side of the depth: one of its colour, one of its edge

} // namespace

pingRenderer_t::pingRenderer_t(const extent_t& extent, QObject* parent)
    : baseWaterfallRenderer_t(parent), m_extent(extent)
{
}

void pingRenderer_t::setExtent(const extent_t& extent)
{
    m_extent = extent;
    Q_EMIT rendererChanged();
}

void pingRenderer_t::setPalette(const zorbin_qt_gui::palette_t& palette)
{
    m_colorer.setPalette(palette);
    m_colorer.setRangeValues(m_min, m_max); // follows the size of the table
    m_depthColor = qRgb(0, 0, 0);
    m_depthEdge = qRgb(255, 255, 255);
    palette.keyedColor("bottom", m_depthColor);
    palette.keyedColor("background", m_depthEdge);
    Q_EMIT rendererChanged();
}

void pingRenderer_t::setLevels(float min, float max)
{
    m_min = min;
    m_max = max;
    m_colorer.setRangeValues(m_min, m_max);
    Q_EMIT rendererChanged();
}

void pingRenderer_t::showDepth(bool show)
{
    m_showsDepth = show;
    Q_EMIT rendererChanged();
}

void pingRenderer_t::render(const context_t* context, QRgb* pixels,
                            zorbin_qt_gui::baseWaterfallModel_t* model, unsigned int index)
{
    const ping_t& ping = static_cast<pingModel_t*>(model)->ping(static_cast<int>(index));
    drawLevels(*context, pixels, ping.levels);
    if (m_showsDepth)
        drawDepth(*context, pixels, ping.depth);
}

void pingRenderer_t::drawLevels(const context_t& context, QRgb* pixels,
                                const std::vector<float>& levels)
{
    const double samples = static_cast<double>(levels.size());
    const double perMetre = m_extent.perMetre();
    const double step = perMetre / context.scale; // samples a pixel
    const double first = (context.beg - m_extent.begin) * perMetre;
    if (!std::isfinite(first) || !std::isfinite(step) || step <= 0.0)
        return;
    // The pixels whose middle is inside the ping.
    const double count = context.numPixels;
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

void pingRenderer_t::drawDepth(const context_t& context, QRgb* pixels, double depth) const
{
    const double place = (depth - context.beg) * context.scale;             // in pixels
    if (!(place > -DEPTH_REACH && place < context.numPixels + DEPTH_REACH)) // NaN is no place
        return;
    const int middle = static_cast<int>(std::lround(place)); // of the line, between two pixels
    for (int pixel = middle - DEPTH_REACH; pixel < middle + DEPTH_REACH; ++pixel) {
        const bool isEdge = pixel == middle - DEPTH_REACH || pixel == middle + DEPTH_REACH - 1;
        if (pixel >= 0 && pixel < static_cast<int>(context.numPixels))
            pixels[pixel] = isEdge ? m_depthEdge : m_depthColor;
    }
}

} // namespace survey_console
