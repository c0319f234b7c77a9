#include "notifierWidget.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QEvent>
#include <QFrame>
#include <QPointer>
#include <QPropertyAnimation>
#include <QStackedLayout>
#include <QTimer>

namespace zorbin_qt_gui {
namespace {

constexpr int slideMs = 200;
constexpr int settleMs = 20;          // after the last change
constexpr int settleAtLatestMs = 100; // after the first change since the strip settled

bool isNull(const QWidget* widget, const char* operation)
{
    if (widget == nullptr)
        qWarning("notifierWidget_t::%s: Called with null widget", operation);
    return widget == nullptr;
}

template <typename layout_t>
layout_t* withoutSpace(layout_t* layout, int margin = 0)
{
    layout->setSpacing(0);
    layout->setContentsMargins(margin, margin, margin, margin);
    return layout;
}

} // namespace

struct notifierWidgetPrivate_t
{
    explicit notifierWidgetPrivate_t(QWidget* owner_)
        : owner(owner_), notifier(new QWidget(owner_)),
          notifierLayout(withoutSpace(new QVBoxLayout(notifier))),
          promptLayout(withoutSpace(new QStackedLayout))
    {
        withoutSpace(new QHBoxLayout(owner_));
        notifierLayout->addLayout(promptLayout);
        notifier->show();
        animation.setPropertyName("geometry");
        animation.setDuration(slideMs);
        for (QTimer* const timer : {&updateTimer, &latestTimer}) {
            timer->setTimerType(Qt::PreciseTimer);
            timer->setSingleShot(true);
        }
    }

    // What every change begins with.
    void beginChange()
    {
        owner->setUpdatesEnabled(false);
        settleLater(); // a hidden widget gets no layout request
        finishSlide();
    }

    // The second timer goes on through further changes, or changes without a pause would put
    // settling off for ever.
    void settleLater()
    {
        updateTimer.start(settleMs);
        if (!latestTimer.isActive())
            latestTimer.start(settleAtLatestMs);
    }

    void finishSlide()
    {
        if (animation.state() == QAbstractAnimation::Running)
            animation.setCurrentTime(slideMs);
    }

    // The frame in which a widget is shown; null if it isn't. A dismissed notification may be a
    // frame in the strip, too, but it isn't in a layout.
    QFrame* frameOf(const QWidget* widget) const
    {
        auto* const frame = qobject_cast<QFrame*>(widget->parentWidget());
        const bool isShown = frame != nullptr && (notifierLayout->indexOf(frame) >= 0 ||
                                                  promptLayout->indexOf(frame) >= 0);
        return isShown ? frame : nullptr;
    }

    void removeFrame(QFrame* frame) const
    {
        promptLayout->removeWidget(frame);
        notifierLayout->removeWidget(frame);
        frame->deleteLater();
    }

    // Puts a widget into a new frame of the strip, which goes when the widget does.
    QFrame* frameFor(QWidget* widget, int margin) const
    {
        if (QFrame* const before = frameOf(widget))
            removeFrame(before);
        auto* const frame = new QFrame(notifier);
        frame->setAutoFillBackground(true);
        frame->setFrameStyle(QFrame::Panel | QFrame::Raised);
        withoutSpace(new QVBoxLayout(frame), margin)->addWidget(widget);
        QObject::connect(widget, &QObject::destroyed, frame, &QObject::deleteLater);
        return frame;
    }

