#include "QuellinCore/Services/SystemReader.h"

namespace quellin {

SystemPowerState SystemReader::readAll() const {
  SystemPowerState state;
  state.battery = batteryService.read();
  state.thermal = thermalService.read();
  state.power = powerService.read();
  state.fans = smcService.readFans();
  state.sensors = readTemperatures();
  state.timestamp = wallClock->now();
  return state;
}

// The first source that has any wins; the lists are never merged, and later sources are not asked.
std::vector<TemperatureSensor> SystemReader::readTemperatures() const {
  if (auto sensors = smcService.readTemperatures(); !sensors.empty()) return sensors;
  if (auto sensors = privilegedSMCHelperService.readTemperatures(); !sensors.empty()) return sensors;
  return hidSensorService.readTemperatures();
}

}  // namespace quellin
