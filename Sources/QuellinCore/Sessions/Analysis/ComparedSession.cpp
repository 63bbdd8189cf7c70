#include "QuellinCore/Sessions/Analysis/ComparedSession.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/RawValue.h"

namespace quellin {
namespace {

std::vector<double> wattsOf(const SessionSeries& series, std::string_view kind) {
  std::vector<double> watts;
  auto absent = series.watts.absent.begin();
  auto value = series.watts.values.begin();
  for (std::size_t sample = 0; sample < series.source.size(); ++sample) {
    const auto place = static_cast<std::int64_t>(sample);
    if (absent != series.watts.absent.end() && place >= absent->first + absent->count) ++absent;
    if (absent != series.watts.absent.end() && place >= absent->first) continue;
    const double reading = *value++;
    if (series.sources.at(static_cast<std::size_t>(series.source[sample])).kind == kind)
      watts.push_back(reading);
  }
  return watts;
}

bool lacksEnergy(const std::vector<PowerSessionPowerSegment>& segments) {
  return std::ranges::any_of(segments, [&](const PowerSessionPowerSegment& segment) {
    return !segment.totalWattHours || segment.sourceKind != segments.front().sourceKind;
  });
}

}  // namespace

bool ComparedSession::isCompleted() const {
  return session.status == rawValue(PowerSessionStatus::completed);
}

ComparedSession comparedSession(const SessionAnalysis& analysis) {
  ComparedSession result{.session = analysis.session,
                         .seconds = analysis.summary.durationSeconds,
                         .coverage = analysis.coverage,
                         .sources = {},
                         .lacksEnergy = lacksEnergy(analysis.summary.powerSegments)};
  for (SourceEnergy& energy : energyBySource(analysis.summary.powerSegments)) {
    std::vector<double> watts = wattsOf(analysis.series, energy.sourceKind);
    ComparedSource source{.energy = std::move(energy), .watts = std::move(watts)};
    for (const PowerSessionPowerSegment& segment : analysis.summary.powerSegments) {
      if (segment.sourceKind != source.energy.sourceKind || segment.wattSampleCount == 0) continue;
      source.onBattery = source.onBattery || segment.acConnected == false;
      source.onCharger = source.onCharger || segment.acConnected == true;
      source.onUnknown = source.onUnknown || !segment.acConnected;
    }
    result.sources.push_back(std::move(source));
  }
  return result;
}

}  // namespace quellin
