#include "QuellinCore/Platform/Recorded/IntervalScale.h"

#include <algorithm>
#include <cmath>

#include "QuellinCore/Models/EnergyDelta.h"
#include "QuellinCore/Models/ProcessSample.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr double sameInterval = 1e-6;

// `value`, rounded and cut to this magnitude.
std::int64_t roundedWithin(std::int64_t largest, double value) {
  if (!roundsToInt64(value)) return value < 0 ? -largest : largest;
  return std::clamp(roundedToInt64(value), -largest, largest);
}

}  // namespace

IntervalScale::IntervalScale(Seconds captured, Seconds waited) {
  const bool isKnown = captured.count() > 0 && waited.count() > 0;
  if (!isKnown || std::abs((waited - captured).count()) <= sameInterval) return;
  const double factor = waited / captured;
  if (std::isfinite(factor)) factor_ = factor;
}

std::vector<EnergyChannel> IntervalScale::later(std::vector<EnergyChannel> gains) const {
  if (!factor_) return gains;
  const std::int64_t largest = largestEnergyGain(gains.size());
  for (EnergyChannel& channel : gains) {
    channel.nanojoules = roundedWithin(largest, static_cast<double>(channel.nanojoules) * *factor_);
  }
  return gains;
}

std::uint64_t IntervalScale::counter(std::uint64_t before, std::uint64_t after) const {
  if (!factor_ || after <= before) return after;
  const std::uint64_t room = std::max(after, largestProcessCounter) - before;
  const double gained = static_cast<double>(after - before) * *factor_;
  if (!roundsToInt64(gained)) return before + room;
  return before + std::min(static_cast<std::uint64_t>(roundedToInt64(gained)), room);
}

std::optional<std::uint64_t> IntervalScale::counter(std::optional<std::uint64_t> before,
                                                    std::optional<std::uint64_t> after) const {
  if (!before || !after) return after;
  return counter(*before, *after);
}

ProcessUsage IntervalScale::later(const ProcessUsage& before, const ProcessUsage& after) const {
  return {.userTimeNanoseconds = counter(before.userTimeNanoseconds, after.userTimeNanoseconds),
          .systemTimeNanoseconds = counter(before.systemTimeNanoseconds, after.systemTimeNanoseconds),
          .packageIdleWakeups = counter(before.packageIdleWakeups, after.packageIdleWakeups),
          .interruptWakeups = counter(before.interruptWakeups, after.interruptWakeups),
          .diskBytesRead = counter(before.diskBytesRead, after.diskBytesRead),
          .diskBytesWritten = counter(before.diskBytesWritten, after.diskBytesWritten),
          .energyNanojoules = counter(before.energyNanojoules, after.energyNanojoules),
          .startToken = after.startToken};
}

}  // namespace quellin
