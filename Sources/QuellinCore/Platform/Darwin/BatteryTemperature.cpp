#include "QuellinCore/Platform/Darwin/BatteryTemperature.h"

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin::darwin {

std::int64_t hundredthsOfCelsius(std::int64_t tenthsOfKelvin) {
  constexpr std::int64_t freezingPoint = 27315;  // hundredths of a kelvin
  return checkedSub(checkedMul(tenthsOfKelvin, 10), freezingPoint);
}

void convertTemperature(PropertyTable& registry) {
  if (const auto inCelsius = registry.integer("VirtualTemperature")) {
    registry.set("Temperature", *inCelsius);
  } else if (const auto inKelvin = registry.integer("Temperature")) {
    registry.set("Temperature", hundredthsOfCelsius(*inKelvin));
  }
}

}  // namespace quellin::darwin
