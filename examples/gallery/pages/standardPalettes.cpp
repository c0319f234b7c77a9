// The standard palettes. Look at the ripple along the top of each upper strip: it is equally
// high everywhere, and a good palette shows it equally well everywhere. Below it are the sixteen
// colours for displays of 8 bits, and the keyed colours as they are meant to be used.

#include "pages.h"

#include <QGridLayout>
#include <QPainter>
#include <QWidget>
#include <cmath>
#include <zorbin-qt-gui/palette.h>
#include <zorbin-qt-gui/rangeColorer.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

class swatch_t : public QWidget
{
public:
    swatch_t(const QString& title, QWidget* parent) : QWidget(parent), m_title(title)
    {
        setObjectName(QStringLiteral("swatch"));
        setMinimumSize(380, 204);
    }

    // Says so in its title if the palette isn't installed; its colours are black then.
    void load(palette_t::standardPalette_t which)
    {
        if (!m_palette.load(which))
            m_title += QStringLiteral(" (not found)");
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.drawText(QRect(0, 0, width(), 22), Qt::AlignLeft | Qt::AlignVCenter, m_title);
        painter.drawImage(0, 24, ripple(QSize(width(), 72)));
        paintLevels(&painter, QRect(0, 100, width(), 24));
        paintMarks(&painter, QRect(0, 128, width(), 72));
    }

private:
    // Values from 0 to 1 from left to right, with a ripple that fades downwards.
    QImage ripple(const QSize& size) const
    {
        rangeColorer_t colorer;
        colorer.setPalette(m_palette);
        colorer.setRangeValues(0.0F, 1.0F);
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
            const double height = 0.04 * std::pow(1.0 - 1.0 * y / image.height(), 2.0);
            for (int x = 0; x < image.width(); ++x)
                line[x] = colorer.color(
                    static_cast<float>(1.0 * x / image.width() + height * std::sin(0.6 * x)));
        }
        return image;
    }

    void paintLevels(QPainter* painter, const QRect& area) const
    {
        const std::vector<unsigned int> table = m_palette.colorTable(palette_t::DEPTH_8);
        const int count = static_cast<int>(table.size());
        for (int i = 0; i < count; ++i) {
            const int left = area.width() * i / count;
            const int right = area.width() * (i + 1) / count;
            painter->fillRect(area.left() + left, area.top(), right - left, area.height(),
                              QColor(table[static_cast<std::size_t>(i)]));
        }
    }

    void paintMarks(QPainter* painter, const QRect& area) const
    {
        painter->save();
        painter->setClipRect(area);
        painter->fillRect(area, keyed("background"));
        painter->setPen(keyed("grid"));
        for (int x = area.left(); x <= area.right(); x += 36)
            painter->drawLine(x, area.top(), x, area.bottom());
        painter->drawLine(area.left(), area.center().y(), area.right(), area.center().y());

        const int step = area.width() / 5;
        const int baseline = area.top() + 26;
        painter->setPen(keyed("text"));
        painter->drawText(area.left() + 12, baseline, QStringLiteral("text"));
        painter->fillRect(area.left() + step, area.top() + 10, step - 16, 22, keyed("noData"));
        painter->drawText(area.left() + step + 8, baseline, QStringLiteral("noData"));
        painter->drawText(area.left() + 2 * step, baseline, QStringLiteral("grid"));

        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(keyed("bottom"), 2.0));
        painter->drawText(area.left() + 3 * step, baseline, QStringLiteral("bottom"));
        QPolygonF seabed;
        for (int x = area.left(); x <= area.right(); ++x)
            seabed << QPointF(x, area.bottom() - 16.0 + 7.0 * std::sin(0.013 * x + 1.0));
        painter->drawPolyline(seabed);

        painter->setPen(QPen(keyed("target"), 2.0));
        painter->drawText(area.left() + 4 * step, baseline, QStringLiteral("target"));
        const QPoint target(area.left() + 4 * step + 64, area.top() + 21);
        painter->drawEllipse(target, 6, 6);
        painter->drawLine(target - QPoint(11, 0), target + QPoint(11, 0));
        painter->drawLine(target - QPoint(0, 11), target + QPoint(0, 11));
        painter->restore();
    }

    QColor keyed(const char* key) const
    {
        QRgb color = qRgb(0, 0, 0);
        m_palette.keyedColor(key, color);
        return color;
    }

    QString m_title;
    palette_t m_palette;
};

const struct
{
    palette_t::standardPalette_t which;
    const char* title;
} palettes[] = {
    {palette_t::SP_BATHY, "bathy: depth, from shallow to deep"},
    {palette_t::SP_IMAGERY, "imagery: pictures of the seabed"},
    {palette_t::SP_INTENSITY, "intensity: strength of an echo or a signal"},
    {palette_t::SP_SIDESCAN, "sidescan: sidescan sonar records"},
    {palette_t::SP_SUBBOTTOM, "subbottom: signed amplitudes, zero halfway"},
    {palette_t::SP_WATERCOLUMN, "watercolumn: echograms, in sixteen levels"},
};

} // namespace

QWidget* makeStandardPalettes()
{
    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    layout->setHorizontalSpacing(16);
    for (const auto& palette : palettes) {
        auto* const swatch = new swatch_t(QString::fromLatin1(palette.title), page);
        swatch->load(palette.which);
        layout->addWidget(swatch, layout->count() / 2, layout->count() % 2);
    }
    return page;
}

} // namespace gallery
