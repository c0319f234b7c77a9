#include "indicator.h"

#include <QCoreApplication>
#include <QPainter>
#include <QTimer>
#include <algorithm>

namespace zorbin_qt_gui {

// A lamp is connected to the shared clock exactly while it is on and blinks when on.
struct indicatorPrivate_t
{
    bool m_on = true;
    bool m_alertWhenOn = false;
    bool m_hideWhenOff = false;
    bool m_useCustomColor = false;
    QColor m_customColor;
};

indicator_t::alertTimer_t* indicator_t::alertTimer_t::INSTANCE = nullptr;

indicator_t::alertTimer_t* indicator_t::alertTimer_t::instance()
{
    if (INSTANCE == nullptr) {
        INSTANCE = new alertTimer_t;
        // A timer ends with its application. This is called for the present one and again whenever
        // one is made.
        qAddPreRoutine([] { INSTANCE->m_alertTimer->start(500); });
    }
    return INSTANCE;
}

indicator_t::alertTimer_t::alertTimer_t() : m_alertTimer(new QTimer(this))
{
    connect(m_alertTimer, &QTimer::timeout, this, &alertTimer_t::alertTimeout);
}

bool indicator_t::alertTimer_t::drawOn() const
{
    return m_drawOn;
}

void indicator_t::alertTimer_t::alertTimeout()
{
    m_drawOn = !m_drawOn;
    Q_EMIT alert();
}

indicator_t::indicator_t(QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<indicatorPrivate_t>())
{
}

indicator_t::~indicator_t() = default;

void indicator_t::setOn(bool on_)
{
    if (m_d->m_on == on_)
        return;
    m_d->m_on = on_;
    if (m_d->m_alertWhenOn)
        followAlertTimer(on_);
    update();
}

void indicator_t::alertWhenOn(bool alert)
{
    if (m_d->m_alertWhenOn == alert)
        return;
    m_d->m_alertWhenOn = alert;
    if (m_d->m_on)
        followAlertTimer(alert);
    update();
}

void indicator_t::hideWhenOff(bool hide)
{
    m_d->m_hideWhenOff = hide;
    update();
}

void indicator_t::setColor(QColor color_)
{
    m_d->m_customColor = color_;
    m_d->m_useCustomColor = true;
    update();
}

QSize indicator_t::minimumSizeHint() const
{
    return {10, 10};
}

void indicator_t::paintEvent(QPaintEvent* /*event*/)
{
    if (!m_d->m_on && m_d->m_hideWhenOff)
        return;
    const bool isLit = m_d->m_on && (!m_d->m_alertWhenOn || alertTimer_t::instance()->drawOn());
    QColor color = palette().color(QPalette::Window);
    if (isLit && isEnabled())
        color = m_d->m_useCustomColor ? m_d->m_customColor : palette().color(QPalette::Highlight);
    QPainter painter(this);
    painter.setBrush(QBrush(color, Qt::SolidPattern));
    const int diameter = std::min(width(), height());
    painter.drawEllipse((width() - diameter + 1) / 2, (height() - diameter + 1) / 2, diameter - 1,
                        diameter - 1);
}

// Called only where the lamp wasn't in that state before.
void indicator_t::followAlertTimer(bool follow)
{
    alertTimer_t* const timer = alertTimer_t::instance();
    const auto repaint = qOverload<>(&QWidget::update);
    if (follow)
        connect(timer, &alertTimer_t::alert, this, repaint);
    else
        disconnect(timer, &alertTimer_t::alert, this, repaint);
}
} // namespace zorbin_qt_gui
