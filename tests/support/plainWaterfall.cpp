#include "plainWaterfall.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

using namespace zorbin_qt_gui;

void countingModel_t::add(int count)
{
    for (int i = 0; i < count; ++i)
        _addItem();
}

void countingModel_t::drop(int count)
{
    for (int i = 0; i < count; ++i)
        _dropItem();
}

QRgb patternRenderer_t::pixel(const context_t& context, int index, unsigned k, unsigned seed)
{
    const double coord = context.beg + k / context.scale;
    const auto place = std::isfinite(coord) && std::abs(coord) < 1e6
                           ? static_cast<unsigned>(static_cast<int>(coord * 10.0))
                           : 77U;
    const unsigned mixed =
        (static_cast<unsigned>(index) * 2654435761U) ^ (k * 40503U) ^ (place * 97U) ^ seed;
    return 0xFF000000U | mixed;
}

void patternRenderer_t::render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                               unsigned int index)
{
    background = context->numPixels > 0 ? pixels[0] : 0;
    lastModel = model;
    for (unsigned k = 0; k + pixelsLeftAlone < context->numPixels; ++k)
        pixels[k] = pixel(*context, static_cast<int>(index), k, seed);
    m_calls.append(QStringLiteral("%1: %2 pixels from %3 to %4, scale %5")
                       .arg(static_cast<int>(index))
                       .arg(context->numPixels)
                       .arg(context->beg)
                       .arg(context->end)
                       .arg(context->scale));
    m_indices.append(static_cast<int>(index));
}

QStringList patternRenderer_t::takeCalls()
{
    m_indices.clear();
    return std::exchange(m_calls, QStringList());
}

QList<int> patternRenderer_t::takeIndices()
{
    m_calls.clear();
    return std::exchange(m_indices, QList<int>());
}

plainWaterfall_t::plainWaterfall_t()
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    handleSizeChange();
}

void plainWaterfall_t::setModel(baseWaterfallModel_t* model)
{
    if (m_model != nullptr)
        disconnect(m_model, nullptr, this, nullptr);
    m_model = model;
    if (model != nullptr) {
        m_endIndex = model->end();
        connect(model, &baseWaterfallModel_t::itemAdded, this, [this] { addItem(); });
        connect(model, &baseWaterfallModel_t::itemDropped, this, [this] { dropItem(); });
    }
    regenAll();
    signalPointedItemChanged();
}

void plainWaterfall_t::setRenderer(baseWaterfallRenderer_t* renderer)
{
    if (m_renderer != nullptr)
        disconnect(m_renderer, nullptr, this, nullptr);
    m_renderer = renderer;
    if (renderer != nullptr)
        connect(renderer, &baseWaterfallRenderer_t::rendererChanged, this, [this] { regenAll(); });
    regenAll();
}

void plainWaterfall_t::setOrientation(Qt::Orientation orientation)
{
    m_orientation = orientation;
    handleSizeChange();
    signalPointedItemChanged();
}

void plainWaterfall_t::setBounds(double beg, double end)
{
    m_begBound = beg;
    m_endBound = end;
    regenAll();
    m_signals.append(boundsSetSignal(beg, end));
    signalPointedItemChanged();
}

void plainWaterfall_t::setPosition(int index)
{
    const int distance = index + 1 - m_endIndex;
    if (distance == 0)
        return;
    m_endIndex = index + 1;
    if (std::abs(distance) < m_maxItems) {
        m_drawPosition += distance;
        if (m_drawPosition >= m_maxItems)
            m_drawPosition -= m_maxItems;
        if (m_drawPosition < 0)
            m_drawPosition += m_maxItems;
        if (distance > 0)
            regen(index, static_cast<unsigned>(distance));
        else
            regen(index - m_maxItems - distance, static_cast<unsigned>(-distance));
        scroll(distance * m_drawShift.x(), distance * m_drawShift.y());
    } else {
        regenAll();
    }
    m_signals.append(positionSignal(index));
    signalPointedItemChanged();
}

bool plainWaterfall_t::mapToItem(const QPoint& p, int& index, double& coord) const
{
    index = std::numeric_limits<int>::min();
    if (!rect().contains(p))
        return false;
    const int u = isVertical() ? p.x() : p.y();
    const int v = isVertical() ? p.y() : m_drawOrigin.x() - (p.x() + m_drawOffset.x());
    index = m_endIndex - 1 - v;
    coord = m_begBound + (m_endBound - m_begBound) / m_numDataPixels * u;
    return true;
}

QStringList plainWaterfall_t::takeSignals()
{
    return std::exchange(m_signals, QStringList());
}

void plainWaterfall_t::mouseMoveEvent(QMouseEvent* event)
{
    m_pointPos = event->pos();
    signalPointedItemChanged();
}

void plainWaterfall_t::leaveEvent(QEvent* /*event*/)
{
    m_pointPos = QPoint(-1, -1);
    signalPointedItemChanged();
}

