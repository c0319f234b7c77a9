#include "ruler.h"

#include "numbers_p.h"
#include "qtCompat_p.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <unordered_map>

namespace zorbin_qt_gui {
namespace {

// What calculateFit() lays at most.
constexpr double maxTicksListed = 1000000.0;

// How many labels and entries a search tries one power of the base after the other: a tenth of a
// second or so, if no two labels are the same. Bases such as 10 and 2 need some hundreds, one just
// above 1 would need millions.
constexpr unsigned maxTriedOneByOne = 50000;

// The first number after `from` for which a condition holds that holds for all later ones, too;
// `end` if there is none before it. Looks at the next numbers first.
template <typename condition_t>
qint64 firstAfter(qint64 from, qint64 end, const condition_t& holds)
{
    qint64 low = from;
    qint64 stride = 1;
    while (stride < end - low && !holds(low + stride)) {
        low += stride;
        stride *= 2;
    }
    qint64 high = std::min(low + stride, end);
    while (high - low > 1) {
        const qint64 middle = low + (high - low) / 2;
        (holds(middle) ? high : low) = middle;
    }
    return high;
}

// The extents of labels, which scrolling and repainting ask for again and again.
class labelSizes_t
{
public:
    struct entry_t
    {
        QRect centered; // laid out around the origin
        QRect topLeft;  // laid out from the origin
    };

    // To be called before labels are measured. Forgets those of another font.
    void useFont(const QFontMetrics& metrics)
    {
        if (!m_metrics || !(*m_metrics == metrics)) {
            m_entries.clear();
            m_metrics = metrics;
        }
    }

    const entry_t& of(const std::string& label)
    {
        const auto found = m_entries.find(label);
        if (found != m_entries.end())
            return found->second;
        if (m_entries.size() >= maxEntries)
            m_entries.clear();
        const QString text = textOf(label);
        const entry_t entry{m_metrics->boundingRect(QRect(), Qt::AlignCenter, text),
                            m_metrics->boundingRect(QRect(), Qt::AlignLeft | Qt::AlignTop, text)};
        return m_entries.emplace(label, entry).first->second;
    }

    static QString textOf(const std::string& label)
    {
        return QString::fromLatin1(label.data(), static_cast<int>(label.size()));
    }

private:
    static constexpr std::size_t maxEntries = 1000;

    std::optional<QFontMetrics> m_metrics;
    std::unordered_map<std::string, entry_t> m_entries;
};

// A position for Qt: what is beyond the greatest widget is outside anyway.
int paintable(unsigned pixels)
{
    return static_cast<int>(std::min(pixels, static_cast<unsigned>(QWIDGETSIZE_MAX)));
}

// A length across the axis for Qt. Two of them and a label still make a window that a display
// server takes.
int paintableLength(unsigned pixels)
{
    return static_cast<int>(std::min(pixels, 15000U));
}

// Which multiples of an interval are ticks.
struct grid_t
{
    double interval;
    double startTick;
    double endTick;
    int direction; // 1 where values increase along the axis, else -1
    double count;  // of ticks, a whole number

    double value(qint64 i) const
    {
        return static_cast<double>(i) * interval * direction + startTick;
    }
    qint64 listedCount() const { return count <= maxTicksListed ? static_cast<qint64>(count) : 0; }
};

} // namespace

// Invariants: scalar is multiplierBase to the power of step. While isSolved, the solution belongs
// to everything that is set, except a tick table or step set after ticks were found.
struct ruler_t::rulerWidgetPriv_t
{
    location_t axisLocation = BOTTOM;
    Qt::Orientation textOrientation = Qt::Horizontal;
    unsigned majorLength = 0; // pixels
    unsigned minorLength = 0;
    unsigned spacing = 5; // between ticks and labels, pixels
    double start = -1.0;
    double end = -1.0;
    bool isInteractive = false;
    bool isInverted = false;
    bool showMinor = false;
    bool showText = false;
    std::vector<tickEntry_t> tickTable = {{1.0, 10}, {2.0, 10}, {2.5, 10}, {5.0, 10}};
    double multiplierBase = 10.0;
    int step = 0;
    double interval = 1.0; // of the major ticks, in units of scalar
    unsigned pixels = 0;   // length of the axis
    bool isMouseSelectActive = false;
    int mouseSelectStartPx = 0;
    double range = 0.0;   // end - start, on a vertical ruler start - end
    double pxScale = 1.0; // pixels per unit, with the sign of range
    double scalar = 1.0;
    fit_t majorFit;
    bool isSolved = false;
    std::vector<tick_t> solution; // major and minor ticks by position
    bool wasResized = false;      // to the size that it was first shown with
    bool highlightRange = false;
    double highlightStart = 0.0;
    double highlightEnd = 0.0;
    bool indicatorOn = false;
    double indicatorValue = 0.0;
    double axisMin = std::numeric_limits<double>::lowest();
    double axisMax = std::numeric_limits<double>::max();
    labelSizes_t labelSizes;
    QPixmap indicatorArrow; // null until it is painted in the present style
    QStyle::StandardPixmap indicatorShape = QStyle::SP_ArrowUp;

