#include "simpleCurveRenderer.h"

#include "curveIndex_p.h"
#include "lineFootprint_p.h"
#include "numbers_p.h"
#include "simpleStripChartWidget.h"

#include <QImage>
#include <QLine>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <vector>

// What is to be seen is one line per pair of points. What follows draws the same pixels, on a
// screen without scaling with work that depends on the pixels rather than on the points:
// - Lines that stay in one pixel column are upright bars of width 2; as many as there are in a row,
//   in one opaque colour, they cover one upright rectangle, from the least to the greatest value.
//   Extremes come from the curve's index, and the column boundaries from a search in it.
// - A line from one column to the next is learnt from QPainter once per step, as rectangles, and
//   left out where the two columns' rectangles cover it.
// - Everything else (translucent colours, where each line counts; gaps; infinities; lines that
//   leave the clip, which QPainter cuts and rounds anew; painters that scale, rotate or don't
//   draw pixels) is drawn line by line, in order.

namespace zorbin_qt_gui {
namespace {

using point_t = stripChartCurve_t::point_t;
using context_t = simpleCurveRenderer_t::context_t;

constexpr int penWidth = 2; // pixels; the bars and footprints are for this width only

// Rectangles that end this far out, in pixels, can't overflow and end outside every chart.
constexpr int farOut = 1 << 24;

int xOf(const context_t& context, const point_t& point)
{
    return truncated((point.time - context.minTime) * context.xScale);
}

int yOf(const context_t& context, double value)
{
    return truncated((context.maxValue - value) * context.yScale);
}

// Consecutive points in one pixel column.
struct column_t
{
    int x = 0;
    quint64 begin = 0;  // number of the first point
    quint64 count = 0;  // points
    double first = 0.0; // values
    double last = 0.0;
    double min = 0.0; // only of bars
    double max = 0.0;

    bool isBar() const { return count > 1; }
};

// Lines that are drawn in the same way: those ending at the points [first, last). With columns
// [firstColumn, lastColumn) of the points they join, or without any, to be drawn one by one.
struct piece_t
{
    quint64 first = 0; // numbers of points, as the curve's index counts them
    quint64 last = 0;
    size_t firstColumn = 0;
    size_t lastColumn = 0;

    bool hasColumns() const { return firstColumn != lastColumn; }
};

// How much of the drawing may be replaced by rectangles.
struct shortcuts_t
{
    bool bars = false;       // upright bars
    int scale = 1;           // device pixels per pixel of the chart
    bool footprints = false; // learnt lines, and leaving out covered ones
    QRect clip;              // in the painter's coordinates, for footprints
};

// Other formats may round the colour of a rectangle otherwise than that of a line.
bool isScreenFormat(const QPaintDevice* device)
{
    const auto* const image = dynamic_cast<const QImage*>(device); // of a window or pixmap, too
    const QImage::Format format = image == nullptr ? QImage::Format_Invalid : image->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied;
}

shortcuts_t shortcutsFor(const context_t& context)
{
    shortcuts_t result;
    const QPainter& painter = *context.painter;
    const QPaintEngine* const engine = painter.paintEngine();
    const bool isPlain = engine->type() == QPaintEngine::Raster &&
                         isScreenFormat(engine->paintDevice()) && painter.opacity() == 1.0 &&
                         painter.compositionMode() == QPainter::CompositionMode_SourceOver &&
                         !painter.testRenderHint(QPainter::Antialiasing);
    // With time running to the right, points are in the order of their columns.
    const bool isForward = context.xScale >= 0.0 && std::isfinite(context.xScale) &&
                           std::isfinite(context.minTime) && std::isfinite(context.maxValue) &&
                           std::isfinite(context.yScale);
    if (!isPlain || !isForward)
        return result;

    constexpr qreal largestScale = 16.0; // keeps device coordinates in the range of an int
    const auto isWhole = [](qreal x) { return x == std::floor(x) && std::abs(x) < farOut; };
    const QTransform& transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxScale || !isWhole(transform.dx()) ||
        !isWhole(transform.dy()) || !isWhole(transform.m11()) || transform.m11() < 1.0 ||
        transform.m11() > largestScale || transform.m22() != transform.m11())
        return result;
    result.bars = true;
    result.scale = static_cast<int>(transform.m11());

    if (result.scale == 1) {
        const QPaintDevice* const device = engine->paintDevice();
        const QPoint origin(static_cast<int>(transform.dx()), static_cast<int>(transform.dy()));
        QRegion clip(0, 0, device->width(), device->height());
        if (!engine->systemClip().isEmpty())
            clip &= engine->systemClip();
        if (painter.hasClipping())
            clip &= painter.clipRegion().translated(origin);
        // QPainter cuts lines at the rectangle around what is left. A rectangle around each region
        // could reach further, around parts that lie off the device.
        result.footprints = true;
        result.clip = clip.boundingRect().translated(-origin);
    }
    return result;
}

} // namespace

