#include "QuellinCore/Sessions/Analysis/SourceTotals.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Sessions/WattStatistics.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

// The totals of one source while its segments are added up.
struct Sum {
  SourceTotals totals;
  double wattSum = 0;  // of the readings

  void add(const PowerSessionPowerSegment& segment) {
    totals.segmentCount = checkedAdd(totals.segmentCount, 1);
    totals.durationSeconds += segment.durationSeconds;
    totals.readings = checkedAdd(totals.readings, segment.wattSampleCount);
    wattSum += segment.averageWatts.value_or(0) * static_cast<double>(segment.wattSampleCount);
    if (segment.minWatts)
      totals.minWatts = std::min(totals.minWatts.value_or(*segment.minWatts), *segment.minWatts);
    if (segment.maxWatts)
      totals.maxWatts = std::max(totals.maxWatts.value_or(*segment.maxWatts), *segment.maxWatts);
    if (!segment.totalWattHours) return;
    totals.totalWattHours = totals.totalWattHours.value_or(0) + *segment.totalWattHours;
    totals.measuredSeconds += segment.durationSeconds;
  }

  [[nodiscard]] SourceTotals materialize() && {
    totals.averageWatts = totals.totalWattHours && totals.measuredSeconds > 0
                              ? *totals.totalWattHours * joulesPerWattHour / totals.measuredSeconds
                              : wattSum / static_cast<double>(totals.readings);
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
