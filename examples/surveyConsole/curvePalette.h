#pragma once
#include "recording.h"

#include <QColor>
#include <QPixmap>
#include <memory>

namespace zorbin_qt_gui {
class palette_t;
}

namespace survey_console {

/// What a palette is stretched over.
struct valueRange_t
{
    double min;
    double max;
    int decimals; ///< that its ends need
};

/// The range of the finite values of \p samples, made at least \p minSpan wide and then widened to
/// round numbers, but not below zero if no value is. Taken from all of a line, it gives a value the
/// same colour from the line's start to its end.
valueRange_t roundRange(const std::vector<sample_t>& samples, double minSpan);

/// \p color, mixed with as much white, on a light chart black, as it takes to be seen there: a
/// contrast of 3 to 1 with theme::chart(). A colour that has it already comes back as it is.
QColor visibleOnChart(const QColor& color);

/// A palette whose table is that of \p palette, each entry visibleOnChart().
std::unique_ptr<zorbin_qt_gui::palette_t> curvePalette(const zorbin_qt_gui::palette_t& palette);

/// The table of \p palette as a picture, its first colour at the left and its last at the right.
QPixmap swatch(const zorbin_qt_gui::palette_t& palette, const QSize& size);

} // namespace survey_console