struct simpleCurveRendererPrivate_t
{
    // Pieces and columns of one paint, and what they were made for. They don't depend on the value
    // axis.
    struct layout_t
    {
        quint64 generation = 0;
        quint64 begin = 0; // numbers of points, as the curve's index counts them
        quint64 end = 0;
        double minTime = 0.0;
        double xScale = 0.0;
        std::vector<piece_t> pieces;
        std::vector<column_t> columns;
    };

    explicit simpleCurveRendererPrivate_t(const stripChartCurveData_t* data) : curve(*data) {}

    void drawLineByLine(const context_t& context, size_t batchSize, size_t first, size_t last);
    void drawColumns(const context_t& context, const shortcuts_t& shortcuts, const piece_t& piece,
                     const std::vector<column_t>& columns);
    const layout_t& layoutFor(const context_t& context, size_t begin, size_t end);
    void layOut(const context_t& context, layout_t* layout);
    void addColumns(const context_t& context, size_t first, size_t last,
                    std::vector<column_t>* columns);
    void addDots(const context_t& context, int scale, const column_t& column);
    void flushLines(QPainter* painter);

    const stripChartCurveData_t& curve;
    QPen pen;                 // as it is on the painter
    layout_t wideLayout;      // kept for repaints in which only the value axis moved
    layout_t narrowLayout;    // scratch
    std::vector<QLine> lines; // scratch
    std::vector<QRect> rects; // scratch
    std::vector<int> dotRows; // scratch
};

void simpleCurveRendererPrivate_t::flushLines(QPainter* painter)
{
    if (!lines.empty())
        painter->drawLines(lines.data(), static_cast<int>(lines.size()));
    lines.clear();
}

// Draws the lines that end at the points [first, last), up to batchSize of them at a time.
void simpleCurveRendererPrivate_t::drawLineByLine(const context_t& context, size_t batchSize,
                                                  size_t first, size_t last)
{
    const auto& points = curve.points;
    for (size_t i = first; i < last; ++i) {
        const point_t& previous = points[i - 1];
        const point_t& next = points[i];
        QColor color = next.color;
        if (next.time - previous.time > curve.threshold)
            color.setAlpha(color.alpha() / 4);
        if (color != pen.color()) {
            flushLines(context.painter);
            pen.setColor(color);
            context.painter->setPen(pen);
        }
        if (std::isnan(previous.value) || std::isnan(next.value))
            continue;
        lines.emplace_back(xOf(context, previous), yOf(context, previous.value), xOf(context, next),
                           yOf(context, next.value));
        if (lines.size() == batchSize)
            flushLines(context.painter);
    }
    flushLines(context.painter);
}

// Deliberate: where QPainter enlarges by a whole factor, as on a screen of high density, it makes a
// line between two points on the same pixel wider than the pen by that factor, wider than a bar.
void simpleCurveRendererPrivate_t::addDots(const context_t& context, int scale,
                                           const column_t& column)
{
    const size_t begin = column.begin - curve.index->dropped();
    dotRows.clear();
    int previous = yOf(context, column.first);
    for (size_t i = begin + 1; i < begin + column.count; ++i) {
        const int row = yOf(context, curve.points[i].value);
        if (row == previous && row > -farOut && row < farOut)
            dotRows.push_back(row);
        previous = row;
    }
    std::sort(dotRows.begin(), dotRows.end());
    dotRows.erase(std::unique(dotRows.begin(), dotRows.end()), dotRows.end());
    if (column.x > -farOut && column.x < farOut) {
        for (const int row : dotRows)
            rects.emplace_back(column.x - scale, row - 1, 2 * scale, penWidth);
    }
}

