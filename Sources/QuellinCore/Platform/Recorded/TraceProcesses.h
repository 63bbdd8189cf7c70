#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// One process of a snapshot. Times and energy are nanoseconds and nanojoules. A process that may not be read
/// has no times.
struct TraceProcess {
  std::int32_t pid = 0;                      ///< process identifier
  std::optional<std::string> name;           ///< in the second snapshot
  std::optional<std::string> nameBytes;      ///< instead, in hexadecimal, where the name is no valid UTF-8
  std::optional<bool> unchanged;             ///< in the second snapshot: all counters are those of the first
  std::optional<std::uint64_t> user;         ///< nanoseconds since its start
  std::optional<std::uint64_t> system;       ///< nanoseconds since its start
  std::optional<std::uint64_t> idleWakeups;  ///< since its start; absent where the host has none
  std::optional<std::uint64_t> interruptWakeups;  ///< since its start; absent where the host has none
  std::optional<std::uint64_t> bytesRead;         ///< since its start; absent where it may not be read
  std::optional<std::uint64_t> bytesWritten;      ///< since its start; absent where it may not be read
  std::optional<std::uint64_t> energy;            ///< nanojoules; absent where not counted
  std::optional<std::uint64_t> startToken;        ///< see `ProcessUsage::startToken`

  static constexpr auto fields() {
    return std::tuple{Field{"pid", &TraceProcess::pid},
                      Field{"name", &TraceProcess::name},
                      Field{"nameBytes", &TraceProcess::nameBytes},
                      Field{"unchanged", &TraceProcess::unchanged},
                      Field{"user", &TraceProcess::user},
                      Field{"system", &TraceProcess::system},
                      Field{"idleWakeups", &TraceProcess::idleWakeups},
                      Field{"interruptWakeups", &TraceProcess::interruptWakeups},
                      Field{"bytesRead", &TraceProcess::bytesRead},
                      Field{"bytesWritten", &TraceProcess::bytesWritten},
                      Field{"energy", &TraceProcess::energy},
                      Field{"startToken", &TraceProcess::startToken}};
  }
};

/// Two snapshots of all processes.
struct TraceProcesses {
  double seconds = 0;                ///< between the snapshots; 0 when not known
  std::vector<TraceProcess> first;   ///< in the order of the host
  std::vector<TraceProcess> second;  ///< in the order of the host

  static constexpr auto fields() {
    return std::tuple{Field{"seconds", &TraceProcesses::seconds}, Field{"first", &TraceProcesses::first},
                      Field{"second", &TraceProcesses::second}};
  }
};

/// The snapshots for a trace.
[[nodiscard]] TraceProcesses traceProcesses(const ProcessAnswers& answers);

/// The snapshots that `processes` spell, or why they are none.
[[nodiscard]] std::expected<ProcessAnswers, std::string> processAnswers(TraceProcesses processes);

}  // namespace quellin