void plainWaterfall_t::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QRect ring = m_drawPixmap.rect();
    for (const QRect& damaged : event->region()) {
        QRect a = damaged.translated(m_drawOffset).translated(-m_drawPosition * m_drawShift);
        QRect b = a.translated(m_maxItems * m_drawShift);
        a &= ring;
        b &= ring;
        if (isVertical()) {
            if (!b.isEmpty())
                painter.drawPixmap(damaged.topLeft(), m_drawPixmap, b);
            if (!a.isEmpty())
                painter.drawPixmap(damaged.left(), damaged.top() + b.height(), m_drawPixmap, a.x(),
                                   a.y(), a.width(), a.height());
        } else {
            if (!a.isEmpty())
                painter.drawPixmap(damaged.topLeft(), m_drawPixmap, a);
            if (!b.isEmpty())
                painter.drawPixmap(damaged.left() + a.width(), damaged.top(), m_drawPixmap, b.x(),
                                   b.y(), b.width(), b.height());
        }
    }
}

void plainWaterfall_t::resizeEvent(QResizeEvent* event)
{
    handleSizeChange();
    QWidget::resizeEvent(event);
    signalPointedItemChanged();
}

void plainWaterfall_t::handleSizeChange()
{
    const int itemPixels = isVertical() ? height() : width();
    m_numDataPixels = static_cast<unsigned>(isVertical() ? width() : height());
    m_itemSize = isVertical() ? QSize(width(), 1) : QSize(1, height());
    m_renderPixel = std::make_unique<QRgb[]>(m_numDataPixels);
    m_renderImage = QImage(reinterpret_cast<uchar*>(m_renderPixel.get()), m_itemSize.width(),
                           m_itemSize.height(), m_itemSize.width() * 4, QImage::Format_RGB32);
    m_maxItems = itemPixels;
    m_drawPosition = 0;
    m_drawOrigin = isVertical() ? QPoint(0, 0) : QPoint(m_maxItems - 1, 0);
    m_drawShift = isVertical() ? QPoint(0, 1) : QPoint(-1, 0);
    m_drawOffset = isVertical() ? QPoint(0, 0) : QPoint(m_maxItems - width(), 0);
    m_drawPixmap = QPixmap(size());
    regenAll();
}

QRect plainWaterfall_t::slotRect(int slot) const
{
    return {m_drawOrigin + slot * m_drawShift, m_itemSize};
}

void plainWaterfall_t::regen(int last, unsigned count)
{
    if (m_drawPixmap.isNull())
        return;
    const baseWaterfallRenderer_t::context_t context{m_numDataPixels, m_begBound, m_endBound,
                                                     m_numDataPixels / (m_endBound - m_begBound)};
    const QRgb background = palette().color(QPalette::Window).rgb();
    const bool isComplete = m_model != nullptr && m_renderer != nullptr;
    const int begin = isComplete ? m_model->begin() : 0;
    const int end = isComplete ? m_model->end() : 0;
    QPainter painter(&m_drawPixmap);
    for (int i = last; count > 0; --i, --count) {
        const int back = m_endIndex - 1 - i;
        if (back < 0 || back >= m_maxItems)
            continue;
        std::fill_n(m_renderPixel.get(), m_numDataPixels, background);
        if (i >= begin && i < end)
            m_renderer->render(&context, m_renderPixel.get(), m_model, static_cast<unsigned>(i));
        QRect target = slotRect(back - m_drawPosition);
        if (!m_drawPixmap.rect().contains(target))
            target.translate(m_maxItems * m_drawShift);
        painter.drawImage(target, m_renderImage);
    }
}

void plainWaterfall_t::regenAll()
{
    m_drawPosition = 0;
    regen(m_endIndex - 1, static_cast<unsigned>(m_maxItems));
    update();
}

void plainWaterfall_t::changeItem(int index)
{
    const int back = m_endIndex - 1 - index;
    if (back < 0 || back >= m_maxItems)
        return;
    regen(index, 1);
    const QRect rect = slotRect(back).translated(-m_drawOffset);
    update(rect);
    if (rect.contains(m_pointPos))
        signalPointedItemChanged();
}

void plainWaterfall_t::addItem()
{
    if (m_endIndex + 1 == m_model->end())
        setPosition(m_model->end() - 1);
    else
        changeItem(m_model->end() - 1);
}

void plainWaterfall_t::dropItem()
{
    changeItem(m_model->begin() - 1);
}

void plainWaterfall_t::signalPointedItemChanged()
{
    int index = 0;
    double coord = std::numeric_limits<double>::quiet_NaN();
    mapToItem(m_pointPos, index, coord);
    m_signals.append(pointedSignal(index, coord));
}

QString positionSignal(int index)
{
    return QStringLiteral("positionChanged(%1)").arg(index);
}

QString boundsSetSignal(double beg, double end)
{
    return QStringLiteral("boundsChanged(%1, %2)").arg(beg).arg(end);
}

QString pointedSignal(int index, double coord)
{
    return QStringLiteral("pointedItemChanged(%1, %2)").arg(index).arg(coord);
}
