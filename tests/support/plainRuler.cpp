#include "plainRuler.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <utility>

static QString textOf(const std::string& label)
{
    return QString::fromLatin1(label.c_str(), static_cast<int>(label.size()));
}

// What is farther out than this isn't seen.
static int visible(unsigned pixels)
{
    return static_cast<int>(std::min(pixels, 1000000u));
}

plainRuler_t::plainRuler_t(const QFont& font) : m_font(font)
{
    textFromValue = [this](double value) { return numberText(value); };
}

bool plainRuler_t::isHorizontal() const
{
    return m_location == ruler_t::TOP || m_location == ruler_t::BOTTOM;
}

bool plainRuler_t::isVertical() const
{
    return m_location == ruler_t::LEFT || m_location == ruler_t::RIGHT;
}

double plainRuler_t::base() const
{
    if (isHorizontal())
        return m_start;
    return isVertical() ? m_end : 0.0;
}

void plainRuler_t::updateScale()
{
    m_pxScale = m_range == 0.0 ? 1.0 : m_pixels / m_range;
}

void plainRuler_t::setRange(double a, double b)
{
    if (isInverted)
        std::swap(a, b);
    if (a == m_start && b == m_end)
        return;
    m_start = a;
    if (m_start > axisMax)
        m_start = axisMax;
    if (m_start < axisMin)
        m_start = axisMin;
    m_end = b + (m_start - a);
    if (m_end > axisMax)
        m_end = axisMax;
    if (m_end < axisMin)
        m_end = axisMin;
    m_range = m_end - m_start;
    if (isVertical())
        m_range = -m_range;
    updateScale();
    forgetTicks();
}

void plainRuler_t::setSize(QSize size)
{
    m_size = size;
    unsigned pixels = 0;
    if (isHorizontal())
        pixels = static_cast<unsigned>(size.width());
    if (isVertical())
        pixels = static_cast<unsigned>(size.height());
    if (pixels == m_pixels)
        return;
    m_pixels = pixels;
    updateScale();
    forgetTicks();
}

void plainRuler_t::setLocation(location_t edge)
{
    m_location = edge;
    m_pixels = static_cast<unsigned>(isVertical() ? m_size.height() : m_size.width());
    forgetTicks();
}

void plainRuler_t::setTable(const std::vector<ruler_t::tickEntry_t>& entries, double base)
{
    m_table = entries;
    m_base = base;
    setStep(0);
}

void plainRuler_t::setStep(int n)
{
    climbTo(n);
    if (m_ticks.empty())
        forgetTicks();
}

void plainRuler_t::climbTo(int n)
{
    m_step = n;
    m_scalar = std::pow(m_base, n);
}

double plainRuler_t::pixelToValue(int px) const
{
    return base() + px / m_pxScale;
}

int plainRuler_t::valueToPixel(double value) const
{
    const double px = (value - base()) * m_pxScale;
    if (!(px > 0.0))
        return 0;
    return px < 2147483647.0 ? static_cast<int>(px) : 2147483647;
}

unsigned plainRuler_t::numDecimals() const
{
    const double value = m_interval * m_scalar;
    const double fraction = value - std::floor(value);
    if (fraction == 0.0)
        return 0;
    const double places = std::ceil(-std::log10(fraction));
    return places >= 0.0 ? static_cast<unsigned>(places) + 1 : 1;
}

std::string plainRuler_t::numberText(double value) const
{
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(static_cast<int>(numDecimals())) << value;
    std::string text = stream.str().substr(0, 255);
    if (text.find('.') == std::string::npos)
        return text;
    text.erase(std::max<std::size_t>(text.find_last_not_of('0') + 1, 1));
    if (text.back() == '.')
        text.pop_back();
    return text;
}

// How many ticks a layout has; its ends go into fit.
qint64 plainRuler_t::countTicks(double interval, fit_t& fit) const
{
    const bool isRising = m_end >= m_start;
    const double first = isRising ? std::ceil(m_start / interval) : std::floor(m_start / interval);
    const double last = isRising ? std::floor(m_end / interval) : std::ceil(m_end / interval);
    fit.startTick = interval * first;
    fit.endTick = last * interval;
    const double steps = std::ceil(std::abs(fit.endTick - fit.startTick) / interval);
    if (!(steps >= 0.0)) // NaN, too
        return 0;
    if (steps >= 1e18)
        return 1000000000000000000;
    const auto count = static_cast<qint64>(steps);
    return (count & 0xffffffff) == 0xffffffff ? 0 : count + 1;
}

static double tickValue(qint64 i, double interval, bool isRising, double startTick)
{
    return static_cast<double>(i) * interval * (isRising ? 1 : -1) + startTick;
}

