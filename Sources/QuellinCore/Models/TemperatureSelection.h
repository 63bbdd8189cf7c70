#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/TemperatureDisplayReading.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Models/TemperatureSensorTraits.h"

namespace quellin {

/// A list of sensors, each looked at once, and the questions that the display asks of it. Keeps pointers to
/// the sensors, which must outlive it. Never changes: any thread may ask it, as long as none changes the
/// sensors.
class TemperatureSelection {
 public:
  /// One question about a sensor.
  using Trait = bool TemperatureSensorTraits::*;
  using Reading = TemperatureDisplayReading;  ///< one row of a display

  explicit TemperatureSelection(std::span<const TemperatureSensor> sensors);  ///< looks at each once
  /// A sensor and what it measures.
  struct Entry {
    const TemperatureSensor* sensor = nullptr;  ///< points into the list that was given; never null
    TemperatureSensorTraits traits;             ///< valid as long as the sensor

    /// The sensor's own row: its key as identifier, its display label.
    [[nodiscard]] Reading reading() const;
  };

  /// All sensors, in input order.
  [[nodiscard]] std::span<const Entry> entries() const { return entries_; }

  /// The first sensor in input order that measures the whole processor; null when none does.
  [[nodiscard]] const Entry* preferredCPUSensor() const;

  /// The hottest sensor that has the trait, the earliest among equals; null when none has.
  [[nodiscard]] const Entry* highestMatchingSensor(Trait trait) const;

  /// Mean temperature of the sensors that have the trait, summed in input order; no value when none has.
  [[nodiscard]] std::optional<double> meanTemperature(Trait trait) const;

  /// The hottest CPU-average sensor as "CPU Peak", or else the hottest silicon-die sensor as "Silicon Peak".
  [[nodiscard]] std::optional<Reading> siliconPeakReading() const;

  /// The battery's own temperature where it is above 0, or else that of the hottest battery sensor.
  [[nodiscard]] std::optional<Reading> batteryReading(const std::optional<BatteryInfo>& battery) const;

  /// The hottest sensor that has the trait, as a row with this identifier and label; no value when none has.
  [[nodiscard]] std::optional<Reading> categoryReading(Trait trait, std::string_view id,
                                                       std::string_view label) const;

  /// The hottest memory sensor as "Memory".
  [[nodiscard]] std::optional<Reading> memoryReading() const;

  /// The hottest sensor that tells the temperature around the machine, under its display label.
  [[nodiscard]] std::optional<Reading> ambientReading() const;

 private:
  std::vector<Entry> entries_;
};

}  // namespace quellin
