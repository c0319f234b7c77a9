#pragma once
#include "ruler.h"

namespace survey_console {

/// The ruler at the left of a chart. It prints what the user knows, not what the chart is given:
/// depths, which are drawn as negative values, as positive ones, and angles within one turn.
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
        KIND_ANGLE  ///< degrees of any number of turns
    };

    static constexpr double MIN_SPAN = 0.1; ///< The smallest range that the user can choose.
    static constexpr double MAX_SPAN = 1e5; ///< The greatest one.

    explicit valueRuler_t(kind_t kind, QWidget* parent = nullptr);

    /// Shows the chart's value bounds. Emits no signal: following isn't choosing.
    void follow(double bottom, double top);

    /// The number with the decimals it needs, four at most.
    std::string textFromValue(double value) const override;

    /// The same for all rulers, with room for the widest labels, so that charts one above another
    /// begin at the same column.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user chose the scale from \p bottom_ to \p top_.
    void scaleChosen(double bottom_, double top_);

private:
    void choose(double bottom, double top);

    const kind_t m_kind;
};

} // namespace survey_console
