#pragma once
#include "recording.h"

namespace survey_console {

/// Something in a recording that the user should be told of when the replay comes to it.
struct recordingEvent_t
{
    double time; ///< s
    QString text;
};

/// Length of a gap that is told of, in seconds. Shorter ones show in the charts.
constexpr double MIN_TOLD_GAP = 60.0;

/// The start and the end of the recording \p name, and each gap in a channel once it has lasted for
/// MIN_TOLD_GAP, in the order of time.
std::vector<recordingEvent_t> eventsOf(const QString& name, const recording_t& recording);

} // namespace survey_console
