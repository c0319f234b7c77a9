#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

namespace zorbin_qt_gui {

/// A numeric axis along one edge of a plot: base line, major and minor ticks, labels, an optional
/// highlighted span and an optional arrow at one value. Values are in the caller's unit.
///
/// The distance of the major ticks is the first interval of a table, scaled by ever higher powers
/// of a base, that is at least two pixels wide and whose labels don't overlap. Ticks are computed
/// when they are painted, after something has changed; where they lie closer than the pixels, one
/// is painted on each pixel. On a horizontal ruler the start is at the left, on a vertical one at
/// the bottom. When the ruler is interactive, dragging selects a new range, a click centres it, a
/// double click doubles it.
///
/// Follows a chart through its range() slot, for example connected to
/// stripChart_t::timeBoundsChanged(). GUI thread only. \image html rulers.png
class ZORBIN_QT_GUI_EXPORT ruler_t : public QWidget
{
    Q_OBJECT

public:
    /// The edge of the plot that the ruler sits on. Any other number is no edge: nothing is drawn.
    enum location_t : int
    {
        TOP = 0,    ///< above the plot; values grow to the right
        BOTTOM = 1, ///< below the plot; values grow to the right
        LEFT = 2,   ///< to the left of the plot; values grow upwards
        RIGHT = 3   ///< to the right of the plot; values grow upwards
    };

    /// A candidate for the distance of the major ticks.
    struct tickEntry_t
    {
        double interval;   ///< in units of the current power of the base; positive
        unsigned numMinor; ///< parts that minor ticks split it into; 0 for no minor ticks
    };

    /// One tick.
    struct tick_t
    {
        /// Kinds of ticks.
        enum type_t
        {
            TICK_MINOR = 0, ///< one of the parts of a major interval
            TICK_MAJOR = 1  ///< a multiple of the major interval, with a label
        };

        /// Orders by position alone.
        bool operator<(const tick_t& other) const { return pos < other.pos; }

        type_t type;       ///< minor ticks are shorter and their labels aren't drawn
        unsigned pos;      ///< distance from the start of the axis, pixels
        std::string label; ///< Latin-1; empty for none
    };

    /// Ticks at one interval.
    struct fit_t
    {
        double startTick = 0.0;    ///< value of the first tick, also where none are laid
        double endTick = 0.0;      ///< value of the last tick inside the range, also then
        std::vector<tick_t> ticks; ///< in order of their values
    };

    /// Makes a ruler below a plot: from 0 to 0, major ticks of 8 pixels, labels in 8 point, not
    /// interactive.
    explicit ruler_t(QWidget* parent = nullptr);
    ~ruler_t() override;

    /// Sets the edge, and a size policy that fits it: fixed across the axis, expanding along it.
    /// Default: BOTTOM. The scale, in pixels per unit, stays that of the edge before, and so do the
    /// places of the ticks, until the next range() that changes the range or the next resize.
    void axisLocation(const location_t& location);
    /// The edge.
    const location_t& axisLocation() const;
    /// Sets the direction in which labels are written, Qt::Horizontal at first.
    void textOrientation(const Qt::Orientation& orientation);
    /// Sets whether minor ticks are drawn, true at first.
    void showMinorTicks(bool show);
    /// Sets whether labels are drawn, true at first.
    void showText(bool show);
    /// Sets the length of major ticks in pixels, 8 at first; minor ones get half of it. With 0
    /// there is no base line either.
    void tickLength(unsigned int length);
    /// Sets the gap between major ticks and labels in pixels, 5 at first.
    void spacing(unsigned int px);
    /// Sets whether the user can change the range with the mouse, false at first.
    void interactive(bool enable);
    /// Sets whether range() swaps its bounds, and passes the present bounds to range(). Default:
    /// false. Every call with true turns the axis round: the second one turns it back. A call with
    /// false leaves the axis as it is until the next range().
    void invert(bool enable);
    /// Sets the lowest value that later ranges may reach.
    void axisMinLimit(double limit);
    /// Sets the highest value that later ranges may reach.
    void axisMaxLimit(double limit);
    /// Sets the candidates for the major interval and the base whose integer powers scale them:
    /// at first 1, 2, 2.5 and 5 with 10 minor parts each, and 10. They are tried in the order
    /// given, and take effect when the ticks are next computed; while there are no ticks, that is
    /// at the next paint. An empty table gives no ticks. A base that isn't above 1 isn't scaled
    /// with. With a base below 1.01, a search that tries many labels goes on in steps of 1 %.
    void tickTable(const std::vector<tickEntry_t>& table, double base);

