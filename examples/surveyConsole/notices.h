#pragma once
#include "recordingEvents.h"

#include <QObject>
#include <deque>
#include <functional>

class QWidget;

namespace zorbin_qt_gui {
class notifierWidget_t;
}

namespace survey_console {

/// Tells of what happens in a recording, in notices at the lower edge of a notifier. A notice goes
/// when it is dismissed, when it has been there for LIFE of real time while the replay runs, and
/// when there would be more than MAX_COUNT.
class notices_t : public QObject
{
    Q_OBJECT
public:
    static constexpr double LIFE = 8.0; // s
    static constexpr int MAX_COUNT = 3;

    /// \p events are in the order of time. \p notifier must outlive the notices.
    notices_t(std::vector<recordingEvent_t> events, std::function<double()> realTime,
              zorbin_qt_gui::notifierWidget_t* notifier, QObject* parent = nullptr);

    /// Shows a notice of its own.
    void show(const QString& text);
    /// Dismisses the newest notice, if there is one.
    void dismissNewest();
    /// What the notices say, the oldest first.
    QStringList texts() const;

public Q_SLOTS:
    /// The replay has run on to \p time_: shows what has happened on the way.
    void showTime(double time_);
    /// The replay stands at \p time_ now. What happens from then on is to be told.
    void jumpTo(double time_);

private:
    struct notice_t
    {
        QString text;
        double shownAt;  // real time, s
        QWidget* widget; // owned by the notifier
    };

    void dismiss(QWidget* widget);

    const std::vector<recordingEvent_t> m_events;
    const std::function<double()> m_realTime;
    zorbin_qt_gui::notifierWidget_t* const m_notifier;
    std::size_t m_next = 0; // event that hasn't happened yet
    std::deque<notice_t> m_notices;
};

} // namespace survey_console
