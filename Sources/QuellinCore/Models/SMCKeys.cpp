#include "QuellinCore/Models/SMCKeys.h"

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin::SMCKeys {

std::string fanSpeed(std::size_t index, std::string_view speed) {
  return ("F" + std::to_string(index)).append(speed);
}

// From the eleventh fan on keys are cut to the same four characters, hence the set.
std::set<std::uint32_t> fanSpeeds() {
  std::set<std::uint32_t> codes;
  for (std::size_t index = 0; index < mostFans; ++index) {
    for (const std::string_view speed : {currentSpeed, minimumSpeed, maximumSpeed}) {
      codes.insert(SMCDecoding::fourCharCode(fanSpeed(index, speed)));
    }
  }
  return codes;
}

std::vector<std::uint32_t> all() {
  std::set<std::uint32_t> codes = fanSpeeds();
  codes.insert(SMCDecoding::fourCharCode(fanCount));
  for (const auto& [key, name] : TemperatureSensor::knownSensors()) {
    codes.insert(SMCDecoding::fourCharCode(key));
  }
  return {codes.begin(), codes.end()};
}

}  // namespace quellin::SMCKeys
