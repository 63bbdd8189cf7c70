#include "QuellinCore/Platform/PlatformSources.h"

namespace quellin {

PlatformSources PlatformSources::native() {
  return {.smc = nativeSMCSource(),
          .hid = nativeHIDSensorSource(),
          .battery = nativeBatterySource(),
          .energy = nativeEnergySource(),
          .thermal = nativeThermalSource(),
          .processes = nativeProcessSource()};
}

std::vector<SourceDiagnosis> PlatformSources::diagnose() const {
  return {smc->diagnose(),    hid->diagnose(),     battery->diagnose(),
          energy->diagnose(), thermal->diagnose(), processes->diagnose()};
}

}  // namespace quellin
