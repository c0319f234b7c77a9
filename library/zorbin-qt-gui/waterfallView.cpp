#include "waterfallView.h"

#include "qtCompat_p.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <vector>

namespace zorbin_qt_gui {
namespace {

// The nearest int.
int clamped(qint64 index)
{
    constexpr qint64 least = std::numeric_limits<int>::min();
    constexpr qint64 greatest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(index, least), greatest));
}

// Qt takes the alpha of an image without alpha as it finds it, into a translucent window, too.
QRgb opaque(QRgb color)
{
    return color | 0xFF000000U;
}

} // namespace

// The lines of all visible items are rows of the ring, in either orientation: item i is in row
// -i modulo the number of rows. It stays there while it ages, and rows follow each other, with one
// break, as the items do on screen.
//
// Indices are kept in 64 bits, so that sums near the ends of an int don't overflow.
struct baseWaterfallViewPrivate_t
{
    Qt::Orientation orientation = Qt::Vertical;
    double begBound = 0.0;
    double endBound = 1.0;
    QPointer<baseWaterfallModel_t> model;
    qint64 endIndex = 0; // one past the newest item shown
    QPointer<baseWaterfallRenderer_t> renderer;
    std::shared_ptr<std::vector<QRgb>> renderPixel; // the line being rendered
    QImage ring;
    QPoint pointPos = {-1, -1}; // of the pointer; so while it is outside
    int numDataPixels = 0;      // the length of a line
    int maxItems = 0;           // lines that fit
    quint64 generation = 0;     // how often all lines were rendered anew

    bool isVertical() const { return orientation == Qt::Vertical; }

    bool isVisible(qint64 index) const { return index < endIndex && index >= endIndex - maxItems; }

    int row(qint64 index) const
    {
        const qint64 remainder = -index % maxItems;
        return static_cast<int>(remainder < 0 ? remainder + maxItems : remainder);
    }

    // Where a visible item is on screen.
    QRect itemRect(qint64 index) const
    {
        const int back = static_cast<int>(endIndex - 1 - index);
        return isVertical() ? QRect(0, back, numDataPixels, 1)
                            : QRect(maxItems - 1 - back, 0, 1, numDataPixels);
    }

    void paintRows(QPainter& painter, const QRect& rect) const
    {
        int first = row(endIndex - 1 - rect.top());
        int y = rect.top();
        int height = rect.height();
        while (height > 0) {
            const int part = std::min(height, maxItems - first);
            painter.drawImage(QPoint(rect.left(), y), ring,
                              QRect(rect.left(), first, rect.width(), part));
            first = 0;
            y += part;
            height -= part;
        }
    }

    const QRgb* columnAt(int x) const
    {
        const int r = row(endIndex - maxItems + x);
        return reinterpret_cast<const QRgb*>(ring.constScanLine(r));
    }

    void paintColumns(QPainter& painter, const QRect& rect) const
    {
        constexpr int fewColumns = 8;
        if (rect.width() <= fewColumns) {
            for (int x = rect.left(); x <= rect.right(); ++x) {
                const auto* const pixels = reinterpret_cast<const uchar*>(columnAt(x) + rect.top());
                painter.drawImage(x, rect.top(),
                                  QImage(pixels, 1, rect.height(), sizeof(QRgb), ring.format()));
            }
            return;
        }
        // Turned in blocks, so that neither side misses the cache with every pixel, and in bands,
        // so that what is turned is still in the cache when it is drawn.
        constexpr int block = 16;
        constexpr int bandHeight = 32;
        QImage band(rect.width(), std::min(bandHeight, rect.height()), ring.format());
        for (int top = rect.top(); top <= rect.bottom(); top += bandHeight) {
            const int height = std::min(bandHeight, rect.bottom() + 1 - top);
            QRgb* const turned = reinterpret_cast<QRgb*>(band.bits());
            for (int left = 0; left < rect.width(); left += block) {
                const int right = std::min(left + block, rect.width());
                const QRgb* columns[block];
                for (int x = left; x < right; ++x)
                    columns[x - left] = columnAt(rect.left() + x) + top;
                for (int y = 0; y < height; ++y) {
                    QRgb* const out = turned + static_cast<std::ptrdiff_t>(y) * rect.width();
                    for (int x = left; x < right; ++x)
                        out[x] = columns[x - left][y];
                }
            }
            painter.drawImage(QPoint(rect.left(), top), band, QRect(0, 0, rect.width(), height));
        }
    }
};

