#include "QuellinCore/Models/ProcessSample.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

std::optional<std::uint64_t> sumOfKnown(std::optional<std::uint64_t> first,
                                        std::optional<std::uint64_t> second) {
  if (!first || !second) return first ? first : second;
  return checkedAdd(*first, *second);
}

}  // namespace

std::string processName(std::optional<std::string_view> bytes, std::int32_t pid) {
  const std::string_view text = bytes.value_or("").substr(0, bytes.value_or("").find('\0'));
  return text.empty() ? "PID " + std::to_string(pid) : repairedUTF8(text);
}

ProcessSample processSample(std::int32_t pid, std::string name, const ProcessUsage& usage) {
  return {.pid = pid,
          .name = std::move(name),
          .cpuTimeNanoseconds = checkedAdd(usage.userTimeNanoseconds, usage.systemTimeNanoseconds),
          .wakeups = sumOfKnown(usage.packageIdleWakeups, usage.interruptWakeups),
          .diskBytes = sumOfKnown(usage.diskBytesRead, usage.diskBytesWritten),
          .energyNanojoules = usage.energyNanojoules,
          .startToken = usage.startToken};
}

bool isWithinRange(const ProcessUsage& usage) {
  const std::array addends{std::optional{usage.userTimeNanoseconds},
                           std::optional{usage.systemTimeNanoseconds},
                           usage.packageIdleWakeups,
                           usage.interruptWakeups,
                           usage.diskBytesRead,
                           usage.diskBytesWritten};
  return std::ranges::all_of(
      addends, [](const auto& counter) { return counter.value_or(0) <= largestProcessCounter; });
}

}  // namespace quellin
