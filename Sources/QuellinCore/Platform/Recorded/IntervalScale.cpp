#include "QuellinCore/Platform/Recorded/IntervalScale.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quellin {
namespace {

constexpr double sameInterval = 1e-6;

// The next double above the largest integer of the type is exact; that integer itself is none.
template <class Integer>
Integer saturated(double value, double beyond) {
  const double rounded = std::round(value);
  if (rounded >= beyond) return std::numeric_limits<Integer>::max();
  if (rounded <= static_cast<double>(std::numeric_limits<Integer>::min())) {
    return std::numeric_limits<Integer>::min();
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

IntervalScale::IntervalScale(Seconds captured, Seconds waited) {
  const bool isKnown = captured.count() > 0 && waited.count() > 0;
  if (isKnown && std::abs((waited - captured).count()) > sameInterval) factor_ = waited / captured;
}

std::int64_t IntervalScale::gain(std::int64_t captured) const {
  return factor_ ? saturated<std::int64_t>(static_cast<double>(captured) * *factor_, 0x1p63) : captured;
}

std::uint64_t IntervalScale::counter(std::uint64_t before, std::uint64_t after) const {
  if (!factor_ || after <= before) return after;
  const auto gained = saturated<std::uint64_t>(static_cast<double>(after - before) * *factor_, 0x1p64);
  return before + std::min(gained, std::numeric_limits<std::uint64_t>::max() - before);
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
