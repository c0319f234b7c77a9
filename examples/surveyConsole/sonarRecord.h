#pragma once
#include <QString>
#include <vector>

namespace survey_console {

/// One ping of a sidescan sonar: the levels of its echoes from the farthest sample at port to the
/// farthest one at starboard.
struct ping_t
{
    double time;               ///< seconds since 1970-01-01 00:00:00 UTC
    std::vector<float> levels; ///< dB below full scale, MIN_LEVEL to 0
};

/// The level of a sample of amplitude 0, about that of half a step of 16 bits.
constexpr float MIN_LEVEL = -96.0F;

/// A sidescan record. All pings have the same number of samples and their times don't decrease.
struct sonarRecord_t
{
    double slantRange = 0.0; ///< m to either side
    std::vector<ping_t> pings;
    int damaged = 0; ///< pings left out: cut off, without a time, or out of order
};

/// A record read from files, or why it could not be.
struct sonarResult_t
{
    sonarRecord_t record; ///< empty in case of an error
    QString error;        ///< one sentence for the user; empty on success
};

/// Reads the amplitudes, a binary PGM file with one ping a row, from \p path, and the pings' times
/// and range from the table of the same name with the ending ".csv", whose columns "time_utc" and
/// "slant_range_m" it takes. A file that ends early gives the pings that are whole. Without a
/// single one that is an error, as is a picture of more than 16384 columns or 100000 rows.
sonarResult_t readSonarRecord(const QString& path);

} // namespace survey_console
