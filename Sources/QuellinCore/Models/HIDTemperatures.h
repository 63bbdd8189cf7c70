#pragma once

#include <span>
#include <vector>

#include "QuellinCore/Models/HIDTemperatureService.h"
#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {

/// The plausible readings (see `isPlausibleTemperature`) among the answers of the sensor hub, sorted by name
/// in byte order; equal names keep the order of `services`. The key of a reading is its name with underscores
/// for spaces, followed by "_1", "_2", ... from the second plausible reading with that key on; a service
/// without a name is "Unknown".
[[nodiscard]] std::vector<TemperatureSensor> plausibleTemperatures(
    std::span<const HIDTemperatureService> services);

}  // namespace quellin
