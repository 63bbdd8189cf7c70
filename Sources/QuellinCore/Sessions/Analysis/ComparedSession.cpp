#include "QuellinCore/Sessions/Analysis/ComparedSession.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/RawValue.h"

namespace quellin {
namespace {

bool lacksEnergy(const std::vector<PowerSessionPowerSegment>& segments) {
  return std::ranges::any_of(segments, [&](const PowerSessionPowerSegment& segment) {
    return !segment.totalWattHours || segment.sourceKind != segments.front().sourceKind;
  });
}

Supply supplyOf(std::string_view kind, const std::vector<PowerSessionPowerSegment>& segments) {
  Supply supply;
  for (const PowerSessionPowerSegment& segment : segments) {
    if (segment.sourceKind != kind || segment.wattSampleCount == 0) continue;
    supply.onBattery = supply.onBattery || segment.acConnected == false;
    supply.onCharger = supply.onCharger || segment.acConnected == true;
    supply.onUnknown = supply.onUnknown || !segment.acConnected;
  }
  return supply;
}

}  // namespace

bool isCompleted(const PowerSessionMetadataDTO& session) {
  return session.status == rawValue(PowerSessionStatus::completed);
}

ComparedSession comparedSession(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session) {
  std::map<std::string, std::vector<double>, std::less<>> watts;
  const SessionReport report =
      store.report(session, {.sample = [&](const StoredSample&, const PowerSamplePoint& point) {
                     if (point.watts) watts[point.sourceKind].push_back(*point.watts);
                   }});
  const std::vector<PowerSessionPowerSegment>& segments = report.summary.powerSegments;
  ComparedSession result{.session = report.session,
                         .seconds = report.summary.durationSeconds,
                         .coverage = report.coverage,
                         .sources = {},
                         .lacksEnergy = lacksEnergy(segments)};
  for (SourceEnergy& energy : energyBySource(segments)) {
    const Supply supply = supplyOf(energy.sourceKind, segments);
    std::vector<double>& readings = watts[energy.sourceKind];
    result.sources.push_back({.energy = std::move(energy), .watts = std::move(readings), .supply = supply});
  }
  return result;
}

}  // namespace quellin