    bool isHorizontal() const { return axisLocation == TOP || axisLocation == BOTTOM; }
    bool isVertical() const { return axisLocation == LEFT || axisLocation == RIGHT; }
    bool isTextAlongAxis() const { return isHorizontal() == (textOrientation == Qt::Horizontal); }
    unsigned lengthOf(QSize size) const
    {
        return static_cast<unsigned>(isHorizontal() ? size.width()
                                     : isVertical() ? size.height()
                                                    : 0);
    }
    // The value at pixel 0.
    double base() const { return isHorizontal() ? start : isVertical() ? end : 0.0; }
    int labelSpace() const { return paintableLength(spacing) + paintableLength(majorLength); }

    void updateScale() { pxScale = range == 0.0 ? 1.0 : pixels / range; }

    double clampedToAxis(double value) const { return std::max(std::min(value, axisMax), axisMin); }

    double scalarAt(qint64 n) const { return std::pow(multiplierBase, static_cast<int>(n)); }
    void setStep(qint64 n)
    {
        step = static_cast<int>(n);
        scalar = scalarAt(n);
    }

    void forgetSolution()
    {
        isSolved = false;
        solution.clear();
    }
    // What takes effect with the next search has nothing to wait for while there are no ticks.
    void forgetEmptySolution() { isSolved = isSolved && !solution.empty(); }

    // The multiples of an interval inside the range; two outside where none is inside.
    grid_t grid(double interval_) const
    {
        const bool isRising = end >= start;
        const double atStart = start / interval_;
        const double atEnd = end / interval_;
        const double first = isRising ? std::ceil(atStart) : std::floor(atStart);
        const double last = isRising ? std::floor(atEnd) : std::ceil(atEnd);
        const double startTick = interval_ * first;
        const double endTick = last * interval_;
        const double steps = std::ceil(std::abs(endTick - startTick) / interval_);
        return {interval_, startTick, endTick, isRising ? 1 : -1, countOfTicks(steps)};
    }

    // How many ticks are some steps apart. Steps can be negative, where the interval is, or NaN.
    static double countOfTicks(double steps)
    {
        if (!(steps >= 0.0 && std::isfinite(steps)))
            return 0.0;
        // Deliberate: steps whose low 32 bits are all ones make no ticks.
        constexpr double wrap = 4294967296.0;
        return std::fmod(steps, wrap) == wrap - 1.0 ? 0.0 : steps + 1.0;
    }

    unsigned position(double value) const
    {
        return truncatedToUnsigned(std::abs(value - start) * std::abs(pxScale));
    }

    // Adds ticks without labels to the solution. Where several would be painted on one pixel, it
    // gets the first of them: they can be so close that there are billions.
    void addTicks(tick_t::type_t type, double interval_)
    {
        grid_t ticks = grid(interval_);
        // A double knows no more values in the range than this, so that leaving out every other
        // tick is not seen.
        constexpr double mostTicks = 9007199254740992.0;
        while (ticks.count > mostTicks) {
            ticks.interval *= 2.0;
            ticks.count = std::ceil(ticks.count / 2.0);
        }
        const auto count = static_cast<qint64>(ticks.count);
        for (qint64 i = 0; i < count;) {
            const double value = ticks.value(i);
            const unsigned pos = position(value);
            solution.push_back({type, pos, std::string()});
            // Rounding can put the first ticks before the start, from where positions fall.
            const bool isBelowStart = value < start;
            i = firstAfter(i, count, [&](qint64 other) {
                const double otherValue = ticks.value(other);
                return position(otherValue) != pos || (otherValue < start) != isBelowStart;
            });
        }
    }

