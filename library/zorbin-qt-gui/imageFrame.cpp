#include "imageFrame.h"

#include "numbers_p.h"

#include <QPainter>
#include <QPixmap>
#include <cmath>

namespace zorbin_qt_gui {

struct imageFramePrivate_t
{
    QPixmap m_origPixmap; // as set
    QPixmap m_drawPixmap; // scaled to the frame
};

imageFrame_t::imageFrame_t(QWidget* parent)
    : QFrame(parent), m_d(std::make_unique<imageFramePrivate_t>())
{
}

imageFrame_t::~imageFrame_t() = default;

void imageFrame_t::setPixmap(const QPixmap& pixmap)
{
    m_d->m_origPixmap = pixmap;
    m_d->m_drawPixmap = QPixmap();
    scalePixmap();
    update();
}

const QPixmap* imageFrame_t::pixmap() const
{
    return &m_d->m_origPixmap;
}

void imageFrame_t::scalePixmap()
{
    if (m_d->m_origPixmap.isNull())
        return;
    const QSize contents = size() - 2 * QSize(frameWidth(), frameWidth());
    m_d->m_drawPixmap =
        contents.isEmpty() // smaller than its own frame
            ? QPixmap()
            : m_d->m_origPixmap.scaled(contents, Qt::KeepAspectRatio, Qt::FastTransformation);
}

int imageFrame_t::heightForWidth(int w) const
{
    if (m_d->m_origPixmap.isNull())
        return -1;
    const double frame = 2.0 * frameWidth();
    const double aspect =
        static_cast<double>(m_d->m_origPixmap.height()) / m_d->m_origPixmap.width();
    return truncated(std::ceil((w - frame) * aspect) + frame);
}

void imageFrame_t::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.drawPixmap((width() - m_d->m_drawPixmap.width()) / 2,
                       (height() - m_d->m_drawPixmap.height()) / 2, m_d->m_drawPixmap);
}

void imageFrame_t::resizeEvent(QResizeEvent* /*event*/)
{
    scalePixmap();
}
} // namespace zorbin_qt_gui