    QWidget* const owner;
    QPointer<QWidget> mainWidget;
    QWidget* const notifier; // the strip
    bool isAnimated = false;
    QVBoxLayout* const notifierLayout;
    QStackedLayout* const promptLayout;
    QPropertyAnimation animation; // its target is the notification that slides or is about to
    QTimer updateTimer;           // both run from a change until the strip settles
    QTimer latestTimer;
};

notifierWidget_t::notifierWidget_t(QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<notifierWidgetPrivate_t>(this))
{
    connect(&m_d->animation, &QAbstractAnimation::finished, this,
            &notifierWidget_t::animationFinished);
    for (const QTimer* const timer : {&m_d->updateTimer, &m_d->latestTimer})
        connect(timer, &QTimer::timeout, this, &notifierWidget_t::updateNotificationArea);
}

notifierWidget_t::~notifierWidget_t() = default;

void notifierWidget_t::setMainWidget(QWidget* w)
{
    if (isNull(w, "setMainWidget") || w == m_d->mainWidget)
        return;
    setUpdatesEnabled(false);
    if (m_d->mainWidget != nullptr) {
        layout()->removeWidget(m_d->mainWidget);
        m_d->mainWidget->deleteLater();
    }
    m_d->mainWidget = w;
    layout()->addWidget(w);
    m_d->notifier->raise();
    setUpdatesEnabled(true);
}

QWidget* notifierWidget_t::mainWidget()
{
    return m_d->mainWidget;
}

bool notifierWidget_t::isAnimated()
{
    return m_d->isAnimated;
}

void notifierWidget_t::setAnimated(bool on_)
{
    m_d->isAnimated = on_;
}

void notifierWidget_t::showNotification(QWidget* notification_)
{
    if (isNull(notification_, "showNotification"))
        return;
    m_d->beginChange();
    QFrame* const frame = m_d->frameFor(notification_, 0);
    m_d->notifierLayout->insertWidget(0, frame);
    frame->show();
    notification_->show();
    if (!m_d->isAnimated)
        return;
    const QRect place(0, 0, width(), frame->sizeHint().height());
    const QRect below = place.translated(0, place.height());
    m_d->animation.setTargetObject(frame);
    frame->setGeometry(below);
    m_d->animation.setStartValue(below);
    m_d->animation.setEndValue(place);
    frame->lower();
}

void notifierWidget_t::dismissNotification(QWidget* notification_)
{
    if (isNull(notification_, "dismissNotification"))
        return;
    QFrame* const frame = m_d->frameOf(notification_);
    if (frame == nullptr)
        return;
    m_d->beginChange();
    notification_->setParent(m_d->notifier);
    notification_->hide();
    m_d->removeFrame(frame);
}

void notifierWidget_t::showPrompt(QWidget* prompt_)
{
    if (isNull(prompt_, "showPrompt"))
        return;
    m_d->beginChange();
    QFrame* const frame = m_d->frameFor(prompt_, 2);
    frame->setLineWidth(2);
    m_d->promptLayout->addWidget(frame);
    m_d->promptLayout->setCurrentWidget(frame);
    frame->show();
    prompt_->show();
}

void notifierWidget_t::dismissPrompt(QWidget* prompt_)
{
    dismissNotification(prompt_);
}

bool notifierWidget_t::event(QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        m_d->finishSlide();
        m_d->settleLater();
    } else if (event->type() == QEvent::LayoutRequest) {
        m_d->settleLater();
    }
    return QWidget::event(event);
}

// The strip covers the bottom of the widget. Restores repainting.
void notifierWidget_t::updateNotificationArea()
{
    m_d->updateTimer.stop();
    m_d->latestTimer.stop();
    const int stripHeight = m_d->notifier->sizeHint().height();
    m_d->notifier->setGeometry(0, height() - stripHeight, width(), stripHeight);
    if (m_d->isAnimated && m_d->animation.targetObject() != nullptr)
        m_d->animation.start();
    setUpdatesEnabled(true);
    // Qt drops the update request of a window whose updates are disabled, takes it for pending all
    // the same and posts no other one. Sent, not posted: the next change might come first and
    // suspend repaints again.
    QEvent request(QEvent::UpdateRequest);
    if (updatesEnabled())
        QCoreApplication::sendEvent(window(), &request);
}

void notifierWidget_t::animationFinished()
{
    m_d->animation.setTargetObject(nullptr);
}
} // namespace zorbin_qt_gui
