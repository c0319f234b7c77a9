#include "histogram.h"

#include "numbers_p.h"
#include "qtCompat_p.h"

#include <QLine>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>
#include <QVector>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace zorbin_qt_gui {
namespace {

// More bins than a float can tell apart in a range would only cost memory.
constexpr unsigned maxBins = 1U << 24U;

// The fraction dropped; at most one beyond either edge of the widget.
int column(double x, int width)
{
    return truncated(std::min(std::max(x, -1.0), static_cast<double>(width)));
}

// Whether a line of width 1 between pixels covers just these pixels, as a rectangle does: not so
// with several device pixels to a pixel, where a line lies on their edge.
bool drawsPixelByPixel(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    return painter.paintEngine()->type() == QPaintEngine::Raster &&
           transform.type() <= QTransform::TxTranslate &&
           transform.dx() == std::floor(transform.dx()) &&
           transform.dy() == std::floor(transform.dy());
}

// The pixels of the bars, given from left to right, as rectangles that are as wide as can be; there
// are at most as many as bars. Painting a wide one takes the time of a few narrow ones.
QVector<QRect> areaOf(const QVector<QLine>& bars)
{
    struct step_t
    {
        int left;
        int top;
    };
    QVector<QRect> area;
    std::vector<step_t> rising; // each above the one before, all still open to the right
    int end = 0;                // of the bars so far
    int floor = 0;              // one below the bars' lowest pixel
    const auto closeAbove = [&](int top) {
        int left = end;
        while (!rising.empty() && rising.back().top < top) {
            left = rising.back().left;
            const int from = rising.back().top;
            rising.pop_back();
            const int to = rising.empty() ? top : std::min(top, rising.back().top);
            area.append(QRect(left, from, end - left, to - from));
        }
        return left;
    };
    for (const QLine& bar : bars) {
        if (bar.x1() != end) {
            closeAbove(floor);
            end = bar.x1();
        }
        floor = bar.y1() + 1;
        const int left = closeAbove(bar.y2());
        if (rising.empty() || rising.back().top > bar.y2())
            rising.push_back({left, bar.y2()});
        end = bar.x1() + 1;
    }
    closeAbove(floor);
    return area;
}

void drawBars(QPainter& painter, const QVector<QLine>& bars, const QColor& color)
{
    if (drawsPixelByPixel(painter)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRects(areaOf(bars));
    } else {
        painter.setPen(color);
        painter.drawLines(bars);
    }
}

} // namespace

// Invariant: the bins hold the first numCounted samples; an empty m_binCount is stale and holds
// none.
struct histogramPrivate_t
{
    float m_reqBinSize = 0.0F; // 0: m_reqNumBins decides
    unsigned m_reqNumBins = 100;
    float m_minValue = 0.0F;
    float m_maxValue = 1.0F;
    std::vector<float> m_value;
    float m_highlightMin = std::numeric_limits<float>::max();
    float m_highlightMax = std::numeric_limits<float>::lowest();
    QVector<QLine> m_lineN; // bars, kept for their memory
    QVector<QLine> m_lineH; // bars in the highlight
    float m_binSize = 0.0F;
    unsigned m_numBins = 0;
    unsigned m_maxBinCount = 0;
    std::vector<unsigned> m_binCount;
    std::vector<unsigned> m_tables; // kept for their memory
    std::size_t numCounted = 0;

    float span() const { return m_maxValue - m_minValue; }
    // 0, so that everything is in the first bin, where the range is too narrow to be divided.
    double binsPerValue() const
    {
        return m_binSize == 0.0F ? 0.0 : 1.0 / static_cast<double>(m_binSize);
    }

    void invalidate()
    {
        m_binCount.clear();
        numCounted = 0;
    }

    void setUpBins()
    {
        if (m_reqBinSize != 0.0F) {
            m_binSize = m_reqBinSize;
            m_numBins = truncatedToUnsigned(std::ceil(static_cast<double>(span() / m_reqBinSize)));
        } else {
            m_numBins = m_reqNumBins;
            m_binSize = span() / static_cast<float>(m_numBins);
        }
        if (m_numBins > maxBins) {
            m_numBins = maxBins;
            m_binSize = span() / static_cast<float>(maxBins);
        }
        m_maxBinCount = 0;
        m_binCount.assign(m_numBins, 0);
    }

    // Counts the samples that aren't counted yet. Bins are computed in blocks, which the compiler
    // vectorises, and counted in four tables by turns, so that a run of equal samples doesn't wait
    // for its own sum.
    void count()
    {
        if (m_numBins == 0)
            return;
        constexpr std::size_t blockSize = 1024;
        constexpr unsigned manyBins = 1U << 14U; // four tables of them would miss the cache
        const std::size_t tableSize =
            m_numBins + std::size_t(1); // the last is for what isn't counted
        const std::size_t tables = m_numBins < manyBins ? 4 : 1;
        m_tables.assign(tables * tableSize, 0);
        unsigned* const table0 = m_tables.data();
        unsigned* const table1 = table0 + 1 % tables * tableSize;
        unsigned* const table2 = table0 + 2 % tables * tableSize;
        unsigned* const table3 = table0 + 3 % tables * tableSize;
        std::int32_t bins[blockSize];
        while (numCounted < m_value.size()) {
            const std::size_t n = std::min(blockSize, m_value.size() - numCounted);
            binsOf(m_value.data() + numCounted, bins, n);
            std::size_t i = 0;
            for (; i + 4 <= n; i += 4) {
                ++table0[bins[i]];
                ++table1[bins[i + 1]];
                ++table2[bins[i + 2]];
                ++table3[bins[i + 3]];
            }
            for (; i < n; ++i)
                ++table0[bins[i]];
            numCounted += n;
        }
        for (std::size_t table = 0; table < tables; ++table) {
            for (std::size_t bin = 0; bin < m_numBins; ++bin)
                m_binCount[bin] += m_tables[table * tableSize + bin];
        }
        m_maxBinCount = *std::max_element(m_binCount.begin(), m_binCount.end());
    }

