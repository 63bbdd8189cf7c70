#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"
#include "QuellinCore/Services/SystemReader.h"
#include "QuellinCore/Support/Clock.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// The machine that is measured: this one, a tree of another one's kernel files, or a trace of one.
struct MeasuredHost {
  PlatformSources sources;
  std::shared_ptr<TracePlayer> player;  ///< null unless a trace is played
  bool isNative = false;                ///< this machine: the installed tool takes part
  MonotonicClock* monotonicClock = &systemMonotonicClock();
  const WallClock* wallClock = &systemWallClock();

  /// The machine that `options` name; of a trace, what follows its first `skippedTicks`. Throws `Failure`.
  [[nodiscard]] static MeasuredHost open(const Options& options, std::size_t skippedTicks = 0);

  /// As `open`; throws `Failure`, nothingMeasurable, when none of the machine's sources would give values.
  [[nodiscard]] static MeasuredHost openMeasurable(const Options& options);

  /// From one reading to the next: a trace's own interval, as near as it can be told, else `asked`.
  [[nodiscard]] Seconds interval(Seconds asked) const;

  /// The readers over this machine, which must not outlive it.
  [[nodiscard]] SystemReader reader() const;

  /// The processes that cost the most right now; blocks for `interval`.
  [[nodiscard]] std::vector<ProcessActivityInfo> topProcesses(int limit, Seconds interval) const;
};

/// What is measured, in words: "this machine", or the path of what stands for another one.
[[nodiscard]] std::string measuredName(const Options& options);

/// Whether any of the sources would give values.
[[nodiscard]] bool anyAvailable(const std::vector<SourceDiagnosis>& sources);

}  // namespace quellin::cli
