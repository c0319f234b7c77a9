#include "recordingEvents.h"
#include "texts.h"

#include <QCoreApplication>
#include <algorithm>

namespace survey_console {
namespace {

// One channel for each quantity: those made good have the gaps of the positions.
const struct
{
    channelId_t channel;
    const char* name;
} TOLD[] = {
    {CHANNEL_DEPTH, QT_TRANSLATE_NOOP("recordingEvents", "Depth")},
    {CHANNEL_GYRO_HEADING, QT_TRANSLATE_NOOP("recordingEvents", "Gyro heading")},
    {CHANNEL_HEADING, QT_TRANSLATE_NOOP("recordingEvents", "Heading")},
    {CHANNEL_SPEED, QT_TRANSLATE_NOOP("recordingEvents", "Speed")},
    {CHANNEL_SPEED_MADE_GOOD, QT_TRANSLATE_NOOP("recordingEvents", "Position")},
    {CHANNEL_HEAVE, QT_TRANSLATE_NOOP("recordingEvents", "Attitude")},
};

QString tr(const char* text)
{
    return QCoreApplication::translate("recordingEvents", text);
}

} // namespace

std::vector<recordingEvent_t> eventsOf(const QString& name, const recording_t& recording)
{
    std::vector<recordingEvent_t> events;
    const QString span =
        tr("%1 to %2 UTC").arg(timeText(recording.startTime()), timeText(recording.endTime()));
    events.push_back({recording.startTime(), tr("%1: %2").arg(name, span)});
    for (const auto& told : TOLD) {
        const std::vector<sample_t>& samples = recording.channel(told.channel).samples;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double next = i + 1 < samples.size() ? samples[i + 1].time : recording.endTime();
            if (next - samples[i].time > MIN_TOLD_GAP)
                events.push_back(
                    {samples[i].time + MIN_TOLD_GAP,
                     tr("%1: nothing since %2 UTC").arg(tr(told.name), timeText(samples[i].time))});
        }
    }
    events.push_back({recording.endTime(), tr("End of the recording")});
    std::stable_sort(
        events.begin(), events.end(),
        [](const recordingEvent_t& a, const recordingEvent_t& b) { return a.time < b.time; });
    return events;
}

} // namespace survey_console
