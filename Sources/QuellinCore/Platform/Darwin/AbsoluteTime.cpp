#include "QuellinCore/Platform/Darwin/AbsoluteTime.h"

#include <limits>
#include <mach/mach_time.h>
#include <sys/sysctl.h>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin::darwin {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;

/// Ticks per second; 0 when the kernel does not say.
std::uint64_t ticksPerSecond() {
  std::uint64_t frequency = 0;
  std::size_t size = sizeof(frequency);
  if (sysctlbyname("hw.tbfrequency", &frequency, &size, nullptr, 0) != 0) return 0;
  return size == sizeof(frequency) ? frequency : 0;
}

}  // namespace

std::optional<AbsoluteTimeScale> AbsoluteTimeScale::ofThisMachine() {
  const std::uint64_t frequency = ticksPerSecond();
  if (frequency != 0) return AbsoluteTimeScale{nanosecondsPerSecond, frequency};
  mach_timebase_info_data_t base{};
  if (mach_timebase_info(&base) != KERN_SUCCESS) return std::nullopt;
  if (base.numer == 0 || base.denom == 0) return std::nullopt;
  return AbsoluteTimeScale{base.numer, base.denom};
}

std::uint64_t AbsoluteTimeScale::nanoseconds(std::uint64_t ticks) const {
  const Wide result = static_cast<Wide>(ticks) * numerator_ / denominator_;
  if (result > std::numeric_limits<std::uint64_t>::max()) endOnOverflow();
  return static_cast<std::uint64_t>(result);
}

}  // namespace quellin::darwin
