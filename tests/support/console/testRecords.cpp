#include "testRecords.h"

#include <cmath>

namespace survey_console {
namespace {

constexpr int pingCount = 60;

} // namespace

QString echogramPicture(int kilohertz)
{
    return QStringLiteral(EXAMPLE_DATA "/leesferry-echosounder/echosounder-%1khz.pgm")
        .arg(kilohertz);
}

readResult_t testLine()
{
    readResult_t line;
    for (int second = 0; second <= static_cast<int>(lineLength); ++second) {
        const double time = lineStart + second;
        if (second % 10 == 0 && (second <= 200 || second >= 300))
            line.recording.add(CHANNEL_DEPTH, "SDDPT", {time, 100.0 + second / 10.0});
        const double swing = 5.0 * std::sin(second * 0.1);
        line.recording.add(CHANNEL_GYRO_HEADING, "HEHDT",
                           {time, swing < 0.0 ? swing + 360.0 : swing});
        line.recording.addFix("INGGA", {time, QGeoCoordinate(0.0, lineStep * second)});
    }
    return line;
}

sonarRecord_t testSonar()
{
    sonarRecord_t record;
    record.extent = {-testSwath, testSwath, 2};
    for (int second = 0; second < pingCount; ++second)
        record.pings.push_back({lineStart + second, {-10.0F, -20.0F}});
    return record;
}

std::vector<echogram_t> testEchograms()
{
    sonarRecord_t record;
    record.extent = {0.0, testDepths, 2};
    record.fullLevel = 255.0F;
    for (int second = 0; second < pingCount; ++second)
        record.pings.push_back({lineStart + second, {10.0F, 20.0F}, 5.0});
    std::vector<echogram_t> echograms = {{"high.pgm", record}, {"low.pgm", record}};
    echograms[0].record.frequency = 200000.0;
    echograms[1].record.frequency = 83000.0;
    return echograms;
}
} // namespace survey_console