    // How far a label reaches along the axis.
    unsigned labelExtent(const std::string& label)
    {
        if (!isHorizontal() && !isVertical())
            return 0;
        const QRect& rect = labelSizes.of(label).centered;
        return static_cast<unsigned>(isTextAlongAxis() ? rect.width() : rect.height());
    }

    // See ruler_t::labelFit(). A label that overlaps rejects the interval whatever follows, so
    // labels are made one by one and no more than needed. Counts them.
    bool labelFit(const ruler_t& ruler, double interval_, unsigned& labelsTried)
    {
        const grid_t ticks = grid(interval_);
        const qint64 count = ticks.listedCount();
        fit_t fit;
        fit.startTick = ticks.startTick;
        fit.endTick = ticks.endTick;
        labelSizes.useFont(ruler.fontMetrics());
        double edge = -2147483647.0; // of the label before
        for (qint64 i = 0; i < count; ++i) {
            ++labelsTried;
            const double value = ticks.value(i);
            const unsigned pos = position(value);
            std::string label = ruler.textFromValue(value);
            const unsigned half = (labelExtent(label) + 1) >> 1U;
            // Deliberate: unsigned, so a label that reaches beyond the start never overlaps.
            if (edge > static_cast<double>(pos - half))
                return false;
            edge = static_cast<double>(pos + half);
            fit.ticks.push_back({tick_t::TICK_MINOR, pos, std::move(label)});
        }
        majorFit = std::move(fit);
        return true;
    }

    bool isDrawn(const tick_t& tick) const
    {
        return tick.type == tick_t::TICK_MAJOR && !tick.label.empty() && showText;
    }

    // The greatest extent of a label across the axis.
    int widestLabel()
    {
        int widest = 0;
        if (!isHorizontal() && !isVertical())
            return widest;
        for (const tick_t& tick : solution) {
            if (isDrawn(tick)) {
                const QRect& rect = labelSizes.of(tick.label).centered;
                widest = std::max(widest, isTextAlongAxis() ? rect.height() : rect.width());
            }
        }
        return widest;
    }

    int coordinate(const QMouseEvent* event) const
    {
        const QPoint pos = pointerPos(event);
        return isHorizontal() ? pos.x() : pos.y();
    }

    void paintHighlightRange(QPainter& painter, ruler_t& ruler) const
    {
        if (!highlightRange)
            return;
        const qint64 p1 = ruler.valueToPixel(highlightStart);
        const qint64 p2 = ruler.valueToPixel(highlightEnd);
        const int first = paintable(static_cast<unsigned>(std::min(p1, p2)));
        // Deliberate: two pixels less when the ends are given in reversed order.
        const int extent = paintable(static_cast<unsigned>(std::abs(p2 - p1 + 1)));
        const QColor color = ruler.palette().color(QPalette::Highlight);
        if (isHorizontal())
            painter.fillRect(first, 0, extent, ruler.height(), color);
        else if (isVertical())
            painter.fillRect(0, first, ruler.width(), extent, color);
    }

    // A style makes its icons anew every time, which takes longer than painting the ruler.
    const QPixmap& arrow(QStyle::StandardPixmap shape, int size)
    {
        if (indicatorArrow.isNull() || shape != indicatorShape) {
            indicatorArrow = QApplication::style()->standardIcon(shape).pixmap(size, size);
            indicatorShape = shape;
        }
        return indicatorArrow;
    }

    void paintIndicator(QPainter& painter, ruler_t& ruler)
    {
        if (!indicatorOn)
            return;
        constexpr int size = 16;
        const int along =
            paintable(static_cast<unsigned>(ruler.valueToPixel(indicatorValue))) - size / 2;
        const auto paint = [&](QStyle::StandardPixmap shape, int x, int y) {
            painter.drawPixmap(x, y, arrow(shape, size));
        };
        switch (axisLocation) {
        case BOTTOM:
            return paint(QStyle::SP_ArrowUp, along, 0);
        case TOP:
            return paint(QStyle::SP_ArrowDown, along, ruler.height() - 1 - size);
        case LEFT:
            return paint(QStyle::SP_ArrowRight, ruler.width() - 1 - size, along);
        case RIGHT:
            return paint(QStyle::SP_ArrowLeft, 0, along);
        }
    }

