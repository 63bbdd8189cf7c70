#pragma once

#include <cstdint>

#include "QuellinCore/Models/PropertyTable.h"

namespace quellin::darwin {

/// Tenths of a kelvin, as the gauge of a battery counts, as hundredths of a degree Celsius. Ends the process
/// on overflow.
[[nodiscard]] std::int64_t hundredthsOfCelsius(std::int64_t tenthsOfKelvin);

/// Puts hundredths of a degree Celsius under "Temperature", where macOS has tenths of a kelvin:
/// "VirtualTemperature", which is in that unit, where the registry has it as an integer, else the converted
/// gauge value. A temperature that is no integer stays as it is.
void convertTemperature(PropertyTable& registry);

}  // namespace quellin::darwin
