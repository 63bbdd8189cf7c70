#include "QuellinCore/Services/SystemReader.h"

#include <utility>

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

SystemReader SystemReader::over(const PlatformSources& sources, PrivilegedSMCHelperService helper,
                                MonotonicClock& monotonicClock, const WallClock& wallClock) {
  return {.batteryService = BatteryService{sources.battery},
          .thermalService = ThermalService{sources.thermal},
          .powerService = PowerService{sources.energy, monotonicClock},
          .smcService = SMCService{sources.smc},
          .privilegedSMCHelperService = std::move(helper),
          .hidSensorService = HIDSensorService{sources.hid},
          .wallClock = &wallClock};
}

// The first source that has any wins; the lists are never merged, and later sources are not asked.
std::vector<TemperatureSensor> SystemReader::readTemperatures() const {
  if (auto sensors = smcService.readTemperatures(); !sensors.empty()) return sensors;
  if (auto sensors = privilegedSMCHelperService.readTemperatures(); !sensors.empty()) return sensors;
  return hidSensorService.readTemperatures();
}

}  // namespace quellin
