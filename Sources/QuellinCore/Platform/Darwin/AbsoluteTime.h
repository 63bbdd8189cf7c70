#pragma once

#include <cstdint>
#include <optional>

namespace quellin::darwin {

/// How long a tick of the machine's absolute-time clock is, as a fraction of nanoseconds.
class AbsoluteTimeScale {
 public:
  /// Both parts must not be 0.
  constexpr AbsoluteTimeScale(std::uint64_t numerator, std::uint64_t denominator)
      : numerator_(numerator), denominator_(denominator) {}

  /// The scale of the running kernel's counters: by the sysctl "hw.tbfrequency", else by the time base that
  /// this process is told. The sysctl comes first because a translated process is told 1/1 while the kernel
  /// counts native ticks. No value when the system gives neither.
  [[nodiscard]] static std::optional<AbsoluteTimeScale> ofThisMachine();

  /// `ticks` in whole nanoseconds, rounded down. Exact: nothing is lost on the way. Ends the process when
  /// the result does not fit.
  [[nodiscard]] std::uint64_t nanoseconds(std::uint64_t ticks) const;

 private:
  std::uint64_t numerator_;
  std::uint64_t denominator_;
};

}  // namespace quellin::darwin
