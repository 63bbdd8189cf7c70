#pragma once

#include <memory>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Platform/Recorded/TraceCapture.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"
#include "QuellinCore/Platform/Recorded/TraceWriter.h"

namespace quellin::testing_support {

/// All that the services make of a machine at one moment.
struct Reading {
  SystemPowerState state;
  std::vector<ProcessActivityInfo> activity;

  bool operator==(const Reading&) const = default;
};

/// What the services read through `sources`; no privileged tool takes part.
[[nodiscard]] Reading readEverything(const PlatformSources& sources, MonotonicClock& monotonicClock,
                                     const WallClock& wallClock);

/// What the services read through the sources of a player at its present tick.
[[nodiscard]] Reading readEverything(const std::shared_ptr<TracePlayer>& player);

/// Captures `ticks` ticks into a file and returns a player of it.
[[nodiscard]] std::shared_ptr<TracePlayer> captureAndOpen(const std::string& path,
                                                          const PlatformSources& sources,
                                                          MonotonicClock& monotonicClock,
                                                          const WallClock& wallClock,
                                                          SerialNumbers serialNumbers, int ticks = 1);

/// The path of the trace among the examples.
[[nodiscard]] std::string exampleTrace();

}  // namespace quellin::testing_support