    // A line from the edge beside the plot, `length` pixels into the ruler.
    void paintAcross(QPainter& painter, QSize size, int along, int length) const
    {
        const int right = size.width() - 1;
        const int bottom = size.height() - 1;
        switch (axisLocation) {
        case BOTTOM:
            return painter.drawLine(along, 0, along, length);
        case TOP:
            return painter.drawLine(along, bottom, along, bottom - length);
        case LEFT:
            return painter.drawLine(right, along, right - length, along);
        case RIGHT:
            return painter.drawLine(0, along, length, along);
        }
    }

    void paintAxis(QPainter& painter, QSize size) const
    {
        if (majorLength == 0)
            return;
        const int right = size.width() - 1;
        const int bottom = size.height() - 1;
        switch (axisLocation) {
        case BOTTOM:
            return painter.drawLine(0, 0, right, 0);
        case TOP:
            return painter.drawLine(0, bottom, right, bottom);
        case LEFT:
            return painter.drawLine(right, 0, right, bottom);
        case RIGHT:
            return painter.drawLine(0, 0, 0, bottom);
        }
    }

    // Deliberate: on a vertical ruler the tick at the start is one row below the widget.
    int alongWidget(QSize size, const tick_t& tick) const
    {
        return isVertical() ? size.height() - paintable(tick.pos) : paintable(tick.pos);
    }

    void paintTick(QPainter& painter, QSize size, const tick_t& tick) const
    {
        const unsigned length = tick.type == tick_t::TICK_MAJOR ? majorLength : minorLength;
        if (length != 0)
            paintAcross(painter, size, alongWidget(size, tick), paintableLength(length));
    }

    // A label that would leave the widget is left out.
    void paintLabel(QPainter& painter, QSize size, const tick_t& tick)
    {
        if (!isDrawn(tick) || (!isHorizontal() && !isVertical()))
            return;
        const QRect rect = labelSizes.of(tick.label).topLeft;
        const int width = rect.width();
        const int height = rect.height();
        const bool isRotated = textOrientation == Qt::Vertical;
        const int along = alongWidget(size, tick);
        const int space = labelSpace();
        int x = 0;
        int y = 0;
        if (isHorizontal()) {
            x = isRotated ? along + height / 2 : along - width / 2;
            const bool isInside = isRotated ? x - height >= 0 && x <= size.width()
                                            : x >= 0 && x + width <= size.width();
            if (!isInside)
                return;
            y = axisLocation == BOTTOM ? space
                                       : size.height() - 1 - space - (isRotated ? width : height);
        } else {
            const int extent = isRotated ? width : height;
            y = along - extent / 2;
            if (y < 0 || y + extent > size.height())
                return;
            if (axisLocation == LEFT)
                x = size.width() - 1 - space - (isRotated ? 0 : width);
            else
                x = space + (isRotated ? height : 0);
        }
        const QString text = labelSizes_t::textOf(tick.label);
        if (!isRotated) {
            painter.drawText(rect.translated(x, y), Qt::AlignCenter, text);
            return;
        }
        painter.save();
        painter.rotate(90.0);
        painter.drawText(rect.translated(y, -x), Qt::AlignCenter, text);
        painter.restore();
    }

    // What a search came to: an entry of the tick table, and whether its labels fit.
    struct choice_t
    {
        const tickEntry_t* entry;
        bool labelsFit;
    };

    // Goes down to the power of the base at which the first entry is less than two pixels wide.
    void descend(double scale)
    {
        const double unscaled = tickTable.front().interval * scale;
        if (!(scalar * unscaled >= 2.0))
            return;
        const qint64 from = step;
        const qint64 least = std::numeric_limits<int>::min();
        setStep(from - firstAfter(0, from - least, [&](qint64 down) {
                    return !(scalarAt(from - down) * unscaled >= 2.0);
                }));
    }

