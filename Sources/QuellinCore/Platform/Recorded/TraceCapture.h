#pragma once

#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Whether a tick also measures the processes, which are most of a trace's size.
enum class CapturedProcesses { measured, leftOut };

/// How long a capture measures. The defaults are the intervals at which a live machine is read, so that
/// replaying need not convert anything.
struct CaptureIntervals {
  Seconds energy = energyMeasurementInterval;      ///< between two samples of the counters
  Seconds processes = processMeasurementInterval;  ///< between two snapshots of the processes
};

/// Asks every source once, whatever the others gave, and returns what they answered. Blocks the calling
/// thread for the intervals. Wall and monotonic time are read after all sources but the processes.
[[nodiscard]] HostAnswers captureTick(const PlatformSources& sources, const WallClock& wallClock,
                                      MonotonicClock& monotonicClock,
                                      CapturedProcesses processes = CapturedProcesses::measured,
                                      CaptureIntervals intervals = {});

}  // namespace quellin
