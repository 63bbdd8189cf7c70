#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Models/ProcessUsage.h"

namespace quellin {

/// One process at one instant. A counter that the host cannot read is absent.
struct ProcessSample {
  std::int32_t pid = 0;                           ///< process identifier
  std::string name;                               ///< see `processName`
  std::uint64_t cpuTimeNanoseconds = 0;           ///< user and system time
  std::optional<std::uint64_t> wakeups;           ///< package-idle and interrupt wakeups
  std::optional<std::uint64_t> diskBytes;         ///< read and written
  std::optional<std::uint64_t> energyNanojoules;  ///< by the kernel's own estimate
  std::optional<std::uint64_t>
      startToken;  ///< differs between two processes with the same id, where the host says so

  bool operator==(const ProcessSample&) const = default;
};

/// One snapshot of the machine's processes.
using ProcessSamples = std::map<std::int32_t, ProcessSample>;

/// The text of a process name as the host gave it: the bytes before the first NUL, ill-formed UTF-8 replaced
/// by U+FFFD. "PID " and the number when there is no name or it is empty.
[[nodiscard]] std::string processName(std::optional<std::string_view> bytes, std::int32_t pid);

/// The sample for one process's counters. A sum that overflows ends the process.
[[nodiscard]] ProcessSample processSample(std::int32_t pid, std::string name, const ProcessUsage& usage);

/// Counters up to this one can be added in pairs whatever they are: 292 years of nanoseconds, 9 exabytes.
inline constexpr std::uint64_t largestProcessCounter = std::numeric_limits<std::int64_t>::max();

/// Whether no counter that is added to another is larger than `largestProcessCounter`, so that
/// `processSample` cannot end the process.
[[nodiscard]] bool isWithinRange(const ProcessUsage& usage);

}  // namespace quellin