    // Goes up to the first power of the base at which any entry is two pixels wide, or else the
    // scalar is infinite.
    void ascend(double scale)
    {
        const qint64 last = std::numeric_limits<int>::max();
        setStep(firstAfter(qint64(step) - 1, last, [&](qint64 n) {
            const double scalarThere = scalarAt(n);
            const auto isWide = [&](const tickEntry_t& entry) {
                return scale * (scalarThere * entry.interval) >= 2.0;
            };
            return !std::isfinite(scalarThere) ||
                   std::any_of(tickTable.begin(), tickTable.end(), isWide);
        }));
    }

    // Chooses the major interval, by way of step and majorFit. Nothing if there is no scale to
    // speak of, or no entry will do.
    std::optional<choice_t> search(const ruler_t& ruler)
    {
        const double scale = std::abs(pxScale);
        if (pixels == 0 || scale == 0.0 || !std::isfinite(scale) || tickTable.empty())
            return std::nullopt;
        const bool isScaled = multiplierBase > 1.0 && std::isfinite(multiplierBase);
        int stride = 0;     // to the next step
        int longStride = 0; // the same, once the search has taken long: intervals grow by 1 %
        if (isScaled) {
            descend(scale);
            ascend(scale);
            stride = 1;
            longStride = std::max(1, truncated(std::log(1.01) / std::log(multiplierBase)));
        }
        const int firstStep = step; // at which an entry has 2 pixels, if one has
        unsigned tried = 0;
        for (;;) {
            for (std::size_t i = 0; i < tickTable.size(); ++i) {
                ++tried;
                const double value = scalar * tickTable[i].interval;
                if (!(scale * value >= 2.0))
                    continue;
                if (i == 0 && value > std::abs(range)) {
                    // Deliberate: the first entry counts, though it may have less than 2 pixels
                    // at this step.
                    setStep(firstStep);
                    return choice_t{&tickTable.front(), false};
                }
                if (labelFit(ruler, value, tried))
                    return choice_t{&tickTable[i], true};
            }
            if (tried > maxTriedOneByOne)
                stride = longStride;
            if (stride == 0 || !std::isfinite(scalar) ||
                step > std::numeric_limits<int>::max() - stride)
                return std::nullopt;
            setStep(step + stride);
        }
    }
};

ruler_t::ruler_t(QWidget* parent) : QWidget(parent), m_d(std::make_unique<rulerWidgetPriv_t>())
{
    tickLength(8);
    axisLocation(BOTTOM);
    textOrientation(Qt::Horizontal);
    range(0.0, 0.0);
    interactive(false);
    invert(false);
    showMinorTicks(true);
    showText(true);
    QFont smallFont = font();
    smallFont.setPointSize(8);
    setFont(smallFont);
}

ruler_t::~ruler_t() = default;

void ruler_t::axisLocation(const location_t& location)
{
    m_d->axisLocation = location;
    m_d->pixels = static_cast<unsigned>(m_d->isVertical() ? height() : width());
    if (m_d->isVertical())
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    else if (m_d->isHorizontal())
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_d->forgetSolution();
    update();
}

const ruler_t::location_t& ruler_t::axisLocation() const
{
    return m_d->axisLocation;
}

void ruler_t::textOrientation(const Qt::Orientation& orientation)
{
    if (m_d->textOrientation == orientation)
        return;
    m_d->textOrientation = orientation;
    m_d->forgetSolution();
    update();
}

void ruler_t::showMinorTicks(bool show)
{
    if (m_d->showMinor == show)
        return;
    m_d->showMinor = show;
    m_d->forgetSolution();
    update();
}

void ruler_t::showText(bool show)
{
    if (m_d->showText == show)
        return;
    m_d->showText = show;
    m_d->forgetSolution();
    update();
}

void ruler_t::tickLength(unsigned int length)
{
    if (m_d->majorLength == length)
        return;
    m_d->majorLength = length;
    m_d->minorLength = length / 2;
    m_d->forgetSolution();
    update();
}

void ruler_t::spacing(unsigned int px)
{
    if (m_d->spacing == px)
        return;
    m_d->spacing = px;
    m_d->forgetSolution();
    update();
}

void ruler_t::interactive(bool enable)
{
    m_d->isInteractive = enable;
    setAttribute(Qt::WA_MouseTracking, enable);
}

void ruler_t::invert(bool enable)
{
    m_d->isInverted = enable;
    range(m_d->start, m_d->end);
}

void ruler_t::axisMinLimit(double limit)
{
    m_d->axisMin = limit;
}

void ruler_t::axisMaxLimit(double limit)
{
    m_d->axisMax = limit;
}

void ruler_t::tickTable(const std::vector<tickEntry_t>& table, double base)
{
    m_d->tickTable = table;
    m_d->multiplierBase = base;
    step(0);
}

double ruler_t::start() const
{
    return m_d->start;
}

double ruler_t::end() const
{
    return m_d->end;
}

void ruler_t::range(double start_, double end_)
{
    if (m_d->isInverted)
        std::swap(start_, end_);
    if (start_ == m_d->start && end_ == m_d->end)
        return;
    m_d->start = m_d->clampedToAxis(start_);
    m_d->end = m_d->clampedToAxis(end_ + (m_d->start - start_));
    m_d->range = m_d->isVertical() ? m_d->start - m_d->end : m_d->end - m_d->start;
    m_d->updateScale();
    m_d->forgetSolution();
    update();
    if (m_d->isInverted)
        Q_EMIT boundsChanged(m_d->end, m_d->start);
    else
        Q_EMIT boundsChanged(m_d->start, m_d->end);
}

void ruler_t::indicator(double v)
{
    if (m_d->indicatorOn && m_d->indicatorValue == v)
        return;
    m_d->indicatorOn = true;
    m_d->indicatorValue = v;
    update();
}

double ruler_t::indicator() const
{
    return m_d->indicatorValue;
}

void ruler_t::clearIndicator()
{
    if (!m_d->indicatorOn)
        return;
    m_d->indicatorOn = false;
    update();
}

void ruler_t::highlightRange(double a, double b)
{
    if (m_d->highlightRange && m_d->highlightStart == a && m_d->highlightEnd == b)
        return;
    m_d->highlightRange = true;
    m_d->highlightStart = a;
    m_d->highlightEnd = b;
    update();
}

void ruler_t::clearHighlight()
{
    if (!m_d->highlightRange)
        return;
    m_d->highlightRange = false;
    update();
}

double ruler_t::pixelToValue(int px)
{
    return m_d->base() + px / m_d->pxScale;
}

int ruler_t::valueToPixel(double value)
{
    return std::max(truncated((value - m_d->base()) * m_d->pxScale), 0);
}

unsigned int ruler_t::numDecimals() const
{
    const double value = m_d->interval * m_d->scalar;
    const double fraction = value - std::floor(value);
    if (fraction == 0.0)
        return 0;
    const int places = truncated(std::ceil(-std::log10(fraction)));
    return places >= 0 ? static_cast<unsigned>(places) + 1 : 1;
}

std::string ruler_t::textFromValue(double value) const
{
    char buffer[256];
    // The longest numbers are cut off.
    std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(numDecimals()), value);
    std::string text = buffer;
    if (text.find('.') == std::string::npos)
        return text;
    while (text.size() > 1 && text.back() == '0')
        text.pop_back();
    if (text.back() == '.')
        text.pop_back();
    return text;
}

