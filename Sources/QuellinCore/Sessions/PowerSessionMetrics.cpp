#include "QuellinCore/Sessions/PowerSessionMetrics.h"

#include <algorithm>

#include "QuellinCore/Sessions/PowerSource.h"
#include "QuellinCore/Sessions/StoreError.h"
#include "QuellinCore/Sessions/StoredSample.h"
#include "QuellinCore/Sessions/StoredSummary.h"
#include "QuellinCore/Sessions/TimeOrder.h"

namespace quellin::PowerSessionMetrics {
namespace {

PowerSamplePoint pointOfColumns(const SampleColumns& columns) {
  // Whoever is not plugged in draws from the battery; about anybody else the columns say nothing.
  const PowerSource source = columns.acConnected == false
                                 ? powerSource(PowerReadingKind::batteryDischarge, false)
                                 : powerSource(std::nullopt, false);
  return {.timestamp = columns.timestamp,
          .watts = columns.totalWatts,
          .sourceKind = std::string(source.kind),
          .sourceLabel = std::string(source.label),
          .acConnected = columns.acConnected,
          .batteryPercent = columns.batteryPercent};
}

}  // namespace

std::optional<double> totalWatts(const SystemPowerState& state) {
  const auto reading = state.primaryPowerReading();
  return reading ? std::optional(reading->watts) : std::nullopt;
}

std::string totalWattsConfidence(const SystemPowerState& state) {
  const auto reading = state.primaryPowerReading();
  return std::string(reading ? rawValue(reading->confidence) : unavailableReading);
}

std::string powerSourceKind(const SystemPowerState& state) {
  return std::string(powerSource(state.battery, state.power.has_value()).kind);
}

std::string powerSourceLabel(const SystemPowerState& state) {
  return std::string(powerSource(state.battery, state.power.has_value()).label);
}

PowerSamplePoint livePowerPoint(const SystemPowerState& state) {
  PowerSamplePoint point{.timestamp = state.timestamp,
                         .watts = totalWatts(state),
                         .sourceKind = powerSourceKind(state),
                         .sourceLabel = powerSourceLabel(state),
                         .acConnected = {},
                         .batteryPercent = {}};
  if (state.battery) {
    point.acConnected = state.battery->acConnected;
    point.batteryPercent = state.battery->chargePercent;
  }
  return point;
}

std::string inferredPowerSourceKind(const SystemPowerStateDTO& snapshot) {
  return std::string(powerSource(snapshot.battery, snapshot.power.has_value()).kind);
}

std::string inferredPowerSourceLabel(const SystemPowerStateDTO& snapshot) {
  return std::string(powerSource(snapshot.battery, snapshot.power.has_value()).label);
}

PowerSamplePoint storedPowerPoint(const SampleColumns& columns, std::string_view snapshotData,
                                  JSONDecoder& decoder) {
  PowerSamplePoint point = pointOfColumns(columns);
  auto snapshot = decoder.decode<SystemPowerStateDTO>(snapshotData);
  if (!snapshot) return point;
  const PowerSource source = storedPowerSource(*snapshot);
  point.sourceKind = source.kind;
  point.sourceLabel = source.label;
  if (snapshot->battery) {
    point.acConnected = snapshot->battery->acConnected;
    point.batteryPercent = snapshot->battery->chargePercent;
  }
  return point;
}

PowerSamplePoint storedPowerPoint(const PowerSessionSample& sample, JSONDecoder& decoder) {
  return powerPoint(storedSample(sample), decoder);
}

PowerSessionSummary summary(const PowerSession& session,
                            std::vector<std::shared_ptr<PowerSessionSample>> samples, JSONDecoder& decoder) {
  std::ranges::stable_sort(samples, IsEarlier{}, &PowerSessionSample::timestamp);
  StoredSummary result;
  for (const auto& sample : samples) result.ingest(storedSample(*sample), decoder);
  return result.materialize(session);
}

std::vector<PowerSessionContributor> topContributors(
    const std::vector<std::shared_ptr<PowerSessionSample>>& samples, JSONDecoder& decoder) {
  ContributorScores scores;
  for (const auto& sample : samples) scores.add(processData(storedSample(*sample), decoder).contributions);
  return scores.top();
}

}  // namespace quellin::PowerSessionMetrics