// Draws a piece of one opaque colour.
void simpleCurveRendererPrivate_t::drawColumns(const context_t& context,
                                               const shortcuts_t& shortcuts, const piece_t& piece,
                                               const std::vector<column_t>& columns)
{
    // Rows [top, bottom] of the points, not of the pixels.
    struct rows_t
    {
        int top = 0;
        int bottom = -1;
    };
    const QColor color = curve.points[piece.first - curve.index->dropped()].color;

    rects.clear();
    rows_t previousRows;
    for (size_t i = piece.firstColumn; i < piece.lastColumn; ++i) {
        const column_t& column = columns[i];
        rows_t rows;
        if (column.isBar()) {
            rows.top = yOf(context, column.max);
            rows.bottom = yOf(context, column.min);
            if (rows.top > rows.bottom)
                std::swap(rows.top, rows.bottom); // the value axis points down
            if (rows.top < farOut && rows.bottom > -farOut && column.x > -farOut &&
                column.x < farOut)
                rects.emplace_back(QPoint(column.x - 1, std::max(rows.top, -farOut) - 1),
                                   QPoint(column.x, std::min(rows.bottom, farOut)));
            if (shortcuts.scale > 1)
                addDots(context, shortcuts.scale, column);
        }
        if (i > piece.firstColumn) {
            const int x1 = columns[i - 1].x;
            const int y1 = yOf(context, columns[i - 1].last);
            const int x2 = column.x;
            const int y2 = yOf(context, column.first);
            const int upper = std::min(y1, y2);
            const int lower = std::max(y1, y2);
            const bool isCovered = x2 == x1 + 1 && upper >= std::max(previousRows.top, rows.top) &&
                                   lower <= std::min(previousRows.bottom, rows.bottom);
            if (!shortcuts.footprints) {
                lines.emplace_back(x1, y1, x2, y2);
            } else if (!isCovered) {
                const auto isNear = [](int c) { return c > -farOut && c < farOut; };
                const bool isSmall = isNear(x1) && isNear(x2) && isNear(y1) && isNear(y2);
                const QRect bounds = isSmall ? lineFootprintBounds(x1, y1, x2, y2) : QRect();
                const std::vector<QRect>* footprint = nullptr;
                if (isSmall && shortcuts.clip.contains(bounds)) {
                    if (y1 == y2)
                        rects.push_back(bounds);
                    else if ((footprint = lineFootprint(x2 - x1, y2 - y1)) != nullptr)
                        for (const QRect& rect : *footprint)
                            rects.push_back(rect.translated(x1, y1));
                    else
                        lines.emplace_back(x1, y1, x2, y2);
                } else if (!isSmall || shortcuts.clip.intersects(bounds)) {
                    lines.emplace_back(x1, y1, x2, y2);
                }
            }
        }
        previousRows = rows;
    }

    if (!lines.empty()) {
        if (color != pen.color()) {
            pen.setColor(color);
            context.painter->setPen(pen);
        }
        flushLines(context.painter);
    }
    if (!rects.empty()) {
        const QBrush brush = context.painter->brush();
        context.painter->setPen(Qt::NoPen);
        context.painter->setBrush(color);
        context.painter->drawRects(rects.data(), static_cast<int>(rects.size()));
        context.painter->setBrush(brush);
        context.painter->setPen(pen);
    }
}

// Appends the columns of the points [first, last), all with finite values.
void simpleCurveRendererPrivate_t::addColumns(const context_t& context, size_t first, size_t last,
                                              std::vector<column_t>* columns)
{
    const auto& points = curve.points;
    size_t guess = 1; // points in the column, from the one before
    for (size_t begin = first; begin < last;) {
        const int x = xOf(context, points[begin]);
        // The column ends somewhere in [low, high]: search outwards from the guess.
        size_t low = begin + 1;
        size_t high = last;
        size_t probe = begin + guess;
        for (size_t step = 1; low < high; step *= 2) {
            if (probe < low || probe >= high)
                probe = low + (high - low) / 2;
            if (xOf(context, points[probe]) > x) {
                high = probe;
                probe = probe > step ? probe - step : 0;
            } else {
                low = probe + 1;
                probe = low + step;
            }
        }

        column_t column;
        column.x = x;
        column.begin = curve.index->dropped() + begin;
        column.count = low - begin;
        column.first = points[begin].value;
        column.last = points[low - 1].value;
        if (column.isBar()) {
            const extremes_t extremes = curve.index->extremes(points, begin, low);
            column.min = extremes.min;
            column.max = extremes.max;
        }
        columns->push_back(column);
        guess = low - begin;
        begin = low;
    }
}

// Fills in pieces and columns according to the other fields.
void simpleCurveRendererPrivate_t::layOut(const context_t& context, layout_t* layout)
{
    constexpr size_t worthMerging = 2; // lines
    const auto& points = curve.points;
    const quint64 dropped = curve.index->dropped();
    const size_t end = layout->end - dropped + 1;
    layout->pieces.clear();
    layout->columns.clear();
    for (size_t first = layout->begin - dropped + 1; first < end;) {
        const size_t last = curve.index->nextBreak(first, end);
        piece_t piece{dropped + first, dropped + last, 0, 0};
        if (last - first >= worthMerging && points[first].color.rgba64().isOpaque()) {
            piece.firstColumn = layout->columns.size();
            addColumns(context, first - 1, last, &layout->columns);
            piece.lastColumn = layout->columns.size();
        }
        if (!piece.hasColumns() && !layout->pieces.empty() && !layout->pieces.back().hasColumns())
            layout->pieces.back().last = piece.last;
        else
            layout->pieces.push_back(piece);
        first = last;
    }
}