void ruler_t::step(int n)
{
    m_d->setStep(n);
    m_d->forgetEmptySolution();
}

void ruler_t::calculateFit(double interval, fit_t& fit)
{
    const grid_t ticks = m_d->grid(interval);
    const qint64 count = ticks.listedCount();
    fit = fit_t();
    fit.startTick = ticks.startTick;
    fit.endTick = ticks.endTick;
    fit.ticks.reserve(static_cast<std::size_t>(count));
    for (qint64 i = 0; i < count; ++i) {
        const double value = ticks.value(i);
        // The size of a widget that was never shown is a default of Qt's and says nothing.
        const unsigned pos = m_d->wasResized ? m_d->position(value) : 0;
        fit.ticks.push_back({tick_t::TICK_MINOR, pos, textFromValue(value)});
    }
}

bool ruler_t::labelFit(double interval)
{
    // Where calculateFit() lays all ticks at the start, every label reaches beyond it.
    if (!m_d->wasResized)
        return true;
    unsigned labelsTried = 0;
    return m_d->labelFit(*this, interval, labelsTried);
}

void ruler_t::calculateTickPlacement()
{
    m_d->majorFit.ticks.clear();
    m_d->solution.clear();
    m_d->isSolved = true; // also if there is nothing to find
    const auto choice = m_d->search(*this);
    if (!choice)
        return;
    m_d->interval = choice->entry->interval;
    const double major = m_d->interval * m_d->scalar;
    if (choice->labelsFit) {
        // Deliberate: the labels stay as they were tried, with the decimals of the table interval
        // that the search before this one chose, at the power of the base that was being tried.
        m_d->solution = m_d->majorFit.ticks;
        for (tick_t& tick : m_d->solution)
            tick.type = tick_t::TICK_MAJOR;
    } else {
        m_d->addTicks(tick_t::TICK_MAJOR, major);
    }
    if (m_d->showMinor) // nobody would see their labels
        m_d->addTicks(tick_t::TICK_MINOR, major / choice->entry->numMinor);
    std::sort(m_d->solution.begin(), m_d->solution.end());
}

