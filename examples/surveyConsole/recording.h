#pragma once
#include <QGeoCoordinate>
#include <QString>
#include <array>
#include <vector>

namespace survey_console {

/// One timed value: seconds since 1970-01-01 00:00:00 UTC and the channel's unit.
struct sample_t
{
    double time;
    double value;
};

/// One position of the vessel, timed likewise.
struct fix_t
{
    double time;
    QGeoCoordinate position;
};

/// What a recording may hold. The channels "made good" are derived from the positions.
enum channelId_t
{
    CHANNEL_DEPTH,            // m below the transducer
    CHANNEL_GYRO_HEADING,     // deg, from a gyrocompass
    CHANNEL_HEADING,          // deg, from any other sensor
    CHANNEL_COURSE,           // deg over ground, as received
    CHANNEL_COURSE_MADE_GOOD, // deg
    CHANNEL_SPEED,            // kn over ground, as received
    CHANNEL_SPEED_MADE_GOOD,  // kn
    CHANNEL_ROLL,             // deg
    CHANNEL_PITCH,            // deg
    CHANNEL_HEAVE,            // m
    CHANNEL_COUNT
};

/// One measured quantity over time. Sample times strictly increase.
struct channel_t
{
    QString source; ///< the sentence that carries it, such as "INVTG"; empty without samples
    std::vector<sample_t> samples;
};

/// A recorded survey line: one list of samples per channel, and the positions.
class recording_t
{
public:
    /// Adds a sample. The first source of a channel stays its only one, so that two sensors are
    /// never mixed in one curve. Returns false, and adds nothing, for a sample from another source
    /// and for one that is not later than the channel's newest.
    bool add(channelId_t id, const QString& source, const sample_t& sample);

    /// Adds a position; the same rules hold.
    bool addFix(const QString& source, const fix_t& fix);

    /// Moves all times by \p seconds.
    void shift(double seconds);

    /// Fills the channels "made good" from the positions: great-circle distance and bearing over
    /// the last 10 s of track. A rate needs at least 5 s of track, a course also 1 m of way.
    void deriveRates();

    /// States whether the times carry the recording's true date. Without it they start on
    /// 1970-01-01. True at first.
    void setDated(bool dated) { m_dated = dated; }
    bool isDated() const { return m_dated; }

    const channel_t& channel(channelId_t id) const { return m_channels[id]; }
    const std::vector<fix_t>& fixes() const { return m_fixes; }

    bool isEmpty() const;     ///< neither a sample nor a position
    double startTime() const; ///< time of the first sample or position; 0.0 when empty
    double endTime() const;   ///< time of the last one; 0.0 when empty

private:
    std::array<channel_t, CHANNEL_COUNT> m_channels;
    std::vector<fix_t> m_fixes;
    QString m_fixSource;
    bool m_dated = true;
};

/// The newest sample at or before \p time, or null.
const sample_t* newestAt(const std::vector<sample_t>& samples, double time);
/// The newest position at or before \p time, or null.
const fix_t* newestAt(const std::vector<fix_t>& fixes, double time);

/// The position nearest to a valid \p place, the first of several; null if there is none.
const fix_t* nearestTo(const std::vector<fix_t>& fixes, const QGeoCoordinate& place);

/// The time step above which two samples count as interrupted: 1.8 times the median step, so that
/// one missing sample shows and jitter does not. 0.0 for fewer than two samples.
double gapThreshold(const std::vector<sample_t>& samples);

/// Angles in degrees made continuous: each sample is moved by whole turns to within half a turn of
/// the one before, the first one to within half a turn of \p near.
std::vector<sample_t> unwrapped(std::vector<sample_t> samples, double near);

} // namespace survey_console