// The layout of the lines between the points begin and end, both included.
const simpleCurveRendererPrivate_t::layout_t&
simpleCurveRendererPrivate_t::layoutFor(const context_t& context, size_t begin, size_t end)
{
    curveIndex_t& index = *curve.index;
    index.followBreaks(curve.points, curve.threshold);
    const quint64 beginNumber = index.dropped() + begin;
    const quint64 endNumber = index.dropped() + end;
    // Strips as scrolling exposes them must not push the whole chart's layout out.
    const double drawnWidth = (context.drawMaxTime - context.drawMinTime) * context.xScale;
    const bool isWide = drawnWidth * 4 > context.width;
    if (isWide && wideLayout.generation == index.generation() && wideLayout.begin == beginNumber &&
        wideLayout.end == endNumber && wideLayout.minTime == context.minTime &&
        wideLayout.xScale == context.xScale)
        return wideLayout;

    layout_t& layout = isWide ? wideLayout : narrowLayout;
    layout.generation = index.generation();
    layout.begin = beginNumber;
    layout.end = endNumber;
    layout.minTime = context.minTime;
    layout.xScale = context.xScale;
    layOut(context, &layout);
    return layout;
}

simpleCurveRenderer_t::simpleCurveRenderer_t(stripChartCurveData_t* data)
    : stripChartCurveRenderer_t(data), m_p(std::make_unique<simpleCurveRendererPrivate_t>(data))
{
}

simpleCurveRenderer_t::~simpleCurveRenderer_t()
{
    // Before anybody hears of the curve's end: what they do to the chart must not find it there.
    if (m_chart) {
        m_chart->removeCurve(m_d->parent);
        m_chart->update();
    }
}

void simpleCurveRenderer_t::draw(const context_t& context)
{
    const auto& points = m_d->points;
    if (points.empty())
        return;
    m_p->pen = QPen(m_d->color, penWidth);
    context.painter->setPen(m_p->pen);

    // Lines from begin to end; both neighbours of what is painted take part.
    size_t begin = firstNotBefore(points, context.drawMinTime);
    if (begin > 0)
        --begin;
    const size_t end = std::min(firstAfter(points, context.drawMaxTime), points.size() - 1);
    if (begin >= end)
        return;

    const shortcuts_t shortcuts = shortcutsFor(context);
    if (!shortcuts.bars) {
        // There the painter may draw a batch as one shape, or leave out joints.
        m_p->drawLineByLine(context, 1, begin + 1, end + 1);
        return;
    }
    const auto& layout = m_p->layoutFor(context, begin, end);
    constexpr size_t batchSize = 1024;
    const quint64 dropped = m_d->index->dropped();
    for (const piece_t& piece : layout.pieces) {
        if (piece.hasColumns())
            m_p->drawColumns(context, shortcuts, piece, layout.columns);
        else
            m_p->drawLineByLine(context, batchSize, piece.first - dropped, piece.last - dropped);
    }
}

void simpleCurveRenderer_t::chart(QWidget* widget)
{
    auto* const chart = qobject_cast<simpleStripChartWidget_t*>(widget);
    if (chart == nullptr || chart == m_chart)
        return;
    if (m_chart) {
        m_chart->removeCurve(m_d->parent);
        m_chart->update();
    }
    m_chart = chart;
}

unsigned simpleCurveRenderer_t::segmentSize() const
{
    return 1000;
}

void simpleCurveRenderer_t::segmentCreated(unsigned, unsigned, unsigned)
{
}

void simpleCurveRenderer_t::segmentRemoved(unsigned, unsigned, unsigned)
{
}

void simpleCurveRenderer_t::updateIncomingList(unsigned, unsigned)
{
}

void simpleCurveRenderer_t::updateOutgoingList(unsigned, unsigned)
{
}

void simpleCurveRenderer_t::pointsAdded(unsigned, double fromTime, double toTime)
{
    if (m_chart)
        m_chart->updateChart(fromTime, toTime);
}

void simpleCurveRenderer_t::pointsRemoved(unsigned, double fromTime, double toTime)
{
    if (m_chart)
        m_chart->updateChart(fromTime, toTime);
}

} // namespace zorbin_qt_gui
