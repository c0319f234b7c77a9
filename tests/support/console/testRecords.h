#pragma once
#include "echogramPanel.h"
#include "recordingReader.h"
#include "sonarRecord.h"

#include <vector>

namespace survey_console {

/// Recordings of the source tree.
constexpr char shipLog[] = EXAMPLE_DATA "/nbp1406-underway/underway-10min.log";
constexpr char boatLog[] = EXAMPLE_DATA "/plaka-sailing/plaka-10min.log";
constexpr char sidescanPicture[] = EXAMPLE_DATA "/scotsman-sidescan/sidescan-600khz.pgm";
/// An echosounder's record, 200 or 83 kHz.
QString echogramPicture(int kilohertz);

/// Where testLine() begins: 2014-08-01 00:00:00 UTC.
constexpr double lineStart = 1406851200.0;
constexpr double lineLength = 600.0; ///< s
/// The longitude that testLine() gains in a second, in degrees.
constexpr double lineStep = 0.0001;

/// Ten minutes: a sounding every 10 s, 100 m growing by 1 m each, none from 200 s to 300 s. Once a
/// second a gyro heading that swings 5 deg to both sides of north, and a position on the equator,
/// eastward from 0 deg by lineStep.
readResult_t testLine();

constexpr double testSwath = 30.0;  ///< m to either side
constexpr double testDepths = 40.0; ///< m

/// A sidescan record of testSwath: a ping a second for a minute, from lineStart on.
sonarRecord_t testSonar();

/// An echosounder's records of 200 and 83 kHz down to testDepths: a ping a second for a minute,
/// from lineStart on, with a depth of 5 m.
std::vector<echogram_t> testEchograms();
} // namespace survey_console
