#include "scalableTextWidget.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>

namespace zorbin_qt_gui {

struct scalableTextWidgetPrivate_t
{
    QString m_text;
};

namespace {

constexpr int maxPoints = 4000;        // far more than any screen has room for
constexpr int sizesWithoutGrowth = 20; // more than lie between two sizes of a bitmap font

QSize extentOf(const QString& text, const QFont& font)
{
    const QFontMetrics metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

bool isWithin(QSize inner, QSize outer)
{
    return inner.width() <= outer.width() && inner.height() <= outer.height();
}

} // namespace

scalableTextWidget_t::scalableTextWidget_t(QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<scalableTextWidgetPrivate_t>())
{
}

scalableTextWidget_t::~scalableTextWidget_t() = default;

void scalableTextWidget_t::setText(const QString& text)
{
    m_d->m_text = text;
    resizeEvent(nullptr);
    update();
}

void scalableTextWidget_t::resizeEvent(QResizeEvent* /*event*/)
{
    if (m_d->m_text.isEmpty())
        return;
    QFont fitted = font();
    int points = fitted.pointSize();
    if (points < 1) // given in pixels
        points = QFontInfo(fitted).pointSize();
    QSize extent = extentOf(m_d->m_text, fitted);
    const auto resizeTo = [&](int size) {
        points = size;
        fitted.setPointSize(points);
        extent = extentOf(m_d->m_text, fitted);
    };

    // Deliberate: growing stops a pixel earlier than shrinking does. It ends at a size at which a
    // font that doesn't scale has stayed the same for a while.
    int sizeOfGrowth = points;
    while (isWithin(extent, size() - QSize(1, 1)) && points < maxPoints) {
        if (points - sizeOfGrowth == sizesWithoutGrowth) {
            resizeTo(sizeOfGrowth);
            break;
        }
        const QSize before = extent;
        resizeTo(points + 1);
        if (extent != before)
            sizeOfGrowth = points;
    }
    while (points >= 2 && !isWithin(extent, size()))
        resizeTo(points - 1);
    setFont(fitted);
}

void scalableTextWidget_t::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.drawText(rect(), Qt::AlignCenter, m_d->m_text);
}
} // namespace zorbin_qt_gui
