#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

/// Fills a buffer with process ids and returns the bytes written, as `ProcessScan::listProcessIDs` does.
using ProcessIDLister = std::function<std::int64_t(std::span<std::int32_t>)>;

/// The ids that `list` gives into a buffer that fits: room for 4096 ids, doubled up to 65536 as long as a
/// result fills it. Empty when `list` fails or when the largest buffer is filled as well.
[[nodiscard]] std::vector<std::int32_t> processIDs(const ProcessIDLister& list);

/// The text of a process name as the host gave it: the bytes before the first NUL, ill-formed UTF-8 replaced
/// by U+FFFD. "PID " and the number when there is no name or it is empty.
[[nodiscard]] std::string processName(std::optional<std::string_view> bytes, std::int32_t pid);

/// The sample for one process's counters. A sum that overflows ends the process.
[[nodiscard]] ProcessSample processSample(std::int32_t pid, std::string name, const ProcessUsage& usage);

/// Counters up to this one can be added in pairs whatever they are: 292 years of nanoseconds, 9 exabytes.
inline constexpr std::uint64_t largestProcessCounter = std::numeric_limits<std::int64_t>::max();

/// Whether no counter that is added to another is larger than `largestProcessCounter`, so that
/// `processSample` cannot end the process.
[[nodiscard]] bool canReckonWith(const ProcessUsage& usage);

}  // namespace quellin
