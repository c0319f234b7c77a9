#pragma once
#include <QColor>
#include <QWidget>
#include <deque>
#include <vector>

/// One curve of a plainStripChart_t: timed points of the last so many seconds, the older ones of
/// them in blocks of a thousand whose extremes are kept, so that autoscale need not look at every
/// point.
class plainCurve_t
{
public:
    struct point_t
    {
        double time;  ///< seconds
        double value; ///< finite
        QColor color; ///< of the line that ends here
    };

    /// Appends \p point unless its time isn't later than the newest one's; says whether it did.
    bool append(const point_t& point);
    /// Makes blocks of the newest points, as far as there are enough of them.
    void sealBlocks();
    /// Drops the points older than the newest time minus the duration.
    /// Returns how many; \p from and \p to get the times of the oldest one before and after.
    int prune(double* from, double* to);

    /// Least value from time \p from to \p to; blocks count whole. The largest double if there is
    /// no point in the range, 0.0 if there is none at all.
    double valueMin(double from, double to) const;
    /// Greatest value, likewise; minus the largest double if there is no point in the range.
    double valueMax(double from, double to) const;

    const std::deque<point_t>& points() const { return m_points; }

    QColor color;
    double duration = 7200.0; ///< seconds
    double gap = 1.1;         ///< seconds; the line across a longer step is faint

private:
    // A block reaches to the first point after it, so that blocks leave no hole.
    struct block_t
    {
        double startTime;
        double endTime;
        double minValue;
        double maxValue;
    };
    using better_t = double (*)(double, double);

    double scan(double from, double to, double worst, better_t better) const;
    double extreme(double from, double to, double worst, better_t better,
                   double block_t::*cached) const;

    // In order: m_outgoing points of blocks that are no more, the points of m_blocks, and
    // m_incoming points that are in no block yet.
    std::deque<point_t> m_points;
    std::deque<block_t> m_blocks;
    int m_incoming = 0;
    int m_outgoing = 0;
};

/// A strip chart in a few hundred lines of plain QPainter: every line is drawn by itself, in order.
/// Scrolling goes by whole pixels, so that the picture can be shifted and only what comes into view
/// is painted. This is the yardstick for speed, and the library has to paint the same pixels.
/// Values and colours as given, finite and opaque or not.
class plainStripChart_t : public QWidget
{
public:
    explicit plainStripChart_t(QWidget* parent = nullptr);

    /// Adds an empty curve drawn above those before and returns its number.
    int addCurve(const QColor& color, double duration);
    /// Adds points to curve number \p curve and asks for the columns that they touch.
    void addPoints(int curve, const std::vector<plainCurve_t::point_t>& points);
    /// Adds one.
    void addPoint(int curve, const plainCurve_t::point_t& point);

    /// Moves the window to the first whole-pixel position at or after \p time.
    void scrollTime(double time);
    /// Sets the times at the left and the right edge.
    void timeBounds(double min, double max);
    /// Sets the values at the bottom and the top edge; no more autoscale.
    void valueBounds(double min, double max);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void pointsAppended(plainCurve_t* curve, double fromTime);
    void updateColumns(double fromTime, double toTime);
    // Shifts what is painted by that many pixels; 0: paints everything.
    void moveTime(double min, double max, int shift);
    void recalculateBounds();
    void drawCurve(QPainter* painter, const plainCurve_t& curve, double drawMin,
                   double drawMax) const;

    std::vector<plainCurve_t> m_curves;
    int m_width = 1; // pixels, at the last resize event
    int m_height = 1;
    bool m_autoscale = true;
    double m_timeMin = -15.0;
    double m_timeMax = 0.0;
    double m_valueMin = -1.0;
    double m_valueMax = 1.0;
    double m_xScale = 1.0; // pixels per second
    double m_yScale = 1.0; // pixels per value
};
