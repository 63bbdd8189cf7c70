#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Support/Record.h"

namespace quellin {

/// One process of a snapshot. Times and energy are nanoseconds and nanojoules. A process that may not be read
/// has no times.
struct TraceProcess {
  std::int32_t pid = 0;
  std::optional<std::string> name;       ///< in the second snapshot
  std::optional<std::string> nameBytes;  ///< instead, in hexadecimal, where the name is no valid UTF-8
  std::optional<bool> unchanged;         ///< in the second snapshot: all counters are those of the first
  std::optional<std::uint64_t> user;
  std::optional<std::uint64_t> system;
  std::optional<std::uint64_t> idleWakeups;
  std::optional<std::uint64_t> interruptWakeups;
  std::optional<std::uint64_t> bytesRead;
  std::optional<std::uint64_t> bytesWritten;
  std::optional<std::uint64_t> energy;
  std::optional<std::uint64_t> startToken;

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
  double seconds = 0;
  std::vector<TraceProcess> first;
  std::vector<TraceProcess> second;

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
