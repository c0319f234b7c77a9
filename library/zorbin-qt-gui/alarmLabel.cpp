#include "alarmLabel.h"
#include "numbers_p.h"

#include <QApplication>
#include <QPalette>
#include <QTimer>
#include <cmath>
#include <zorbin/timestamp.h>
#include <zorbin/usleep.h>

namespace zorbin_qt_gui {
namespace {

constexpr int tickMs = 500;

} // namespace

struct alarmLabel_t::alarmLabelData_t
{
    static void startTimer();

    static QTimer* alarmTimer; // ticks for all labels; never deleted

    bool isFlashing = false;       // connected to the timer
    bool isPaintedFlashed = false; // the flash look is on
    QColor flashFg = QApplication::palette().color(QPalette::HighlightedText);
    QColor flashBg = QApplication::palette().color(QPalette::Highlight);
};

QTimer* alarmLabel_t::alarmLabelData_t::alarmTimer = nullptr;

alarmLabel_t::alarmLabel_t(QWidget* parent)
    : QLabel(parent), m_d(std::make_unique<alarmLabelData_t>())
{
    setIndent(2);
    if (alarmLabelData_t::alarmTimer != nullptr)
        return;
    // Deliberate: waits for the next whole second, so that the flashes begin in step with the wall
    // clock.
    const double now = zorbin::gettimestamp();
    const double nextSecond = std::floor(now) + 1.0;
    zorbinport::usleep(static_cast<unsigned>((nextSecond - now) * 1000000.0));
    auto* const timer = new QTimer;
    connect(timer, &QTimer::timeout, timer, [timer] {
        if (timer->interval() != tickMs) // the first tick
            timer->setInterval(tickMs);
    });
    alarmLabelData_t::alarmTimer = timer;
    // A timer ends with its application. This is called for the present one and again whenever one
    // is made.
    qAddPreRoutine(&alarmLabelData_t::startTimer);
}

// Starts the ticks, the first one on the next half second of the wall clock.
void alarmLabel_t::alarmLabelData_t::startTimer()
{
    const double sinceTick = std::fmod(1000.0 * zorbin::gettimestamp(), tickMs); // ms
    alarmTimer->start(tickMs - truncated(sinceTick + 0.5) % tickMs);
}

alarmLabel_t::~alarmLabel_t() = default;

void alarmLabel_t::flashFgColor(const QColor& color)
{
    m_d->flashFg = color;
}

void alarmLabel_t::flashBgColor(const QColor& color)
{
    m_d->flashBg = color;
}

void alarmLabel_t::alarm(bool enable_)
{
    if (m_d->isFlashing == enable_)
        return;
    m_d->isFlashing = enable_;
    if (enable_) {
        connect(alarmLabelData_t::alarmTimer, &QTimer::timeout, this, &alarmLabel_t::flash);
    } else {
        disconnect(alarmLabelData_t::alarmTimer, &QTimer::timeout, this, &alarmLabel_t::flash);
        clearFlash();
    }
}

void alarmLabel_t::flash()
{
    if (m_d->isPaintedFlashed) {
        clearFlash();
        return;
    }
    const QColor& fg = m_d->flashFg;
    const QColor& bg = m_d->flashBg;
    setStyleSheet(QString::asprintf(
        "border-radius: 3px;color: rgb(%u,%u,%u);background-color: rgb(%u,%u,%u);",
        static_cast<unsigned>(fg.red()), static_cast<unsigned>(fg.green()),
        static_cast<unsigned>(fg.blue()), static_cast<unsigned>(bg.red()),
        static_cast<unsigned>(bg.green()), static_cast<unsigned>(bg.blue())));
    m_d->isPaintedFlashed = true;
}

void alarmLabel_t::clearFlash()
{
    setStyleSheet(QString());
    m_d->isPaintedFlashed = false;
}
} // namespace zorbin_qt_gui
