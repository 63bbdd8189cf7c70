#include "Support/KnownSession.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "Support/ProcessRows.h"

namespace quellin::testing_support {
namespace {

constexpr Instant start = instantAt(1741046400);

// The wave, in parts of a watt.
constexpr double parts = 64;
constexpr std::int64_t period = 1024;
constexpr std::int64_t half = period / 2;
constexpr std::int64_t base = 8 * 64;

constexpr std::int64_t fanSteps = 700;
constexpr std::int64_t temperatureSteps = 512;
constexpr std::int64_t pressurePeriod = 5000;
constexpr std::int64_t percentSteps = 64;
constexpr std::int64_t samplesPerPercent = 900;
constexpr std::int64_t telemetryPeriod = 60;
constexpr std::int64_t activityPeriod = 10;

constexpr std::int64_t partsAt(std::int64_t sample) {
  const std::int64_t phase = sample % period;
  return base + std::min(phase, period - phase);
}

constexpr double wattsAt(std::int64_t sample) { return static_cast<double>(partsAt(sample)) / parts; }

// Twice the area under the wave from the first sample to this one, in parts: the wave is straight between two
// samples, so that this is what the trapezoids add up to.
constexpr std::int64_t twiceAreaTo(std::int64_t sample) {
  const std::int64_t phase = sample % period;
  const std::int64_t rest = period - phase;
  const std::int64_t begun = phase <= half ? phase * phase : 2 * half * half - rest * rest;
  return 2 * base * sample + sample / period * 2 * half * half + begun;
}

constexpr std::int64_t percentAt(std::int64_t sample) {
  return 20 + sample / samplesPerPercent % percentSteps;
}

// Most between `first` and `last`; all of a period shows the peak.
double mostWatts(std::int64_t first, std::int64_t last) {
  double most = 0;
  for (std::int64_t sample = first; sample <= std::min(last, first + period); ++sample)
    most = std::max(most, wattsAt(sample));
  return most;
}

double leastWatts(std::int64_t first, std::int64_t last) {
  double least = wattsAt(first);
  for (std::int64_t sample = first; sample <= std::min(last, first + period); ++sample)
    least = std::min(least, wattsAt(sample));
  return least;
}

// Something between 35 and 51 degrees, as a sensor gives it.
double noisyDegrees(std::int64_t sample, std::size_t sensor) {
  constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;
  const std::uint64_t hash = (static_cast<std::uint64_t>(sample) * 64 + sensor) * golden >> 40U;
  return static_cast<double>(35.0F + static_cast<float>(hash) / 1048576.0F);
}

// Takes the value that is known when `found` is as near to it as rounding allows.
bool settle(std::optional<double>& found, const std::optional<double>& known, double roundings) {
  constexpr double halfUnit = 0x1p-53;
  if (!found || !known) return found == known;
  if (!(std::abs(*found - *known) <= roundings * halfUnit * *known)) return false;
  found = known;
  return true;
}

}  // namespace

KnownSession::KnownSession(Seconds interval) : interval_(interval) {
  model_.battery.emplace();
  model_.battery->voltage = 12.5;
  model_.battery->health = "Good";
  model_.power.emplace();
  model_.thermal.state = ThermalState::nominal;
  model_.fans = {{.id = 0, .name = "Fan 0", .currentRPM = 1200, .minRPM = 1200, .maxRPM = 5777},
                 {.id = 1, .name = "Fan 1", .currentRPM = 1200, .minRPM = 1200, .maxRPM = 5777}};
  for (int sensor = 0; sensor < 40; ++sensor) {
    const std::string number = std::to_string(sensor);
    model_.sensors.push_back({"T" + number, "CPU Performance Core " + number, 0});
  }
}

Instant KnownSession::instantOf(std::int64_t sample) const {
  return start + static_cast<double>(sample) * interval_;
}

SystemPowerState KnownSession::state(std::int64_t sample) const {
  SystemPowerState state = model_;
  state.timestamp = instantOf(sample);
  state.battery->acConnected = sample / segmentLength % 2 == 1;
  state.battery->chargePercent = percentAt(sample);
  const double watts = wattsAt(sample);
  state.power->systemPower = watts;
  state.power->cpuPower = watts / 2;
  state.power->gpuPower = watts / 4;
  state.power->ramPower = watts / 4;
  state.thermal.pressure = sample % pressurePeriod == pressurePeriod - 1 ? 3 : 1;
  state.fans[0].currentRPM = 1200 + sample % fanSteps;
  for (std::size_t sensor = 1; sensor < state.sensors.size(); ++sensor)
    state.sensors[sensor].temperature = noisyDegrees(sample, sensor);
  state.sensors[0].temperature = 60 + static_cast<double>(sample % temperatureSteps) / 16;
  return state;
}

std::optional<ProTelemetrySnapshot> KnownSession::telemetry(std::int64_t sample) const {
  if (sample % telemetryPeriod != 0) return std::nullopt;
  return testing_support::telemetry(instantOf(sample).time_since_epoch().count(),
                                    {energyRow("compiler", 3.8125), energyRow("idle", 0.0)});
}

std::vector<ProcessActivityInfo> KnownSession::activities() {
  return {activity("compiler", 2.5), activity("browser", 0.75), activity("idle", 0)};
}

double KnownSession::wattHours(std::int64_t from, std::int64_t to) const {
  const auto twiceArea = static_cast<double>(twiceAreaTo(to) - twiceAreaTo(from));
  return twiceArea / (2 * parts) * interval_.count() / 3600;
}

PowerSessionPowerSegment KnownSession::segment(std::int64_t index, std::int64_t samples) const {
  const std::int64_t first = index * segmentLength;
  const std::int64_t last = std::min(first + segmentLength, samples) - 1;
  const std::int64_t count = last - first + 1;
  PowerSessionPowerSegment segment;
  segment.index = index;
  segment.sourceKind = "ioReportSiliconPower";
  segment.sourceLabel = "IOReport silicon power";
  segment.acConnected = index % 2 == 1;
  segment.startedAt = instantOf(first);
  segment.endedAt = instantOf(last);
  segment.durationSeconds = static_cast<double>(count - 1) * interval_.count();
  segment.sampleCount = segment.wattSampleCount = count;
  segment.minWatts = leastWatts(first, last);
  segment.maxWatts = mostWatts(first, last);
  segment.averageWatts = segment.minWatts;
  if (count > 1) {
    segment.totalWattHours = wattHours(first, last);
    segment.averageWatts = *segment.totalWattHours * 3600 / segment.durationSeconds;
  }
  segment.batteryPercentStart = percentAt(first);
  segment.batteryPercentEnd = percentAt(last);
  segment.batteryPercentDelta = percentAt(last) - percentAt(first);
  return segment;
}

PowerSessionSummary KnownSession::summary(std::int64_t samples) const {
  PowerSessionSummary known;
  if (samples == 0) return known;
  const std::int64_t last = samples - 1;
  known.durationSeconds = static_cast<double>(last) * interval_.count();
  known.sampleCount = known.wattSampleCount = samples;
  known.minWatts = leastWatts(0, last);
  known.maxWatts = mostWatts(0, last);
  known.averageWatts = known.minWatts;
  if (samples > 1) {
    known.totalWattHours = wattHours(0, last);
    known.averageWatts = *known.totalWattHours * 3600 / known.durationSeconds;
  }
  known.batteryPercentStart = percentAt(0);
  known.batteryPercentEnd = percentAt(last);
  known.batteryPercentDelta = percentAt(last) - percentAt(0);
  known.maxThermalPressure = samples >= pressurePeriod ? 3 : 1;
  known.maxTemperature = 60 + static_cast<double>(std::min(last, temperatureSteps - 1)) / 16;
  known.maxFanRPM = 1200 + std::min(last, fanSteps - 1);
  for (std::int64_t index = 0; index * segmentLength < samples; ++index)
    known.powerSegments.push_back(segment(index, samples));
  // A measurement is due with the first sample, for which telemetry stands in, and so happens with the
  // second.
  const std::int64_t measurements = samples < 2 ? 0 : (samples - 2) / activityPeriod + 1;
  const auto add = [&](const char* name, const char* source, double score, const char* confidence) {
    if (score > 0) known.topContributors.push_back({name, source, score, confidence});
  };
  const auto snapshots = static_cast<double>(last / telemetryPeriod + 1);
  add("compiler", "powermetrics", 3.8125 * snapshots, "derived");
  add("compiler", "proc_pid_rusage", 2.5 * static_cast<double>(measurements), "estimated");
  add("browser", "proc_pid_rusage", 0.75 * static_cast<double>(measurements), "estimated");
  std::ranges::sort(known.topContributors, std::ranges::greater(), &PowerSessionContributor::score);
  return known;
}

std::string KnownSession::difference(PowerSessionSummary found) const {
  constexpr double otherOperations = 8;
  const auto known = summary(found.sampleCount);
  const double roundings = static_cast<double>(found.sampleCount) + otherOperations;
  const auto agrees = [&](auto& figures, const auto& wanted) {
    return settle(figures.totalWattHours, wanted.totalWattHours, roundings) &&
           settle(figures.averageWatts, wanted.averageWatts, roundings);
  };
  const std::string of = " of " + std::to_string(found.sampleCount) + " samples";
  if (!agrees(found, known)) return "the energy" + of;
  if (found.powerSegments.size() != known.powerSegments.size()) return "the number of segments" + of;
  for (std::size_t index = 0; index < known.powerSegments.size(); ++index) {
    if (!agrees(found.powerSegments[index], known.powerSegments[index]) ||
        found.powerSegments[index] != known.powerSegments[index])
      return "segment " + std::to_string(index) + of;
  }
  if (found.topContributors != known.topContributors) return "the processes" + of;
  return found == known ? "" : "a count, a duration or an extreme" + of;
}

}  // namespace quellin::testing_support