QSize ruler_t::minimumSizeHint() const
{
    const int across = m_d->labelSpace() + 1;
    return m_d->isHorizontal() ? QSize(0, across) : QSize(across, 0);
}

void ruler_t::mousePressEvent(QMouseEvent* event)
{
    if (!m_d->isInteractive)
        return;
    m_d->isMouseSelectActive = true;
    m_d->mouseSelectStartPx = m_d->coordinate(event);
}

void ruler_t::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_d->isInteractive || !m_d->isMouseSelectActive)
        return;
    highlightRange(pixelToValue(m_d->mouseSelectStartPx), pixelToValue(m_d->coordinate(event)));
}

void ruler_t::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_d->isInteractive || !m_d->isMouseSelectActive)
        return;
    const int from = m_d->mouseSelectStartPx;
    const int to = m_d->coordinate(event);
    double low = 0.0;
    double high = 0.0;
    if (std::abs(from - to) < 4) {
        const double half = (m_d->end - m_d->start) * 0.5;
        const double value = pixelToValue(from);
        low = value - half;
        high = value + half;
    } else if (m_d->isHorizontal()) {
        low = pixelToValue(std::min(from, to));
        high = pixelToValue(std::max(from, to));
    } else if (m_d->isVertical()) {
        low = pixelToValue(std::max(from, to));
        high = pixelToValue(std::min(from, to));
    }
    const QPointer<ruler_t> self(this); // slots may delete the ruler
    if (m_d->isInverted)
        range(high, low);
    else
        range(low, high);
    if (self == nullptr)
        return;
    clearHighlight();
    m_d->isMouseSelectActive = false;
}

void ruler_t::mouseDoubleClickEvent(QMouseEvent* /*event*/)
{
    if (!m_d->isInteractive)
        return;
    const double center = (m_d->end + m_d->start) * 0.5;
    const double width = m_d->end - m_d->start;
    if (m_d->isInverted)
        range(center + width, center - width);
    else
        range(center - width, center + width);
}

void ruler_t::resizeEvent(QResizeEvent* event)
{
    m_d->wasResized = true;
    const unsigned pixels = m_d->lengthOf(event->size());
    if (pixels == m_d->pixels)
        return;
    m_d->pixels = pixels;
    m_d->updateScale();
    m_d->forgetSolution();
    update();
}

void ruler_t::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        m_d->forgetSolution();
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        m_d->indicatorArrow = QPixmap();
}

void ruler_t::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    if (!m_d->isSolved)
        calculateTickPlacement();
    m_d->labelSizes.useFont(painter.fontMetrics());

    // The ruler grows to its widest label, always while painting: only then the labels are known.
    const int across = m_d->widestLabel() + m_d->labelSpace() + 1;
    if (m_d->isVertical())
        setMinimumSize(across, 0);
    else if (m_d->isHorizontal())
        setMinimumSize(0, across);

    m_d->paintHighlightRange(painter, *this);
    m_d->paintIndicator(painter, *this);
    m_d->paintAxis(painter, size());
    for (const tick_t& tick : m_d->solution) {
        m_d->paintTick(painter, size(), tick);
        m_d->paintLabel(painter, size(), tick);
    }
}
} // namespace zorbin_qt_gui
