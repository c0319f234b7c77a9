#include "notices.h"
#include "labels.h"
#include "notifierWidget.h"
#include "theme.h"

#include <QHBoxLayout>
#include <QToolButton>
#include <algorithm>

namespace survey_console {

notices_t::notices_t(std::vector<recordingEvent_t> events, std::function<double()> realTime,
                     zorbin_qt_gui::notifierWidget_t* notifier, QObject* parent)
    : QObject(parent), m_events(std::move(events)), m_realTime(std::move(realTime)),
      m_notifier(notifier)
{
}

void notices_t::show(const QString& text)
{
    auto* notice = new QWidget;
    setBackground(notice, theme::frame());
    auto* label = makeLabel(theme::text(), 1.0, Qt::AlignLeft | Qt::AlignVCenter);
    label->setObjectName(QStringLiteral("noticeLabel"));
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("dismissButton"));
    button->setText(tr("Dismiss"));
    button->setToolTip(tr("Take this notice away (Esc takes the newest)"));
    button->setFocusPolicy(Qt::TabFocus);
    auto* layout = new QHBoxLayout(notice);
    layout->setContentsMargins(12, 4, 8, 4);
    layout->addWidget(label, 1);
    layout->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, notice] { dismiss(notice); });

    while (static_cast<int>(m_notices.size()) >= MAX_COUNT)
        dismiss(m_notices.front().widget);
    m_notices.push_back({text, m_realTime(), notice});
    m_notifier->showNotification(notice);
}

void notices_t::dismissNewest()
{
    if (!m_notices.empty())
        dismiss(m_notices.back().widget);
}

QStringList notices_t::texts() const
{
    QStringList texts;
    for (const notice_t& notice : m_notices)
        texts += notice.text;
    return texts;
}

void notices_t::showTime(double time_)
{
    while (!m_notices.empty() && m_realTime() - m_notices.front().shownAt > LIFE)
        dismiss(m_notices.front().widget);
    for (; m_next < m_events.size() && m_events[m_next].time <= time_; ++m_next)
        show(m_events[m_next].text);
}

void notices_t::jumpTo(double time_)
{
    const auto next = std::lower_bound(
        m_events.begin(), m_events.end(), time_,
        [](const recordingEvent_t& event, double time) { return event.time < time; });
    m_next = static_cast<std::size_t>(next - m_events.begin());
}

void notices_t::dismiss(QWidget* widget)
{
    const auto notice =
        std::find_if(m_notices.begin(), m_notices.end(),
                     [widget](const notice_t& candidate) { return candidate.widget == widget; });
    if (notice == m_notices.end())
        return;
    m_notices.erase(notice);
    m_notifier->dismissNotification(widget);
    widget->deleteLater();
}

} // namespace survey_console