baseWaterfallView_t::baseWaterfallView_t(QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<baseWaterfallViewPrivate_t>())
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    handleSizeChange();
}

baseWaterfallView_t::~baseWaterfallView_t() = default;

baseWaterfallModel_t* baseWaterfallView_t::model() const
{
    return m_d->model;
}

baseWaterfallRenderer_t* baseWaterfallView_t::renderer() const
{
    return m_d->renderer;
}

void baseWaterfallView_t::_model(baseWaterfallModel_t* m)
{
    if (m_d->model != nullptr)
        disconnect(m_d->model, nullptr, this, nullptr);
    m_d->model = m;
    if (m != nullptr) {
        m_d->endIndex = m->end();
        connect(m, &baseWaterfallModel_t::itemAdded, this, &baseWaterfallView_t::addItem);
        connect(m, &baseWaterfallModel_t::itemDropped, this, &baseWaterfallView_t::dropItem);
    }
    regenAll();
    signalPointedItemChanged();
}

void baseWaterfallView_t::_renderer(baseWaterfallRenderer_t* r)
{
    if (m_d->renderer != nullptr)
        disconnect(m_d->renderer, nullptr, this, nullptr);
    m_d->renderer = r;
    if (r != nullptr)
        connect(r, &baseWaterfallRenderer_t::rendererChanged, this, &baseWaterfallView_t::regenAll);
    regenAll();
}

double baseWaterfallView_t::begBound() const
{
    return m_d->begBound;
}

double baseWaterfallView_t::endBound() const
{
    return m_d->endBound;
}

int baseWaterfallView_t::position() const
{
    return clamped(m_d->endIndex - 1);
}

const Qt::Orientation& baseWaterfallView_t::orientation() const
{
    return m_d->orientation;
}

void baseWaterfallView_t::orientation(Qt::Orientation o)
{
    m_d->orientation = o;
    handleSizeChange();
    signalPointedItemChanged();
}

bool baseWaterfallView_t::mapToItem(const QPoint& p, int& index, double& coord) const
{
    index = std::numeric_limits<int>::min();
    if (!rect().contains(p))
        return false;
    const int alongData = m_d->isVertical() ? p.x() : p.y();
    const int back = m_d->isVertical() ? p.y() : m_d->maxItems - 1 - p.x();
    index = clamped(m_d->endIndex - 1 - back);
    coord = m_d->begBound + (m_d->endBound - m_d->begBound) / m_d->numDataPixels * alongData;
    return true;
}

QSize baseWaterfallView_t::minimumSizeHint() const
{
    return {50, 50};
}

void baseWaterfallView_t::bounds(double beg_, double end_)
{
    m_d->begBound = beg_;
    m_d->endBound = end_;
    regenAll();
    const QPointer<baseWaterfallView_t> self(this); // slots may delete the view
    Q_EMIT boundsChanged(m_d->begBound, m_d->endBound);
    if (self != nullptr)
        signalPointedItemChanged();
}

void baseWaterfallView_t::position(int index_)
{
    const qint64 newest = index_;
    const qint64 distance = newest + 1 - m_d->endIndex;
    if (distance == 0)
        return;
    m_d->endIndex = newest + 1;
    if (std::abs(distance) < m_d->maxItems) {
        const int lines = static_cast<int>(distance);
        if (lines > 0)
            regen(newest, lines);
        else
            regen(newest - m_d->maxItems - lines, -lines);
        scroll(m_d->isVertical() ? 0 : -lines, m_d->isVertical() ? lines : 0);
    } else {
        regenAll();
    }
    const QPointer<baseWaterfallView_t> self(this); // slots may delete the view
    Q_EMIT positionChanged(index_);
    if (self != nullptr)
        signalPointedItemChanged();
}

void baseWaterfallView_t::addItem()
{
    if (m_d->model == nullptr)
        return;
    const qint64 newest = static_cast<qint64>(m_d->model->end()) - 1;
    if (m_d->endIndex == newest)
        position(static_cast<int>(newest));
    else
        changeItem(newest);
}

