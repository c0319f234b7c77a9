#include "trackPanel.h"
#include "imageFrame.h"
#include "labels.h"
#include "theme.h"

#include <QEvent>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

using zorbin_qt_gui::imageFrame_t;

namespace survey_console {
namespace {

const double MINUTE_OF_ARC = 1852.0; // m of latitude
const double MIN_EXTENT = 20.0;      // m, of a vessel that doesn't move
const double HEADING_BASE = 15.0;    // m of track that tell where the bow is
const double MARGIN = 12.0;          // px around the track
const int MIN_HEIGHT = 130;          // px, of the picture

double toRadians(double degrees)
{
    return degrees * std::acos(-1.0) / 180.0;
}

// Metres east and south of an origin nearby.
QPointF offset(const QGeoCoordinate& origin, const QGeoCoordinate& position)
{
    const double east = std::remainder(position.longitude() - origin.longitude(), 360.0) * 60.0 *
                        MINUTE_OF_ARC * std::cos(toRadians(origin.latitude()));
    const double north = (position.latitude() - origin.latitude()) * 60.0 * MINUTE_OF_ARC;
    return {east, -north};
}

double distance(const QPointF& a, const QPointF& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

void drawVessel(QPainter* painter, const QPointF& place, double direction)
{
    painter->save();
    painter->translate(place);
    painter->rotate(direction);
    painter->setPen(Qt::NoPen);
    painter->setBrush(theme::secondCurve());
    painter->drawPolygon(QPolygonF({{0.0, -8.0}, {5.0, 6.0}, {0.0, 3.0}, {-5.0, 6.0}}));
    painter->restore();
}

} // namespace

double roundLength(double length)
{
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= length)
            return factor * power;
    }
    return power;
}

trackPanel_t::trackPanel_t(const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_picture(new imageFrame_t)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    for (const fix_t& fix : recording.fixes())
        m_track.push_back({fix.time, offset(recording.fixes().front().position, fix.position)});
    for (const point_t& point : m_track)
        m_extent |= QRectF(point.position, QSizeF(1e-6, 1e-6)); // an empty one is left out
    const double missing =
        std::max(MIN_EXTENT - std::max(m_extent.width(), m_extent.height()), 0.0);
    m_extent.adjust(-missing / 2.0, -missing / 2.0, missing / 2.0, missing / 2.0);

    m_picture->setObjectName(QStringLiteral("trackPicture"));
    m_picture->setMinimumHeight(MIN_HEIGHT);
    m_picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_picture->setToolTip(tr("The track, north up"));
    m_picture->installEventFilter(this);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(tr("Track"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 3, 10, 8);
    layout->setSpacing(3);
    layout->addWidget(title);
    layout->addWidget(m_picture, 1);
}

bool trackPanel_t::eventFilter(QObject* watched, QEvent* event)
{
    const bool goesOn = QFrame::eventFilter(watched, event);
    if (watched == m_picture && event->type() == QEvent::Show)
        draw();
    if (watched == m_picture && event->type() == QEvent::Resize)
        QMetaObject::invokeMethod(this, &trackPanel_t::draw, Qt::QueuedConnection);
    return goesOn;
}

void trackPanel_t::showTime(double time_)
{
    const auto later =
        std::upper_bound(m_track.begin(), m_track.end(), time_,
                         [](double time, const point_t& point) { return time < point.time; });
    const auto sailed = static_cast<std::size_t>(later - m_track.begin());
    if (sailed == m_sailed)
        return;
    m_sailed = sailed;
    if (m_picture->isVisible()) // else when it is shown
        draw();
}

// In the size of the frame, so that it isn't scaled.
void trackPanel_t::draw()
{
    const QSize size = m_picture->contentsRect().size();
    if (size.isEmpty())
        return;
    QPixmap pixmap(size);
    pixmap.fill(theme::chart());
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(m_picture->font());
    if (m_track.empty()) {
        painter.setPen(theme::quietText());
        painter.drawText(pixmap.rect(), Qt::AlignCenter, tr("no positions"));
        m_picture->setPixmap(pixmap);
        return;
    }
    const double scale = std::min((size.width() - 2.0 * MARGIN) / m_extent.width(),
                                  (size.height() - 2.0 * MARGIN) / m_extent.height());
    const auto place = [&](const point_t& point) {
        return QPointF(0.5 * size.width(), 0.5 * size.height()) +
               (point.position - m_extent.center()) * scale;
    };
    QPolygonF all;
    for (const point_t& point : m_track)
        all << place(point);
    painter.setPen(QPen(theme::frame(), 2.0));
    painter.drawPolyline(all);
    painter.setPen(QPen(theme::firstCurve(), 2.0));
    painter.drawPolyline(all.constData(), static_cast<int>(m_sailed));
    if (m_sailed > 0) {
        const QPointF here = m_track[m_sailed - 1].position;
        std::size_t from = m_sailed - 1;
        while (from > 0 && distance(m_track[from].position, here) < HEADING_BASE)
            --from;
        const QPointF way = here - m_track[from].position;
        drawVessel(&painter, place(m_track[m_sailed - 1]),
                   std::atan2(way.x(), -way.y()) * 180.0 / std::acos(-1.0));
    }

    const double length = roundLength(0.5 * size.width() / scale); // m
    const QPointF right(size.width() - 6.0, size.height() - 6.0);
    painter.setPen(QPen(theme::quietText(), 1.0));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawLine(right, right - QPointF(length * scale, 0.0));
    const QString text =
        length < 1000.0 ? tr("%1 m").arg(length) : tr("%1 km").arg(length / 1000.0);
    painter.drawText(QRectF(0.0, right.y() - 20.0, right.x(), 18.0),
                     Qt::AlignRight | Qt::AlignBottom, text);
    painter.drawText(QRectF(6.0, 4.0, 40.0, 18.0), Qt::AlignLeft | Qt::AlignTop,
                     QStringLiteral("N \u2191"));
    painter.end();
    m_picture->setPixmap(pixmap);
}

} // namespace survey_console
