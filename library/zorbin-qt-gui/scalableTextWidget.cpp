#include "scalableTextWidget.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

namespace zorbin_qt_gui {

struct scalableTextWidgetPrivate_t
{
    QString m_text;
};

namespace {

constexpr int maxPoints = 4000;        // far more than any screen has room for
constexpr int sizesWithoutGrowth = 20; // more than lie between two sizes of a bitmap font

bool isWithin(QSize inner, QSize outer)
{
    return inner.width() <= outer.width() && inner.height() <= outer.height();
}

// A text in a font whose size is searched.
//
// Making a font for a size takes about a millisecond, so a search passes over sizes of which the
// outcome is known. Extents are proportional to the size but for the rounding of each glyph and
// of the line, which is less than the slack here: from the extent e at p points follows one between
// (e - slack) * s / p - slack and (e + slack) * s / p + slack at s points. The size that a search
// jumps to is tried; should it belie this, as it may where a negative spacing in pixels stays the
// same at all sizes, the search goes on one size at a time.
class fitting_t
{
public:
    fitting_t(const QString& text, const QFont& font) : m_text(text), m_font(font)
    {
        m_points = font.pointSize();
        if (m_points < 1) // given in pixels
            m_points = QFontInfo(font).pointSize();
        measure();
    }

    const QFont& font() const { return m_font; }

    // Raises the size until the text isn't within `room` any more. Ends at a size at which a font
    // that doesn't scale has stayed the same for a while.
    void growBeyond(QSize room)
    {
        bool mayJump = true;
        int sizeOfGrowth = m_points;
        while (isWithin(m_extent, room) && m_points < maxPoints) {
            if (m_points - sizeOfGrowth >= sizesWithoutGrowth) {
                resizeTo(sizeOfGrowth);
                return;
            }
            const int pointsBefore = m_points;
            const QSize extentBefore = m_extent;
            resizeTo(mayJump ? std::max(m_points + 1, greatestWithin(room)) : m_points + 1);
            if (m_points > pointsBefore + 1 && !isWithin(m_extent, room)) {
                mayJump = false;
                resizeTo(pointsBefore + 1);
            }
            if (m_extent != extentBefore)
                sizeOfGrowth = m_points;
        }
    }

    // Lowers the size until the text is within `room`, or to a single point.
    void shrinkInto(QSize room)
    {
        bool mayJump = true;
        while (m_points >= 2 && !isWithin(m_extent, room)) {
            const int pointsBefore = m_points;
            resizeTo(mayJump ? std::min(m_points - 1, leastBeyond(room)) : m_points - 1);
            if (m_points < pointsBefore - 1 && isWithin(m_extent, room)) {
                mayJump = false;
                resizeTo(pointsBefore - 1);
            }
        }
    }

private:
    void resizeTo(int points)
    {
        m_points = points;
        m_font.setPointSize(points);
        measure();
    }

    void measure()
    {
        const QFontMetrics metrics(m_font);
        m_extent = QSize(metrics.horizontalAdvance(m_text), metrics.height());
    }

    QSize slack() const { return {2 * static_cast<int>(m_text.size()) + 4, 4}; }

    // The greatest size, at most maxPoints, up to which the text is certainly within `room`; the
    // present one if there is none.
    int greatestWithin(QSize room) const
    {
        const auto greatest = [this](qint64 extent, qint64 slack, qint64 most) -> qint64 {
            if (extent + slack <= 0) // letters set into each other by a negative spacing
                return maxPoints;
            return (most - slack) * m_points / (extent + slack);
        };
        const qint64 byWidth = greatest(m_extent.width(), slack().width(), room.width());
        const qint64 byHeight = greatest(m_extent.height(), slack().height(), room.height());
        return static_cast<int>(
            std::clamp<qint64>(std::min(byWidth, byHeight), m_points, maxPoints));
    }

    // The least size, at least 1, from which on up to the present one the text is certainly not
    // within `room`; the present one if there is none.
    int leastBeyond(QSize room) const
    {
        const auto least = [this](qint64 extent, qint64 slack, qint64 most) -> qint64 {
            if (extent <= slack)
                return m_points;
            return (most + slack) * m_points / (extent - slack) + 1;
        };
        const qint64 byWidth = least(m_extent.width(), slack().width(), room.width());
        const qint64 byHeight = least(m_extent.height(), slack().height(), room.height());
        return static_cast<int>(std::min<qint64>({byWidth, byHeight, m_points}));
    }

    const QString m_text;
    QFont m_font;
    int m_points;
    QSize m_extent; // of the text in the font
};

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
    fitting_t fitting(m_d->m_text, font());
    // Deliberate: growing stops a pixel earlier than shrinking does.
    fitting.growBeyond(size() - QSize(1, 1));
    fitting.shrinkInto(size());
    setFont(fitting.font());
}

void scalableTextWidget_t::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.drawText(rect(), Qt::AlignCenter, m_d->m_text);
}
} // namespace zorbin_qt_gui
