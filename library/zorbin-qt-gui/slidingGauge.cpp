#include "slidingGauge.h"

#include "numbers_p.h"

#include <QPainter>
#include <cmath>
#include <optional>

namespace zorbin_qt_gui {

// Invariant: max > min, kept by setRange(), so that painting divides by the span unchecked.
struct slidingGaugePrivate_t
{
    double min = 0.0;
    double max = 1.0;
    double ref = 0.0; // where the bar begins
    double sp = 0.0;  // commanded
    double fb = 0.0;  // measured
    bool showValue = true;
    Qt::Orientation orientation = Qt::Vertical;
    QColor fillColor = Qt::green;
    QColor lineColor = Qt::red;
};

namespace {

// Halves go away from zero. What is far outside any widget is brought near enough for sums of
// coordinates to stay integers; NaN gives 0.
int nearestPixel(double x)
{
    constexpr double farOutside = 1e8;
    return truncated(std::round(std::min(std::max(x, -farOutside), farOutside)));
}

// The rectangle with both corners, the other way round where the second is before the first.
// Without columns or rows it stays empty.
QRect spanned(QPoint corner, QPoint opposite)
{
    int left = corner.x();
    int top = corner.y();
    int right = opposite.x();
    int bottom = opposite.y();
    if (right < left - 1) {
        left = opposite.x();
        right = corner.x();
    }
    if (bottom < top - 1) {
        top = opposite.y();
        bottom = corner.y();
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

} // namespace

slidingGauge_t::slidingGauge_t(QWidget* parent)
    : QFrame(parent), m_d(std::make_unique<slidingGaugePrivate_t>())
{
}

slidingGauge_t::~slidingGauge_t() = default;

double slidingGauge_t::minimum() const
{
    return m_d->min;
}

double slidingGauge_t::maximum() const
{
    return m_d->max;
}

double slidingGauge_t::range() const
{
    return m_d->max - m_d->min;
}

double slidingGauge_t::referencePoint() const
{
    return m_d->ref;
}

double slidingGauge_t::setpoint() const
{
    return m_d->sp;
}

double slidingGauge_t::feedback() const
{
    return m_d->fb;
}

Qt::Orientation slidingGauge_t::orientation() const
{
    return m_d->orientation;
}

void slidingGauge_t::setRange(double min, double max)
{
    if (m_d->min == min && m_d->max == max)
        return;
    if (!(max - min > 0.0)) { // NaN is refused, too
        // Deliberate: the class name is spelt so in this message, which is compared verbatim.
        qDebug("slidingGuauge_t::%s: Failed to set range - Max does not exceed min", "setRange");
        return;
    }
    m_d->min = min;
    m_d->max = max;
    update();
}

void slidingGauge_t::setReferencePoint(double value)
{
    if (m_d->ref == value)
        return;
    m_d->ref = value;
    update();
}

void slidingGauge_t::setSetpoint(double value)
{
    if (m_d->sp == value)
        return;
    m_d->sp = value;
    update();
}

void slidingGauge_t::setFeedback(double value)
{
    if (m_d->fb == value)
        return;
    m_d->fb = value;
    update();
}

void slidingGauge_t::setOrientation(const Qt::Orientation& orientation)
{
    if (m_d->orientation == orientation)
        return;
    m_d->orientation = orientation;
    update();
}

void slidingGauge_t::showValue(bool show)
{
    if (m_d->showValue == show)
        return;
    m_d->showValue = show;
    update();
}

void slidingGauge_t::setFillColor(const QColor& color)
{
    if (m_d->fillColor == color)
        return;
    m_d->fillColor = color;
    update();
}

void slidingGauge_t::setLineColor(const QColor& color)
{
    if (m_d->lineColor == color)
        return;
    m_d->lineColor = color;
    update();
}

void slidingGauge_t::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    const int frame = frameWidth();
    const QRect contents = frameRect().adjusted(frame, frame, -frame, -frame);
    QPainter painter(this);
    QRect bar;
    std::optional<QLine> line;
    if (m_d->orientation == Qt::Horizontal) {
        const double scale = contents.width() / range();
        const int sp = frame + nearestPixel((m_d->sp - m_d->min) * scale);
        const int ref = frame + nearestPixel((m_d->ref - m_d->min) * scale);
        const int length = nearestPixel((m_d->fb - m_d->ref) * scale);
        bar = spanned(QPoint(ref, contents.top()), QPoint(ref + length - 1, contents.bottom()));
        line = QLine(sp, contents.top(), sp, contents.bottom() + 1);
    } else if (m_d->orientation == Qt::Vertical) {
        const double scale = contents.height() / range();
        const int sp = frame + nearestPixel((m_d->max - m_d->sp) * scale);
        const int ref = frame + nearestPixel((m_d->max - m_d->ref) * scale);
        const int length = nearestPixel((m_d->ref - m_d->fb) * scale);
        bar = spanned(QPoint(contents.left(), ref), QPoint(contents.right(), ref + length - 1));
        line = QLine(contents.left(), sp, contents.right() + 1, sp);
    }
    painter.fillRect(bar, m_d->fillColor);
    if (line) {
        painter.setPen(m_d->lineColor);
        painter.drawLine(*line);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    if (m_d->showValue)
        painter.drawText(contents, Qt::AlignCenter, QString::number(m_d->fb, 'f', 0));
}
} // namespace zorbin_qt_gui
