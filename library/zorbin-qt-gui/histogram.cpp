#include "histogram.h"

#include "numbers_p.h"
#include "qtCompat_p.h"

#include <QLine>
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
    // vectorises, and counted in several tables by turns, so that a run of equal samples doesn't
    // wait for its own sum.
    void count()
    {
        if (m_numBins == 0)
            return;
        constexpr std::size_t blockSize = 1024;
        constexpr std::size_t tables = 4;
        constexpr unsigned manyBins = 1U << 14U; // several tables of them would miss the cache
        const std::size_t stride = m_numBins < manyBins ? m_numBins + 1U : 0;
        const std::size_t tablesUsed = stride == 0 ? 1 : tables;
        m_tables.assign(tablesUsed * (m_numBins + 1U),
                        0); // the bin behind the last is for the rest
        std::int32_t bins[blockSize];
        while (numCounted < m_value.size()) {
            const std::size_t n = std::min(blockSize, m_value.size() - numCounted);
            binsOf(m_value.data() + numCounted, bins, n);
            for (std::size_t i = 0; i < n; ++i)
                ++m_tables[i % tables * stride + static_cast<std::size_t>(bins[i])];
            numCounted += n;
        }
        for (std::size_t bin = 0; bin < m_numBins; ++bin) {
            for (std::size_t table = 0; table < tablesUsed; ++table)
                m_binCount[bin] += m_tables[table * stride + bin];
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
    for (int x = event->rect().left(); x <= event->rect().right(); ++x) {
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
    painter.setPen(palette().color(QPalette::Text));
    painter.drawLines(m_d->m_lineN);
    painter.setPen(palette().color(QPalette::HighlightedText));
    painter.drawLines(m_d->m_lineH);
}
} // namespace zorbin_qt_gui
