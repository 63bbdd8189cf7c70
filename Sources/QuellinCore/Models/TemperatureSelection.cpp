#include "QuellinCore/Models/TemperatureSelection.h"

#include <string>

namespace quellin {
namespace {

using Traits = TemperatureSensorTraits;

}  // namespace

TemperatureSelection::TemperatureSelection(std::span<const TemperatureSensor> sensors) {
  entries_.reserve(sensors.size());
  for (const TemperatureSensor& sensor : sensors) entries_.push_back({&sensor, traitsOf(sensor)});
}

TemperatureSelection::Reading TemperatureSelection::Entry::reading() const {
  return {.id = sensor->key, .label = std::string(traits.displayLabel), .temperature = sensor->temperature};
}

const TemperatureSelection::Entry* TemperatureSelection::preferredCPUSensor() const {
  for (const Entry& entry : entries_) {
    if (entry.traits.isPreferredCPUSensor) return &entry;
  }
  return nullptr;
}

const TemperatureSelection::Entry* TemperatureSelection::highestMatchingSensor(Trait trait) const {
  const Entry* best = nullptr;
  for (const Entry& entry : entries_) {
    if (!(entry.traits.*trait)) continue;
    if (best == nullptr || entry.sensor->temperature > best->sensor->temperature) best = &entry;
  }
  return best;
}

std::optional<double> TemperatureSelection::meanTemperature(Trait trait) const {
  double sum = 0;
  int count = 0;
  for (const Entry& entry : entries_) {
    if (!(entry.traits.*trait)) continue;
    sum += entry.sensor->temperature;
    ++count;
  }
  if (count == 0) return std::nullopt;
  return sum / count;
}

std::optional<TemperatureSelection::Reading> TemperatureSelection::siliconPeakReading() const {
  if (auto peak = categoryReading(&Traits::isCPUAverageSensor, "cpu_peak", "CPU Peak")) return peak;
  return categoryReading(&Traits::isSiliconDieSensor, "silicon_peak", "Silicon Peak");
}

std::optional<TemperatureSelection::Reading> TemperatureSelection::batteryReading(
    const std::optional<BatteryInfo>& battery) const {
  if (battery && battery->temperature > 0) return Reading{"battery", "Battery", battery->temperature};
  return categoryReading(&Traits::isBatterySensor, "battery_sensor", "Battery");
}

std::optional<TemperatureSelection::Reading> TemperatureSelection::categoryReading(
    Trait trait, std::string_view id, std::string_view label) const {
  const Entry* hottest = highestMatchingSensor(trait);
  if (hottest == nullptr) return std::nullopt;
  return Reading{std::string(id), std::string(label), hottest->sensor->temperature};
}

std::optional<TemperatureSelection::Reading> TemperatureSelection::memoryReading() const {
  return categoryReading(&Traits::isMemorySensor, "memory", "Memory");
}

std::optional<TemperatureSelection::Reading> TemperatureSelection::ambientReading() const {
  const Entry* hottest = highestMatchingSensor(&Traits::isAmbientSensor);
  if (hottest == nullptr) return std::nullopt;
  return Reading{"ambient", std::string(hottest->traits.displayLabel), hottest->sensor->temperature};
}

}  // namespace quellin