void baseWaterfallView_t::dropItem()
{
    if (m_d->model != nullptr)
        changeItem(static_cast<qint64>(m_d->model->begin()) - 1);
}

void baseWaterfallView_t::regenAll()
{
    ++m_d->generation;
    regen(m_d->endIndex - 1, m_d->maxItems);
    update();
}

// Renders `count` items, newest first, `last` being the newest.
void baseWaterfallView_t::regen(qint64 last, qint64 count)
{
    if (m_d->ring.isNull())
        return;
    const baseWaterfallRenderer_t::context_t context{
        static_cast<unsigned>(m_d->numDataPixels), m_d->begBound, m_d->endBound,
        m_d->numDataPixels / (m_d->endBound - m_d->begBound)};
    const QRgb background = palette().color(QPalette::Window).rgb();
    // Kept alive here: a renderer may after all make the view exchange its buffers.
    const std::shared_ptr<std::vector<QRgb>> line = m_d->renderPixel;
    const quint64 generation = m_d->generation;
    for (qint64 index = last; index > last - count; --index) {
        if (!m_d->isVisible(index))
            continue;
        std::fill(line->begin(), line->end(), background);
        if (m_d->model != nullptr && m_d->renderer != nullptr && index >= m_d->model->begin() &&
            index < m_d->model->end())
            m_d->renderer->render(&context, line->data(), m_d->model, static_cast<unsigned>(index));
        if (m_d->generation != generation) // the renderer has changed more than the position
            return;
        if (m_d->isVisible(index)) // still, should the renderer have moved the view
            std::transform(line->begin(), line->end(),
                           reinterpret_cast<QRgb*>(m_d->ring.scanLine(m_d->row(index))), opaque);
    }
}

void baseWaterfallView_t::changeItem(qint64 index)
{
    if (!m_d->isVisible(index))
        return;
    regen(index, 1);
    const QRect rect = m_d->itemRect(index);
    update(rect);
    if (rect.contains(m_d->pointPos))
        signalPointedItemChanged();
}

void baseWaterfallView_t::handleSizeChange()
{
    m_d->numDataPixels = m_d->isVertical() ? width() : height();
    m_d->maxItems = m_d->isVertical() ? height() : width();
    m_d->renderPixel =
        std::make_shared<std::vector<QRgb>>(static_cast<std::size_t>(m_d->numDataPixels));
    m_d->ring = QImage(m_d->numDataPixels, m_d->maxItems, QImage::Format_RGB32);
    regenAll();
}

void baseWaterfallView_t::signalPointedItemChanged()
{
    int index = 0;
    double coord = std::numeric_limits<double>::quiet_NaN();
    mapToItem(m_d->pointPos, index, coord);
    Q_EMIT pointedItemChanged(index, coord);
}

void baseWaterfallView_t::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        regenAll(); // lines contain the background's colour
}

void baseWaterfallView_t::mouseMoveEvent(QMouseEvent* event)
{
    m_d->pointPos = pointerPos(event);
    signalPointedItemChanged();
}

void baseWaterfallView_t::enterEvent(enterEvent_t* /*event*/)
{
    setMouseTracking(true);
}

void baseWaterfallView_t::leaveEvent(QEvent* /*event*/)
{
    setMouseTracking(false);
    m_d->pointPos = QPoint(-1, -1);
    signalPointedItemChanged();
}

void baseWaterfallView_t::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (m_d->ring.isNull()) { // larger than an image can be
        painter.fillRect(event->rect(), palette().color(QPalette::Window));
        return;
    }
    const QRect lines = m_d->isVertical() ? QRect(0, 0, m_d->numDataPixels, m_d->maxItems)
                                          : QRect(0, 0, m_d->maxItems, m_d->numDataPixels);
    for (const QRect& damaged : event->region()) {
        const QRect rect = damaged & lines;
        if (rect.isEmpty())
            continue;
        if (m_d->isVertical())
            m_d->paintRows(painter, rect);
        else
            m_d->paintColumns(painter, rect);
    }
}

void baseWaterfallView_t::resizeEvent(QResizeEvent* event)
{
    handleSizeChange();
    QWidget::resizeEvent(event);
    signalPointedItemChanged();
}
} // namespace zorbin_qt_gui
