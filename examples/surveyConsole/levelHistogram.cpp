#include "levelHistogram.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace survey_console {

levelHistogram_t::levelHistogram_t(QWidget* parent) : histogram_t(parent)
{
    setCursor(Qt::SplitHCursor);
}

void levelHistogram_t::setScale(float min, float max)
{
    m_scaleMin = min;
    m_scaleMax = max;
    range(min, max);
}

void levelHistogram_t::chooseRange(float min, float max)
{
    if (m_min == min && m_max == max)
        return;
    m_min = min;
    m_max = max;
    highlightRange(min, max);
    Q_EMIT rangeChosen(min, max);
}

float levelHistogram_t::levelAt(int x) const
{
    const float share = static_cast<float>(x) / static_cast<float>(std::max(width(), 1));
    return m_scaleMin + (m_scaleMax - m_scaleMin) * std::clamp(share, 0.0F, 1.0F);
}

void levelHistogram_t::mousePressEvent(QMouseEvent* event)
{
    m_dragStart = levelAt(event->pos().x());
}

void levelHistogram_t::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const float level = levelAt(event->pos().x());
    const float min = std::min(m_dragStart, level);
    const float max = std::max(m_dragStart, level);
    if (max - min >= MIN_SPAN)
        chooseRange(min, max);
}

// There is no background of its own.
void levelHistogram_t::paintEvent(QPaintEvent* event)
{
    QPainter(this).fillRect(event->rect(), palette().color(QPalette::Base));
    histogram_t::paintEvent(event);
}

} // namespace survey_console
