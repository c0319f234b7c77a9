#pragma once
#include <QString>
#include <limits>
#include <vector>

namespace survey_console {

/// One ping of a sonar.
struct ping_t
{
    double time;               ///< seconds since 1970-01-01 00:00:00 UTC
    std::vector<float> levels; ///< of its echoes, at the samples that sonarRecord_t tells
    /// The depth in metres that the instrument itself has found; NaN for none.
    double depth = std::numeric_limits<double>::quiet_NaN();
};

/// Where the samples of a ping are: from one edge to the other, evenly spaced.
struct extent_t
{
    double begin = 0.0; ///< m, where the first sample begins; port is negative
    double end = 0.0;   ///< m, where sample number \c count would begin; more than begin
    int count = 0;      ///< at least 1

    double perMetre() const { return count / (end - begin); }
};

/// The level of a sample of amplitude 0 in dB, about that of half a step of 16 bits.
constexpr float MIN_LEVEL = -96.0F;

/// A sonar's record. The times of its pings don't decrease.
struct sonarRecord_t
{
    extent_t extent;        ///< of the longest ping that there can be
    float fullLevel = 0.0F; ///< the greatest that a level can be
    double frequency = 0.0; ///< Hz; 0.0 if that isn't recorded
    std::vector<ping_t> pings;
    int damaged = 0; ///< pings left out: cut off, without a time, or out of order
};

/// A record read from files, or why it could not be.
struct sonarResult_t
{
    sonarRecord_t record; ///< empty in case of an error
    QString error;        ///< one sentence for the user; empty on success
};

/// Reads the record of a sidescan sonar: the amplitudes, a binary PGM file with one ping a row,
/// from \p path, and the pings' times and range from the table of the same name with the ending
/// ".csv", whose columns "time_utc" and "slant_range_m" it takes. Samples go from the farthest at
/// port to the farthest at starboard, levels are dB below full scale, MIN_LEVEL to 0.
///
/// A file that ends early gives the pings that are whole. Without a single one that is an error, as
/// is a picture of more than 16384 columns or 100000 rows.
sonarResult_t readSonarRecord(const QString& path);

/// Reads the record of an echosounder in the same way. Samples go from the transducer downwards,
/// levels are the amplitudes themselves, in the instrument's own scale. Of the table the columns
/// "time_utc", "sample_spacing_m" and "samples" are taken, and "depth_m" and "frequency_hz" where
/// there are such: a ping has as many samples as its row says, what follows in the picture only
/// fills it.
sonarResult_t readEchogram(const QString& path);

} // namespace survey_console
