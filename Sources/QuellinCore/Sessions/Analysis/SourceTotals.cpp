#include "QuellinCore/Sessions/Analysis/SourceTotals.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr double secondsPerHour = 3600;

// The totals of one source while its segments are added up.
struct Sum {
  SourceTotals totals;
  double measuredSeconds = 0;  // of the segments with an energy

  void add(const PowerSessionPowerSegment& segment) {
    totals.segmentCount = checkedAdd(totals.segmentCount, 1);
    totals.durationSeconds += segment.durationSeconds;
    if (segment.minWatts)
      totals.minWatts = std::min(totals.minWatts.value_or(*segment.minWatts), *segment.minWatts);
    if (segment.maxWatts)
      totals.maxWatts = std::max(totals.maxWatts.value_or(*segment.maxWatts), *segment.maxWatts);
    if (!segment.totalWattHours) return;
    totals.totalWattHours = totals.totalWattHours.value_or(0) + *segment.totalWattHours;
    measuredSeconds += segment.durationSeconds;
  }

  [[nodiscard]] SourceTotals materialize() && {
    if (totals.totalWattHours && measuredSeconds > 0)
      totals.averageWatts = *totals.totalWattHours * secondsPerHour / measuredSeconds;
    return std::move(totals);
  }
};

}  // namespace

std::vector<SourceTotals> totalsBySource(std::span<const PowerSessionPowerSegment> segments) {
  std::vector<Sum> sums;
  for (const PowerSessionPowerSegment& segment : segments) {
    if (segment.wattSampleCount == 0) continue;
    auto sum = std::ranges::find_if(
        sums, [&](const Sum& known) { return known.totals.sourceKind == segment.sourceKind; });
    if (sum == sums.end()) {
      sum = sums.insert(sum, Sum{});
      sum->totals.sourceKind = segment.sourceKind;
      sum->totals.sourceLabel = segment.sourceLabel;
    }
    sum->add(segment);
  }
  std::vector<SourceTotals> totals;
  totals.reserve(sums.size());
  for (Sum& sum : sums) totals.push_back(std::move(sum).materialize());
  return totals;
}

}  // namespace quellin
