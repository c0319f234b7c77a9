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

/// One way of showing a waterfall of plotWidth x plotHeight pixels: a line for each row, the newest
/// at the top, in the colours of waterfallColor(). Frames as with charts.
class waterfallContender_t
{
public:
    virtual ~waterfallContender_t() = default;
    virtual QWidget* window() = 0;
    virtual QWidget* plotArea() = 0;
    /// Adds a line of plotWidth values from 0.0 to 1.0; the oldest one goes.
    virtual void addLine(const float* values) = 0;
    virtual void finishFrame() = 0;
};

/// One way of showing how samples are distributed over histogramBins bins from 0.0 to 1.0, the
/// tallest as high as the plot area. Frames as with charts.
class histogramContender_t
{
public:
    virtual ~histogramContender_t() = default;
    virtual QWidget* window() = 0;
    virtual QWidget* plotArea() = 0;
    /// Shows these samples instead of those before.
    virtual void replace(const std::vector<float>& samples) = 0;
    virtual void finishFrame() = 0;
};

const int histogramBins = 1000;

/// Make the contenders of this program; null for what it doesn't take part in. Each program defines
/// both once.
std::unique_ptr<waterfallContender_t> makeWaterfall();
std::unique_ptr<histogramContender_t> makeHistogram();

/// The grey of a value from 0.0 to 1.0, in 256 steps.
inline QRgb waterfallColor(float value)
{
    const int level = static_cast<int>(value * 255.0F);
    return qRgb(level, level, level);
}

/// The counts of the samples in each bin, by hand, as an application does for widgets that only
/// draw bars.
inline std::vector<unsigned> countedByHand(const std::vector<float>& samples)
{
    std::vector<unsigned> counts(histogramBins);
    for (const float value : samples) {
        if (!(value >= 0.0F && value <= 1.0F))
            continue;
        const int bin = static_cast<int>(value * static_cast<float>(histogramBins));
        ++counts[static_cast<std::size_t>(bin < histogramBins ? bin : histogramBins - 1)];
    }
    return counts;
}

/// The colour of curve number \p curve: opaque, and another one for each of the first eight.
inline QColor curveColor(int curve)
{
    static const std::vector<QColor> colors = {Qt::blue,        Qt::red,       Qt::darkGreen,
                                               Qt::magenta,     Qt::darkCyan,  Qt::darkRed,
                                               Qt::darkMagenta, Qt::darkYellow};
    return colors[static_cast<std::size_t>(curve) % colors.size()];
}