// Ticks without labels: those that would never be drawn.
void plainRuler_t::addTicks(tick_t::type_t type, double interval)
{
    fit_t ends;
    const qint64 count = countTicks(interval, ends);
    if (count > 50000000)
        qFatal("plainRuler_t: %lld ticks are too many to lay one by one",
               static_cast<long long>(count));
    for (qint64 i = 0; i < count; ++i) {
        const double value = tickValue(i, interval, m_end >= m_start, ends.startTick);
        m_ticks.push_back({type, positionOf(value), std::string()});
    }
}

unsigned plainRuler_t::positionOf(double value) const
{
    const double position = std::abs(value - m_start) * std::abs(m_pxScale);
    return position < 4294967295.0 ? static_cast<unsigned>(position) : 4294967295u;
}

plainRuler_t::fit_t plainRuler_t::calculateFit(double interval) const
{
    fit_t fit;
    const qint64 count = countTicks(interval, fit);
    for (qint64 i = 0; i < count && count <= 1000000; ++i) {
        const double value = tickValue(i, interval, m_end >= m_start, fit.startTick);
        fit.ticks.push_back({tick_t::TICK_MINOR, positionOf(value), textFromValue(value)});
    }
    return fit;
}

unsigned plainRuler_t::extentAlong(const std::string& label) const
{
    const QRect rect = QFontMetrics(m_font).boundingRect(QRect(), Qt::AlignCenter, textOf(label));
    if (!isHorizontal() && !isVertical())
        return 0;
    const bool isTextAlong = isHorizontal() == (textOrientation == Qt::Horizontal);
    return static_cast<unsigned>(isTextAlong ? rect.width() : rect.height());
}

bool plainRuler_t::labelFit(double interval)
{
    const fit_t fit = calculateFit(interval);
    bool isFree = true;
    double edge = -2147483647.0;
    for (const tick_t& tick : fit.ticks) {
        const unsigned half = (extentAlong(tick.label) + 1) / 2;
        const unsigned low = tick.pos - half;
        isFree = isFree && edge <= static_cast<double>(low);
        edge = static_cast<double>(tick.pos + half);
    }
    if (isFree)
        m_majorFit = fit;
    return isFree;
}

void plainRuler_t::calculateTickPlacement()
{
    m_ticks.clear();
    m_areTicksKnown = true;
    m_majorFit.ticks.clear();
    const double scale = std::abs(m_pxScale);
    if (m_pixels == 0 || scale == 0.0 || !std::isfinite(scale) || m_table.empty())
        return;
    const bool isScaled = m_base > 1.0 && std::isfinite(m_base);
    while (isScaled && m_scalar * (m_table[0].interval * scale) >= 2.0)
        climbTo(m_step - 1);

    int firstStep = 2147483647;
    std::optional<std::size_t> chosen;
    bool labelsFit = false;
    while (!chosen) {
        for (std::size_t i = 0; i < m_table.size() && !chosen; ++i) {
            const double interval = m_scalar * m_table[i].interval;
            if (!(scale * interval >= 2.0))
                continue;
            firstStep = std::min(firstStep, m_step);
            labelsFit = !(i == 0 && interval > std::abs(m_range)) && labelFit(interval);
            if (labelsFit) {
                chosen = i;
            } else if (i == 0 && interval > std::abs(m_range)) {
                climbTo(firstStep);
                chosen = 0;
            }
        }
        if (!chosen && (!isScaled || !std::isfinite(m_scalar)))
            return;
        if (!chosen)
            climbTo(m_step + 1);
    }

    m_interval = m_table[*chosen].interval;
    if (!labelsFit)
        addTicks(tick_t::TICK_MAJOR, m_interval * m_scalar);
    for (tick_t tick : m_majorFit.ticks) {
        tick.type = tick_t::TICK_MAJOR;
        m_ticks.push_back(tick);
    }
    if (showMinor)
        addTicks(tick_t::TICK_MINOR, m_interval * m_scalar / m_table[*chosen].numMinor);
    std::sort(m_ticks.begin(), m_ticks.end());
}

bool plainRuler_t::isLabelDrawn(const tick_t& tick) const
{
    return showText && tick.type == tick_t::TICK_MAJOR && !tick.label.empty() &&
           (isHorizontal() || isVertical());
}

void plainRuler_t::prepareToPaint()
{
    if (!m_areTicksKnown)
        calculateTickPlacement();
    int widest = 0;
    for (const tick_t& tick : m_ticks) {
        if (!isLabelDrawn(tick))
            continue;
        const QRect rect =
            QFontMetrics(m_font).boundingRect(QRect(), Qt::AlignCenter, textOf(tick.label));
        const bool isTextAlong = isHorizontal() == (textOrientation == Qt::Horizontal);
        widest = std::max(widest, isTextAlong ? rect.height() : rect.width());
    }
    const int across = widest + visible(majorLength) + visible(spacing) + 1;
    if (isVertical())
        m_minimumSize = QSize(across, 0);
    if (isHorizontal())
        m_minimumSize = QSize(0, across);
    m_size = m_size.expandedTo(m_minimumSize);
}

