#include "QuellinCore/Sessions/SampleMaxima.h"

#include <algorithm>
#include <functional>

namespace quellin {
namespace {

template <class Element, class Value>
std::optional<Value> largest(const std::vector<Element>& elements, Value Element::* member) {
  if (elements.empty()) return std::nullopt;
  return std::invoke(member, *std::ranges::max_element(elements, {}, member));
}

}  // namespace

SampleMaxima maxima(const SystemPowerState& state) {
  return {state.thermal.pressure, largest(state.fans, &FanInfo::currentRPM),
          largest(state.sensors, &TemperatureSensor::temperature)};
}

SampleMaxima maxima(const SampleColumns& columns) {
  return {columns.thermalPressure, columns.maxFanRPM, columns.maxTemperature};
}

}  // namespace quellin
