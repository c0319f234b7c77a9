#include "curvePalette.h"
#include "palette.h"
#include "rangeColorer.h"
#include "theme.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

using zorbin_qt_gui::palette_t;
using zorbin_qt_gui::rangeColorer_t;

namespace survey_console {
namespace {

const double MIN_CONTRAST = 3.0; // what WCAG 2.1 asks of graphical objects

// One channel of sRGB to linear light and back, IEC 61966-2-1.
double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}
double encoded(double light)
{
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

// Relative luminance, 0 to 1.
double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

valueRange_t roundRange(const std::vector<sample_t>& samples, double minSpan)
{
    double min = HUGE_VAL;
    double max = -HUGE_VAL;
    for (const sample_t& sample : samples) {
        if (std::isfinite(sample.value)) {
            min = std::min(min, sample.value);
            max = std::max(max, sample.value);
        }
    }
    if (min > max)
        min = max = 0.0;
    const bool isNegative = min < 0.0;
    if (max - min < minSpan) {
        const double middle = 0.5 * (min + max);
        min = middle - 0.5 * minSpan;
        max = middle + 0.5 * minSpan;
    }
    const double decade = std::floor(std::log10(max - min));
    const double step = std::pow(10.0, decade);
    min = std::floor(min / step) * step;
    max = std::ceil(max / step) * step;
    return {isNegative ? min : std::max(min, 0.0), max, std::max(0, static_cast<int>(-decade))};
}

QColor visibleOnChart(const QColor& color)
{
    const double chart = luminance(theme::chart());
    if (chart > 0.5) { // a light one
        const double most = (chart + 0.05) / MIN_CONTRAST - 0.05;
        const double share = std::min(most / std::max(luminance(color), most), 1.0);
        const auto darkened = [share](double channel) {
            return static_cast<int>(std::floor(255.0 * encoded(share * linear(channel))));
        };
        return {darkened(color.redF()), darkened(color.greenF()), darkened(color.blueF())};
    }
    const double wanted = MIN_CONTRAST * (chart + 0.05) - 0.05;
    const double own = luminance(color);
    if (own >= wanted)
        return color;
    const double white = (wanted - own) / (1.0 - own); // luminance is linear in light
    const auto mixed = [white](double channel) {
        const double light = linear(channel);
        return static_cast<int>(std::ceil(255.0 * encoded(light + white * (1.0 - light))));
    };
    return {mixed(color.redF()), mixed(color.greenF()), mixed(color.blueF())};
}

std::unique_ptr<palette_t> curvePalette(const palette_t& palette)
{
    std::vector<unsigned int> table = palette.colorTable();
    for (unsigned int& color : table)
        color = visibleOnChart(QColor(color)).rgb();
    auto visible = std::make_unique<palette_t>();
    visible->setColorTable(table, palette_t::DEPTH_24);
    return visible;
}

QPixmap swatch(const palette_t& palette, const QSize& size)
{
    rangeColorer_t colorer;
    colorer.setPalette(palette);
    colorer.setRangeValues(0.0F, static_cast<float>(size.width()));
    QPixmap picture(size);
    QPainter painter(&picture);
    for (int x = 0; x < size.width(); ++x)
        painter.fillRect(x, 0, 1, size.height(), QColor(colorer.color(static_cast<float>(x))));
    return picture;
}

} // namespace survey_console