void plainRuler_t::drawTick(QPainter& painter, const tick_t& tick) const
{
    const unsigned length = tick.type == tick_t::TICK_MAJOR ? majorLength : minorLength;
    if (length == 0)
        return;
    const QBrush ink = painter.pen().brush();
    const int pixels = visible(length) + 1;
    const int column = visible(tick.pos);
    const int row = m_size.height() - visible(tick.pos);
    if (m_location == ruler_t::BOTTOM)
        painter.fillRect(column, 0, 1, pixels, ink);
    if (m_location == ruler_t::TOP)
        painter.fillRect(column, m_size.height() - pixels, 1, pixels, ink);
    if (m_location == ruler_t::LEFT)
        painter.fillRect(m_size.width() - pixels, row, pixels, 1, ink);
    if (m_location == ruler_t::RIGHT)
        painter.fillRect(0, row, pixels, 1, ink);
}

void plainRuler_t::drawLabel(QPainter& painter, const tick_t& tick) const
{
    if (!isLabelDrawn(tick))
        return;
    const QString text = textOf(tick.label);
    const QRect rect = painter.fontMetrics().boundingRect(
        QRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignTop), text);
    const int tw = rect.width();
    const int th = rect.height();
    const int w = m_size.width();
    const int h = m_size.height();
    const int offset = visible(spacing) + visible(majorLength);
    const bool isUpright = textOrientation != Qt::Vertical;
    int x = 0;
    int y = 0;
    if (isHorizontal()) {
        const int pos = visible(tick.pos);
        if (isUpright) {
            x = pos - tw / 2;
            if (x < 0 || x + tw > w)
                return;
        } else {
            x = pos + th / 2;
            if (x - th < 0 || x > w)
                return;
        }
        y = offset;
        if (m_location == ruler_t::TOP)
            y = (h - 1 - offset) - (isUpright ? th : tw);
    } else {
        const int extent = isUpright ? th : tw;
        y = h - visible(tick.pos) - extent / 2;
        if (y < 0 || y + extent > h)
            return;
        if (m_location == ruler_t::LEFT)
            x = isUpright ? (w - 1 - offset) - tw : w - 1 - offset;
        else
            x = isUpright ? offset : offset + th;
    }
    painter.save();
    painter.translate(x, y);
    if (!isUpright)
        painter.rotate(90.0);
    painter.drawText(rect, Qt::AlignCenter, text);
    painter.restore();
}

QImage plainRuler_t::drawnOn(const QImage& background, const QPalette& palette) const
{
    QImage image = background;
    QPainter painter(&image);
    painter.setFont(m_font);
    painter.setPen(palette.color(QPalette::WindowText));
    const int w = m_size.width();
    const int h = m_size.height();

    if (highlight) {
        const QBrush& color = palette.brush(QPalette::Highlight);
        const qint64 p1 = valueToPixel(highlight->first);
        const qint64 p2 = valueToPixel(highlight->second);
        const qint64 first = std::min(p1, p2);
        const qint64 beyond = first + std::abs(p2 - p1 + 1);
        for (int i = 0; i < w && isHorizontal(); ++i) {
            if (i >= first && i < beyond)
                painter.fillRect(i, 0, 1, h, color);
        }
        for (int i = 0; i < h && isVertical(); ++i) {
            if (i >= first && i < beyond)
                painter.fillRect(0, i, w, 1, color);
        }
    }
    if (indicator) {
        const int p = visible(static_cast<unsigned>(valueToPixel(*indicator)));
        const auto arrow = [](QStyle::StandardPixmap which) {
            return QApplication::style()->standardIcon(which).pixmap(16, 16);
        };
        if (m_location == ruler_t::BOTTOM)
            painter.drawPixmap(p - 8, 0, arrow(QStyle::SP_ArrowUp));
        if (m_location == ruler_t::TOP)
            painter.drawPixmap(p - 8, h - 1 - 16, arrow(QStyle::SP_ArrowDown));
        if (m_location == ruler_t::LEFT)
            painter.drawPixmap(w - 1 - 16, p - 8, arrow(QStyle::SP_ArrowRight));
        if (m_location == ruler_t::RIGHT)
            painter.drawPixmap(0, p - 8, arrow(QStyle::SP_ArrowLeft));
    }
    if (majorLength != 0) {
        const QBrush ink = painter.pen().brush();
        if (m_location == ruler_t::BOTTOM)
            painter.fillRect(0, 0, w, 1, ink);
        if (m_location == ruler_t::TOP)
            painter.fillRect(0, h - 1, w, 1, ink);
        if (m_location == ruler_t::LEFT)
            painter.fillRect(w - 1, 0, 1, h, ink);
        if (m_location == ruler_t::RIGHT)
            painter.fillRect(0, 0, 1, h, ink);
    }
    for (const tick_t& tick : m_ticks) {
        drawTick(painter, tick);
        drawLabel(painter, tick);
    }
    return image;
}
