#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Platform/HIDSensorSource.h"

namespace quellin {

/// Reads the temperature sensors that need no privilege. Holds no state of its own and may be called from any
/// thread.
class HIDSensorService {
 public:
  /// `source` must not be null.
  explicit HIDSensorService(std::shared_ptr<HIDSensorSource> source = nativeHIDSensorSource());

  /// The plausible readings, sorted by name; empty when the host has none.
  [[nodiscard]] std::vector<TemperatureSensor> readTemperatures() const;

 private:
  std::shared_ptr<HIDSensorSource> source_;
};

}  // namespace quellin
