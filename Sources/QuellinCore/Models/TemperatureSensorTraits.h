#pragma once

#include <string_view>

#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {

/// What a sensor measures, as far as its name and key tell. The kinds overlap.
struct TemperatureSensorTraits {
  bool isCPUAverageSensor =
      false;  ///< one core or core cluster; the mean of these is the processor's temperature
  bool isSiliconDieSensor = false;    ///< on the chip; stands in where there is no CPU-average sensor
  bool isPreferredCPUSensor = false;  ///< the whole processor; stands in where there is no silicon-die sensor
  bool isHumanReadable = false;       ///< its name means something to the user
  bool isStorageSensor = false;       ///< a drive or its flash memory
  bool isBatterySensor = false;       ///< a cell, or the gauge beside it
  bool isWirelessSensor = false;      ///< Wi-Fi
  bool isMemorySensor = false;        ///< main memory
  bool isAmbientSensor = false;       ///< around the machine: ambient air, palm rest
  std::string_view displayLabel;      ///< text to show; points into the sensor's name or at a fixed text

  bool operator==(const TemperatureSensorTraits&) const = default;
};

/// The traits of `sensor`, which must outlive the label. Names are compared without regard to the case of
/// ASCII letters, keys exactly.
[[nodiscard]] TemperatureSensorTraits traitsOf(const TemperatureSensor& sensor);

}  // namespace quellin