    double start() const; ///< The value at the start of the axis.
    double end() const;   ///< The value at the end of the axis.

    /// Points an arrow at a value.
    void indicator(double v);
    /// The value that the arrow points or last pointed at; 0.0 at first.
    double indicator() const;
    /// Removes the arrow.
    void clearIndicator();
    /// Highlights the span between two values.
    void highlightRange(double a, double b);
    /// Removes the highlight.
    void clearHighlight();

    /// The value at a pixel: x for a horizontal ruler, y for a vertical one.
    double pixelToValue(int px);
    /// The pixel of a value, its fraction dropped; 0 for what is before the first pixel, not
    /// limited at the other end.
    int valueToPixel(double value);

    /// How many decimals labels need at the major interval: one more than the place of its first
    /// digit behind the point, 0 for a whole number. While a search tries a candidate, the major
    /// interval is the entry that the search before chose, scaled with the power being tried. The
    /// labels of the candidate that is chosen keep those decimals.
    unsigned int numDecimals() const;
    /// The label of a tick. This one prints numDecimals() decimals in the C library's current
    /// locale and strips trailing zeros behind a '.'. A subclass may print anything, depending on
    /// \p value and on the ruler's state; how often and for which values it is called is left open.
    virtual std::string textFromValue(double value) const;

    /// Scales the tick table with the \p n th power of the base; the next search begins there.
    void step(int n);
    /// Computes the ticks for the present range, size and font. Painting calls it once after each
    /// change, also if the outcome is that there are no ticks. Call it after a change that the
    /// ruler can't know of, such as another format of a subclass, and update().
    void calculateTickPlacement();
    /// Lays ticks at the multiples of \p interval, a positive value, from the first one inside the
    /// range on, all with labels and TICK_MINOR. If no multiple is inside the range, two outside
    /// come back. On a ruler that was never shown all positions are 0.
    ///
    /// More than a million ticks aren't laid: the list is empty then. It is also empty for an
    /// interval of 0 and where the interval or the range isn't finite.
    void calculateFit(double interval, fit_t& fit);
    /// Whether labels at the multiples of \p interval, a value, can be drawn without overlap. Also
    /// true where calculateFit() lays no ticks, and on a ruler that was never shown: a label that
    /// reaches beyond the start of the axis never overlaps.
    bool labelFit(double interval);

    /// Room for ticks across the axis; grows to the labels' when they are painted.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Sets the values at the start and the end of the axis. If the ruler is inverted they are
    /// swapped first. The start is then kept within the axis limits and the end moved along, so
    /// that the range keeps its width, before it is kept within the limits too. Unless the bounds
    /// asked for are those that the ruler has, boundsChanged() is emitted.
    ///
    /// A start above the end makes an axis on which values decrease. Bounds that aren't finite, or
    /// whose difference isn't, give an axis without ticks.
    void range(double start_, double end_);

Q_SIGNALS:
    /// The range was set, by the program or by the user; in the order in which range() takes it.
    void boundsChanged(double start_, double end_);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct rulerWidgetPriv_t;
    const std::unique_ptr<rulerWidgetPriv_t> m_d;
};
} // namespace zorbin_qt_gui
