#include "QuellinCore/Models/TemperatureInsights.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

#include "QuellinCore/Models/TemperatureSelection.h"
#include "QuellinCore/Support/LetterCase.h"

namespace quellin {
namespace {

using Reading = TemperatureDisplayReading;
using Entry = TemperatureSelection::Entry;
using Traits = TemperatureSensorTraits;

constexpr std::size_t menuRows = 3;
constexpr std::size_t dashboardRows = 12;

std::optional<Reading> representative(const TemperatureSelection& selection,
                                      const std::optional<BatteryInfo>& battery) {
  if (const auto mean = selection.meanTemperature(&Traits::isCPUAverageSensor))
    return Reading{"cpu_avg", "CPU Avg", *mean};
  if (const auto mean = selection.meanTemperature(&Traits::isSiliconDieSensor)) {
    return Reading{"silicon_avg", "Silicon Avg", *mean};
  }
  if (const Entry* preferred = selection.preferredCPUSensor()) {
    return Reading{preferred->sensor->key, "CPU Avg", preferred->sensor->temperature};
  }
  if (auto reading = selection.batteryReading(battery)) return reading;
  if (const Entry* hottest = selection.highestMatchingSensor(&Traits::isHumanReadable))
    return hottest->reading();
  return std::nullopt;
}

void appendUnique(std::vector<Reading>& rows, std::optional<Reading> reading) {
  if (!reading) return;
  const auto hasItsLabel = [&](const Reading& row) { return equalIgnoringCase(row.label, reading->label); };
  if (std::ranges::none_of(rows, hasItsLabel)) rows.push_back(*std::move(reading));
}

bool holdsLabel(const std::vector<Reading>& rows, std::string_view first, std::string_view second) {
  return std::ranges::any_of(rows,
                             [&](const Reading& row) { return row.label == first || row.label == second; });
}

// Hottest first. NaN goes last: it compares with nothing, and an order that says so is no order to sort by.
bool isHotter(const Entry* left, const Entry* right) {
  const double leftTemperature = left->sensor->temperature;
  const double rightTemperature = right->sensor->temperature;
  if (std::isnan(rightTemperature)) return !std::isnan(leftTemperature);
  return leftTemperature > rightTemperature;
}

// The sensors with a meaningful name that no summarising row speaks for already, hottest first.
std::vector<const Entry*> extraSensors(const TemperatureSelection& selection,
                                       const std::vector<Reading>& rows) {
  const bool cpuIsShown = holdsLabel(rows, "CPU Avg", "CPU Peak");
  const bool siliconIsShown = holdsLabel(rows, "Silicon Avg", "Silicon Peak");
  std::vector<const Entry*> extras;
  for (const Entry& entry : selection.entries()) {
    if (!entry.traits.isHumanReadable) continue;
    if (cpuIsShown && entry.traits.isCPUAverageSensor) continue;
    if (siliconIsShown && entry.traits.isSiliconDieSensor) continue;
    extras.push_back(&entry);
  }
  std::ranges::stable_sort(extras, isHotter);
  return extras;
}

// The peak is in both lists: the flag decides whether it comes before or after the other categories.
std::array<std::optional<Reading>, 6> categorySlots(const TemperatureSelection& selection,
                                                    const std::optional<BatteryInfo>& battery,
                                                    bool includePeak) {
  auto peak = selection.siliconPeakReading();
  auto batteryRow = selection.batteryReading(battery);
  auto storage = selection.categoryReading(&Traits::isStorageSensor, "storage", "Storage");
  auto memory = selection.memoryReading();
  auto ambient = selection.ambientReading();
  auto wireless = selection.categoryReading(&Traits::isWirelessSensor, "wireless", "Wireless");
  if (includePeak) return {peak, batteryRow, storage, memory, ambient, wireless};
  return {storage, batteryRow, memory, ambient, wireless, peak};
}

std::vector<Reading> curatedReadings(std::span<const TemperatureSensor> sensors,
                                     const std::optional<BatteryInfo>& battery, bool includePeak,
                                     std::size_t limit) {
  const TemperatureSelection selection(sensors);
  std::vector<Reading> rows;
  appendUnique(rows, representative(selection, battery));
  for (auto& slot : categorySlots(selection, battery, includePeak)) {
    appendUnique(rows, std::move(slot));
    if (rows.size() >= limit) return rows;
  }
  for (const Entry* extra : extraSensors(selection, rows)) {
    if (rows.size() >= limit) break;
    appendUnique(rows, extra->reading());
  }
  return rows;
}

}  // namespace

std::optional<Reading> TemperatureInsights::representativeReading(std::span<const TemperatureSensor> sensors,
                                                                  const std::optional<BatteryInfo>& battery) {
  return representative(TemperatureSelection(sensors), battery);
}

std::vector<Reading> TemperatureInsights::menuHighlights(std::span<const TemperatureSensor> sensors,
                                                         const std::optional<BatteryInfo>& battery) {
  return curatedReadings(sensors, battery, false, menuRows);
}

std::vector<Reading> TemperatureInsights::dashboardReadings(std::span<const TemperatureSensor> sensors,
                                                            const std::optional<BatteryInfo>& battery) {
  return curatedReadings(sensors, battery, true, dashboardRows);
}

}  // namespace quellin
