#pragma once
#include "sonarRecord.h"

#include <QObject>

namespace survey_console {
class pingModel_t;

/// Hands a sonar record's pings to a model at the pace they were recorded at. At its end the record
/// begins anew: it is shorter than a survey line.
class pingPlayer_t : public QObject
{
    Q_OBJECT
public:
    /// Both must outlive the player; \p record holds at least one ping.
    pingPlayer_t(const sonarRecord_t& record, pingModel_t* model, QObject* parent = nullptr);

    /// Goes over to another record, which must likewise outlive the player, \p seconds after its
    /// start.
    void play(const sonarRecord_t& record, double seconds);

    /// Brings the model to where the record is \p seconds after its start: adds the pings that have
    /// come, or fills it anew, which is faster, when it has gone back or far ahead.
    void goTo(double seconds);

private:
    qint64 endAt(double seconds) const;
    void fill(qint64 end);
    const ping_t& pingAt(qint64 index) const;

    const sonarRecord_t* m_record;
    pingModel_t* const m_model;
};

} // namespace survey_console
