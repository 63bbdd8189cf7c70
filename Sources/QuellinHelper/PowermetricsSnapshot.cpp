#include "QuellinHelper/PowermetricsSnapshot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "QuellinCore/Support/Text.h"
#include "QuellinHelper/PowermetricsSearch.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

namespace quellin {
namespace {

constexpr std::size_t mostProcesses = 12;
constexpr std::size_t headLength = 4096;

/// One component whose power is searched for.
struct Component {
  std::string_view name;
  std::array<std::string_view, 1> exactKeys;
  std::array<std::string_view, 2> tokens;
  std::optional<double> ProTelemetrySnapshot::* watts;
};

constexpr std::array components{Component{.name = "cpu",
                                          .exactKeys = {"cpu_power"},
                                          .tokens = {"cpu", "power"},
                                          .watts = &ProTelemetrySnapshot::cpuPowerWatts},
                                Component{.name = "gpu",
                                          .exactKeys = {"gpu_power"},
                                          .tokens = {"gpu", "power"},
                                          .watts = &ProTelemetrySnapshot::gpuPowerWatts},
                                Component{.name = "ane",
                                          .exactKeys = {"ane_power"},
                                          .tokens = {"ane", "power"},
                                          .watts = &ProTelemetrySnapshot::anePowerWatts}};

// A NaN has no place in an order.
double rank(const ProProcessEnergy& row) {
  const double impact = row.energyImpact.value_or(0);
  return std::isnan(impact) ? 0 : impact;
}

/// The rows of the highest rank, highest first; rows of equal rank stay in order.
std::vector<ProProcessEnergy> highestRows(const std::vector<ProProcessEnergy>& rows) {
  std::vector<std::pair<double, std::size_t>> order;  // lower comes first
  order.reserve(rows.size());
  for (const ProProcessEnergy& row : rows) order.emplace_back(-rank(row), order.size());
  std::ranges::sort(order);
  order.resize(std::min(order.size(), mostProcesses));
  std::vector<ProProcessEnergy> highest;
  highest.reserve(order.size());
  for (const auto& [unused, index] : order) highest.push_back(rows[index]);
  return highest;
}

/// Fills the component powers and returns how each was found, joined with ", ".
std::string findPowers(std::span<const PropertyListNode> samples, ProTelemetrySnapshot& snapshot) {
  std::string found;
  for (const Component& component : components) {
    const auto number = PowermetricsSearch::locatedNumber(samples, component.exactKeys, component.tokens);
    if (!number) continue;
    snapshot.*component.watts = number->watts;
    found += (found.empty() ? "" : ", ") + std::string{component.name} + "=" +
             PowermetricsSearch::provenanceSummary(*number);
  }
  return found;
}

std::optional<std::string> headOf(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, headLength);
  return isValidUTF8(head) ? std::optional{std::string{head}} : std::nullopt;
}

}  // namespace

ProTelemetrySnapshot failureSnapshot(const CommandResult& result) {
  ProTelemetrySnapshot snapshot;
  snapshot.source = powermetricsSource;
  snapshot.error = result.errorText.value_or("powermetrics exited with status " +
                                             std::to_string(result.terminationStatus));
  return snapshot;
}

ProTelemetrySnapshot snapshotFromOutput(std::string_view outputData) {
  ProTelemetrySnapshot snapshot;
  snapshot.source = "powermetrics --show-process-energy";
  const std::vector<PropertyList> lists = parsePropertyListStream(outputData);
  if (lists.empty()) {
    snapshot.rawSampleSummary = headOf(outputData);
    snapshot.error = "powermetrics returned no parseable plist samples";
    return snapshot;
  }

  std::vector<PropertyListNode> samples;
  samples.reserve(lists.size());
  for (const PropertyList& list : lists) samples.push_back(list.root());
  std::vector<ProProcessEnergy> rows;
  for (const PropertyListNode& sample : samples) PowermetricsSearch::collectProcesses(sample, rows);
  const std::string powers = findPowers(samples, snapshot);

  snapshot.isAvailable = true;
  snapshot.processes = highestRows(rows);
  snapshot.rawSampleSummary = "Parsed " + std::to_string(samples.size()) + " plist sample(s), " +
                              std::to_string(rows.size()) + " process energy row(s); power keys: " + powers;
  return snapshot;
}

}  // namespace quellin
