#pragma once

#include <cstdint>
#include <optional>

namespace quellin {

/// Counters of one process since it started, in the units named here whatever the kernel counts in. A counter
/// that the host does not have, or that this process may not read, is absent.
struct ProcessUsage {
  std::uint64_t userTimeNanoseconds = 0;            ///< over all cores
  std::uint64_t systemTimeNanoseconds = 0;          ///< over all cores
  std::optional<std::uint64_t> packageIdleWakeups;  ///< those that took a processor out of idle
  std::optional<std::uint64_t> interruptWakeups;    ///< on Linux the main thread's voluntary context switches
  std::optional<std::uint64_t> diskBytesRead;       ///< from drives; what a cache answered is not in it
  std::optional<std::uint64_t> diskBytesWritten;    ///< to drives
  std::optional<std::uint64_t> energyNanojoules;    ///< by the kernel's own estimate
  /// Tells two processes apart that had the same id one after the other (a start time in any unit). Absent
  /// when the host does not say; then the id alone identifies the process.
  std::optional<std::uint64_t> startToken;

  bool operator==(const ProcessUsage&) const = default;
};

}  // namespace quellin
