#include "QuellinCore/Models/ProcessActivity.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace quellin {
namespace {

constexpr double nanosPerUnit = 1e9;
constexpr double percent = 100;
constexpr double scorePerWakeupPerSecond = 0.2;
constexpr double bytesPerMegabyte = 1e6;
constexpr double scorePerMegabytePerSecond = 0.5;
constexpr double scorePerWatt = 10;
constexpr double highestScoreOfOneTerm = 100;
constexpr double smallestScore = 0.05;

double cappedTerm(double score) { return std::min(score, highestScoreOfOneTerm); }

std::uint64_t gained(std::uint64_t before, std::uint64_t after) {
  return after > before ? after - before : 0;
}

std::uint64_t gained(std::optional<std::uint64_t> before, std::optional<std::uint64_t> after) {
  return before && after ? gained(*before, *after) : 0;
}

ProcessActivityInfo activityBetween(const ProcessSample& before, const ProcessSample& after, double seconds) {
  ProcessActivityInfo info;
  info.id = after.pid;
  info.pid = after.pid;
  info.name = after.name;
  const auto cpuTime = static_cast<double>(gained(before.cpuTimeNanoseconds, after.cpuTimeNanoseconds));
  info.cpuPercent = cpuTime / (seconds * nanosPerUnit) * percent;
  info.wakeupsPerSecond = static_cast<double>(gained(before.wakeups, after.wakeups)) / seconds;
  info.diskBytesPerSecond = static_cast<double>(gained(before.diskBytes, after.diskBytes)) / seconds;
  info.impactScore = info.cpuPercent + cappedTerm(info.wakeupsPerSecond * scorePerWakeupPerSecond) +
                     cappedTerm(info.diskBytesPerSecond / bytesPerMegabyte * scorePerMegabytePerSecond);

  if (const std::uint64_t energy = gained(before.energyNanojoules, after.energyNanojoules); energy != 0) {
    const double watts = static_cast<double>(energy) / (seconds * nanosPerUnit);
    info.energyWattsEstimate = watts;
    info.impactScore += cappedTerm(watts * scorePerWatt);
  }
  return info;
}

bool isSameProcess(const ProcessSample& before, const ProcessSample& after) {
  return before.startToken == after.startToken;
}

}  // namespace

std::vector<ProcessActivityInfo> processActivity(const ProcessSamples& before, const ProcessSamples& after,
                                                 Seconds interval) {
  std::vector<ProcessActivityInfo> activity;
  for (const auto& [pid, sample] : after) {
    const auto earlier = before.find(pid);
    if (earlier == before.end() || !isSameProcess(earlier->second, sample)) continue;
    ProcessActivityInfo info = activityBetween(earlier->second, sample, interval.count());
    if (info.impactScore > smallestScore) activity.push_back(std::move(info));
  }
  std::ranges::stable_sort(activity, std::greater{}, &ProcessActivityInfo::impactScore);
  return activity;
}

}  // namespace quellin
