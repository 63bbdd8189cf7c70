#include "QuellinCore/Sessions/SessionFigures.h"

#include <iterator>
#include <string>
#include <vector>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

template <class T>
void raise(std::optional<T>& largest, const std::optional<T>& value) {
  if (value && (!largest || *value > *largest)) largest = value;
}

// Only what was open at the last update, and what came after it, is not there yet or has changed.
void updateSegments(std::vector<PowerSessionPowerSegment>& segments,
                    const PowerSegmentAccumulator& accumulator) {
  if (!segments.empty()) segments.pop_back();
  const auto& finished = accumulator.segments();
  segments.insert(segments.end(), std::next(finished.begin(), std::ssize(segments)), finished.end());
  if (accumulator.current()) segments.push_back(accumulator.current()->materialize());
}

}  // namespace

void SessionFigures::ingest(const PowerSamplePoint& point) {
  sampleCount = checkedAdd(sampleCount, 1);
  segmentAccumulator.ingest(point);
  if (point.watts) watts.ingest({point.timestamp, *point.watts});
}

void SessionFigures::ingest(const SampleMaxima& maxima) {
  raise(maxThermalPressure, std::optional(maxima.thermalPressure));
  raise(maxFanRPM, maxima.fanRPM);
  raise(maxTemperature, maxima.temperature);
}

void SessionFigures::update(PowerSessionSummary& summary, double durationSeconds) const {
  updateSegments(summary.powerSegments, segmentAccumulator);
  const bool isMixed = hasMixedSources(summary.powerSegments);
  summary.durationSeconds = durationSeconds;
  summary.sampleCount = sampleCount;
  summary.wattSampleCount = watts.wattSampleCount;
  summary.averageWatts = isMixed ? std::nullopt : watts.averageWatts(durationSeconds);
  summary.averageWattsNote =
      isMixed ? std::optional(std::string(PowerSessionSummary::mixedSourcesNote)) : std::nullopt;
  summary.minWatts = watts.minWatts;
  summary.maxWatts = watts.maxWatts;
  summary.totalWattHours = isMixed ? std::nullopt : watts.energy();
  summary.totalWattHoursNote = summary.averageWattsNote;
  summary.batteryPercentStart = battery.batteryPercentStart;
  summary.batteryPercentEnd = battery.batteryPercentEnd;
  summary.batteryPercentDelta = battery.delta();
  summary.maxThermalPressure = maxThermalPressure.value_or(0);
  summary.maxTemperature = maxTemperature;
  summary.maxFanRPM = maxFanRPM;
  summary.topContributors = contributors.top();
}

}  // namespace quellin
