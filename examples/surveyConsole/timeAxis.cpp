#include "timeAxis.h"
#include "stripChart.h"
#include "timeRuler.h"

#include <QEvent>

using zorbin_qt_gui::stripChart_t;

namespace survey_console {

timeAxis_t::timeAxis_t(stripChart_t* chart, QWidget* parent)
    : QWidget(parent), m_chart(chart), m_ruler(new timeRuler_t(this))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_chart->installEventFilter(this);
    connect(m_chart, &stripChart_t::timeBoundsChanged, m_ruler, &timeRuler_t::range);
    m_ruler->range(m_chart->minTimeBound(), m_chart->maxTimeBound());
}

bool timeAxis_t::eventFilter(QObject* watched, QEvent* event)
{
    // Whichever of the two is laid out last, the ruler is placed then.
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        alignRuler();
    return QWidget::eventFilter(watched, event);
}

void timeAxis_t::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    alignRuler();
}

QSize timeAxis_t::sizeHint() const
{
    return {0, m_ruler->minimumSizeHint().height() + QFontMetrics(m_ruler->font()).height()};
}

// The chart is in another branch of the window's tree, at the same columns.
void timeAxis_t::alignRuler()
{
    const int left = m_chart->mapTo(window(), QPoint()).x() - mapTo(window(), QPoint()).x();
    m_ruler->setGeometry(left, 0, m_chart->width(), height());
}

} // namespace survey_console
