#pragma once
#include <QColor>
#include <QWidget>
#include <memory>
#include <vector>

/// What every contender draws: one chart of 1000 x 400 pixels and nothing beside it.
struct chartShape_t
{
    int curves = 1;           ///< how many, each one a line of width 2 in curveColor()
    double window = 60.0;     ///< seconds from the left edge to the right edge
    double kept = 61.0;       ///< seconds of data behind the newest point; older points are dropped
    double valueRange = 1.25; ///< the value axis goes from minus this to this at first
    bool autoscale = true;    ///< the value axis follows the data, where a contender can do so
};

const int plotWidth = 1000; ///< pixels
const int plotHeight = 400; ///< pixels

/// One timed value; time in seconds.
struct sample_t
{
    double time;
    double value;
};

/// One way of drawing curves that scroll: this library, or what a user might take instead.
///
/// A frame is: add points, scroll or set bounds, finishFrame(), and then one turn of the event
/// loop, which the caller makes. After that the picture must be on screen. Everything that a
/// contender can put off until finishFrame() it may put off.
class contender_t
{
public:
    virtual ~contender_t() = default;

    /// The top-level widget, made but not shown.
    virtual QWidget* window() = 0;
    /// The widget that gets the paint events of the plot area; it may be the window.
    virtual QWidget* plotArea() = 0;

    /// Adds one point to curve number \p curve; its time is later than all before.
    virtual void addPoint(int curve, const sample_t& sample) = 0;
    /// Adds many.
    virtual void addPoints(int curve, const sample_t* first, int count) = 0;
    /// Moves the right edge to \p time.
    virtual void scrollTime(double time) = 0;
    /// Sets the values at the bottom and the top edge; no more autoscale.
    virtual void valueBounds(double min, double max) = 0;
    /// Asks for the frame to be drawn, unless that has been done by then.
    virtual void finishFrame() = 0;
};

/// Makes the contender of this program; each program defines it once.
std::unique_ptr<contender_t> makeContender(const chartShape_t& shape);

/// The colour of curve number \p curve: opaque, and another one for each of the first eight.
inline QColor curveColor(int curve)
{
    static const std::vector<QColor> colors = {Qt::blue,        Qt::red,       Qt::darkGreen,
                                               Qt::magenta,     Qt::darkCyan,  Qt::darkRed,
                                               Qt::darkMagenta, Qt::darkYellow};
    return colors[static_cast<std::size_t>(curve) % colors.size()];
}
