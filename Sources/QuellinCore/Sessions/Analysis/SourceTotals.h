#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionPowerSegment.h"

namespace quellin {

/// What the segments on one power source come to together. Segments of different sources have no sum.
struct SourceTotals {
  std::string sourceKind;                ///< as in the segments
  std::string sourceLabel;               ///< that of the first segment
  std::int64_t segmentCount = 0;         ///< at least 1
  double durationSeconds = 0;            ///< of all its segments
  double measuredSeconds = 0;            ///< of the segments that have an energy
  std::int64_t readings = 0;             ///< samples with watts; at least 1
  std::optional<double> averageWatts;    ///< over the measured time; where there is none, of the readings
  std::optional<double> minWatts;        ///< absent without a reading
  std::optional<double> maxWatts;        ///< absent without a reading
  std::optional<double> totalWattHours;  ///< absent when no segment has two readings

  static constexpr auto fields() {
    using Totals = SourceTotals;
    return std::tuple{Field{"sourceKind", &Totals::sourceKind},
                      Field{"sourceLabel", &Totals::sourceLabel},
                      Field{"segmentCount", &Totals::segmentCount},
                      Field{"durationSeconds", &Totals::durationSeconds},
                      Field{"measuredSeconds", &Totals::measuredSeconds},
                      Field{"readings", &Totals::readings},
                      Field{"averageWatts", &Totals::averageWatts},
                      Field{"minWatts", &Totals::minWatts},
                      Field{"maxWatts", &Totals::maxWatts},
                      Field{"totalWattHours", &Totals::totalWattHours}};
  }

  bool operator==(const SourceTotals&) const = default;
};

/// The totals of each power source that has a reading, in the order in which the sources first appear.
[[nodiscard]] std::vector<SourceTotals> totalsBySource(std::span<const PowerSessionPowerSegment> segments);

}  // namespace quellin
