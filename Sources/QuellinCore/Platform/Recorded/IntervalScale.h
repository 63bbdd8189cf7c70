#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Models/ProcessUsage.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Stretches what counters gained over the captured interval to the time that a reader waited on the trace's
/// clock, so that rates stay what they were. A plain value: several threads may read one, as long as none
/// changes it.
class IntervalScale {
 public:
  /// Leaves gains as they are when the reader waited as long as the capture (to a microsecond), when the
  /// clock did not move, or when the capture knows no interval or one too short to stretch.
  IntervalScale(Seconds captured, Seconds waited);

  /// The gains over the time waited, cut to what can be added up.
  [[nodiscard]] std::vector<EnergyChannel> later(std::vector<EnergyChannel> gains) const;

  /// The later counters over the time waited, cut to what can be added up. A counter that fell or that is not
  /// in both stays as it is.
  [[nodiscard]] ProcessUsage later(const ProcessUsage& before, const ProcessUsage& after) const;

 private:
  [[nodiscard]] std::uint64_t counter(std::uint64_t before, std::uint64_t after) const;
  [[nodiscard]] std::optional<std::uint64_t> counter(std::optional<std::uint64_t> before,
                                                     std::optional<std::uint64_t> after) const;

  std::optional<double> factor_;
};

}  // namespace quellin
