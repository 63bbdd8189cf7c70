#include "QuellinCore/Models/HIDTemperatures.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace quellin {
namespace {

// Hands out each key once: the first user of a base gets it as it is, later ones with a number.
class KeyMaker {
 public:
  std::string keyFor(std::string name) {
    std::ranges::replace(name, ' ', '_');
    const int earlierUses = uses_[name]++;
    return earlierUses == 0 ? name : name + "_" + std::to_string(earlierUses);
  }

 private:
  std::map<std::string, int> uses_;
};

}  // namespace

std::vector<TemperatureSensor> plausibleTemperatures(std::span<const HIDTemperatureService> services) {
  std::vector<TemperatureSensor> sensors;
  KeyMaker keys;
  for (const HIDTemperatureService& service : services) {
    if (!service.temperature || !isPlausibleTemperature(*service.temperature)) continue;
    std::string name = service.product.value_or("Unknown");
    std::string key = keys.keyFor(name);
    sensors.push_back({.key = std::move(key), .name = std::move(name), .temperature = *service.temperature});
  }
  std::ranges::stable_sort(sensors, {}, &TemperatureSensor::name);
  return sensors;
}

}  // namespace quellin
