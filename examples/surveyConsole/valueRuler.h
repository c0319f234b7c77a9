#pragma once
#include "ruler.h"

namespace survey_console {

/// A ruler beside a display, at its left at first. It prints what the user knows, not what the
/// display is given: depths, which are drawn as negative values, as positive ones, angles within
/// one turn, ranges to port, which are negative, as ranges.
///
/// The user chooses another scale with the mouse: a drag shows what is between its ends, a click
/// centres, a double click shows twice as much.
class valueRuler_t : public zorbin_qt_gui::ruler_t
{
    Q_OBJECT
public:
    enum kind_t
    {
        KIND_PLAIN,
        KIND_DEPTH, ///< drawn values are negative depths
        KIND_ANGLE, ///< degrees of any number of turns
        KIND_RANGE  ///< metres to port, negative, and to starboard
    };

    static constexpr double MIN_SPAN = 0.1; ///< The smallest range that the user can choose.
    static constexpr double MAX_SPAN = 1e5; ///< The greatest one.

    explicit valueRuler_t(kind_t kind, QWidget* parent = nullptr);

    /// Sits on another edge.
    void moveTo(location_t location);
    /// Shows the values at the start and the end, of a vertical ruler the bottom and the top. Emits
    /// no signal: following isn't choosing.
    void follow(double start, double end);

    /// The number with the decimals it needs, four at most; on a horizontal ruler with a blank on
    /// either side.
    std::string textFromValue(double value) const override;

    /// The same for all vertical rulers, with room for the widest labels, so that charts one above
    /// another begin at the same column.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user chose the values at the start and the end.
    void scaleChosen(double start_, double end_);

private:
    void choose(double start, double end);

    const kind_t m_kind;
};

} // namespace survey_console
