#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace quellin {

/// Gives the CPU time of a process and all its threads since it started, in nanoseconds; no value when there
/// is no such process or no such clock.
using ProcessClock = std::function<std::optional<std::uint64_t>(std::int32_t pid)>;

/// The kernel's CPU clock of a process. It needs no permission and no file, counts threads that have ended,
/// and is at most one tick of the scheduler behind (4 ms at 250 Hz) for a thread that is running.
/// Thread-safe.
[[nodiscard]] std::optional<std::uint64_t> systemProcessClock(std::int32_t pid);

/// The clock ticks per second in which /proc counts.
[[nodiscard]] std::uint64_t systemTicksPerSecond();

}  // namespace quellin