    // The bin of each value; the number of bins for those that don't count.
    void binsOf(const float* values, std::int32_t* bins, std::size_t n) const
    {
        const float min = m_minValue;
        const float max = m_maxValue;
        const double last = m_numBins - 1.0;
        const double none = m_numBins;
        const double inverse = binsPerValue();
        for (std::size_t i = 0; i < n; ++i) {
            const float v = values[i];
            double bin = static_cast<double>(v - min) * inverse;
            bin = bin > 0.0 ? bin : 0.0; // NaN, too
            bin = bin < last ? bin : last;
            bin = (v < min) | (v > max) ? none : bin;
            bins[i] = static_cast<std::int32_t>(bin);
        }
    }

    // The largest count of the bins that a column covers; 0 if there are none.
    unsigned countBetween(double from, double to) const
    {
        const unsigned first = truncatedToUnsigned(from);
        const unsigned end = std::min(truncatedToUnsigned(std::ceil(to)), m_numBins);
        return first < end ? *std::max_element(m_binCount.begin() + first, m_binCount.begin() + end)
                           : 0;
    }
};

histogram_t::histogram_t(QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<histogramPrivate_t>())
{
}

histogram_t::~histogram_t() = default;

void histogram_t::clear()
{
    m_d->m_value.clear();
    m_d->invalidate();
    update();
}

void histogram_t::addData(unsigned int count, const float* values)
{
    m_d->m_value.insert(m_d->m_value.end(), values, values + count);
    update();
}

void histogram_t::range(float min, float max)
{
    if (min >= max)
        qFatal("histogram_t::range:  Range must be positive");
    m_d->m_minValue = min;
    m_d->m_maxValue = max;
    m_d->invalidate();
    update();
}

void histogram_t::binSize(double size)
{
    if (size == 0.0)
        qFatal("histogram_t::binSize:  Bin size must be positive");
    m_d->m_reqBinSize = static_cast<float>(size);
    m_d->m_reqNumBins = 0;
    m_d->invalidate();
    update();
}

void histogram_t::numBins(unsigned int n)
{
    if (n == 0)
        qFatal("histogram_t::numBins:  Must have at least one bin");
    m_d->m_reqNumBins = n;
    m_d->m_reqBinSize = 0.0F;
    m_d->invalidate();
    update();
}

QSize histogram_t::sizeHint() const
{
    return {50, 50};
}

QSize histogram_t::minimumSizeHint() const
{
    return globalStrut().expandedTo(QSize(10, 10));
}

void histogram_t::highlightRange(float min_, float max_)
{
    m_d->m_highlightMin = min_;
    m_d->m_highlightMax = max_;
    update();
}

void histogram_t::clearHighlight()
{
    highlightRange(std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest());
}

void histogram_t::regen()
{
    if (m_d->m_binCount.empty())
        m_d->setUpBins();
    m_d->count();
}

void histogram_t::paintEvent(QPaintEvent* event)
{
    if (m_d->m_value.empty())
        return;
    if (m_d->numCounted < m_d->m_value.size())
        regen();
    const double valuePerPixel = static_cast<double>(m_d->span()) / width();
    const double binsPerValue = m_d->binsPerValue();
    const double pixelsPerCount =
        m_d->m_maxBinCount == 0 ? 0.0 : static_cast<double>(height() - 1) / m_d->m_maxBinCount;
    const auto highlightFrom = static_cast<double>(m_d->m_highlightMin - m_d->m_minValue);
    const auto highlightTo = static_cast<double>(m_d->m_highlightMax - m_d->m_minValue);
    const bool isHighlighted = highlightTo >= highlightFrom;

    m_d->m_lineN.clear();
    m_d->m_lineH.clear();
    const int bottom = height() - 1;
    // With several device pixels to a pixel a bar's line reaches half a pixel to the left, so the
    // damage shows a part of the next column's, too.
    const int right = std::min(event->rect().right() + 1, width() - 1);
    for (int x = event->rect().left(); x <= right; ++x) {
        const double from = x * valuePerPixel;
        const double to = (x + 1) * valuePerPixel;
        const unsigned count = m_d->countBetween(from * binsPerValue, to * binsPerValue);
        if (count == 0)
            continue;
        const bool isInHighlight = isHighlighted && from <= highlightTo && to >= highlightFrom;
        (isInHighlight ? m_d->m_lineH : m_d->m_lineN)
            .append(QLine(x, bottom, x, bottom - truncated(count * pixelsPerCount)));
    }

    QPainter painter(this);
    if (isHighlighted) {
        const int first = column(highlightFrom / valuePerPixel, width());
        const auto end = static_cast<double>(static_cast<float>(highlightTo / valuePerPixel));
        const int last = column(std::ceil(end) - 1.0, width());
        painter.fillRect(QRect(QPoint(first, 0), QPoint(last, bottom)),
                         palette().color(QPalette::Highlight));
    }
    drawBars(painter, m_d->m_lineN, palette().color(QPalette::Text));
    drawBars(painter, m_d->m_lineH, palette().color(QPalette::HighlightedText));
}
} // namespace zorbin_qt_gui
