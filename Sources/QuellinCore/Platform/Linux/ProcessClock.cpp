#include "QuellinCore/Platform/Linux/ProcessClock.h"

#include <ctime>
#include <unistd.h>

namespace quellin {
namespace {

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::uint64_t usualTicksPerSecond = 100;

}  // namespace

std::optional<std::uint64_t> systemProcessClock(std::int32_t pid) {
  clockid_t clock{};
  timespec time{};
  if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(time.tv_sec) * nanosecondsPerSecond +
         static_cast<std::uint64_t>(time.tv_nsec);
}

std::uint64_t systemTicksPerSecond() {
  const long ticks = sysconf(_SC_CLK_TCK);
  return ticks > 0 ? static_cast<std::uint64_t>(ticks) : usualTicksPerSecond;
}

}  // namespace quellin
