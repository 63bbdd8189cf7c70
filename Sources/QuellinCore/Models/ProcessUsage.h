#pragma once

#include <cstdint>
#include <optional>

namespace quellin {

/// Counters of one process since it started, in the units named here whatever the kernel counts in. A counter
/// that the host does not have, or that this process may not read, is absent.
struct ProcessUsage {
  std::uint64_t userTimeNanoseconds = 0;
  std::uint64_t systemTimeNanoseconds = 0;
  std::optional<std::uint64_t> packageIdleWakeups;
  std::optional<std::uint64_t> interruptWakeups;
  std::optional<std::uint64_t> diskBytesRead;
  std::optional<std::uint64_t> diskBytesWritten;
  std::optional<std::uint64_t> energyNanojoules;
  /// Tells two processes apart that had the same id one after the other (a start time in any unit). Absent
  /// when the host does not say; then the id alone identifies the process.
  std::optional<std::uint64_t> startToken;

  bool operator==(const ProcessUsage&) const = default;
};

}  // namespace quellin
