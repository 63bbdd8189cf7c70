#include "QuellinCore/Platform/Linux/LinuxSources.h"

#include "QuellinCore/Platform/Linux/LinuxBatterySource.h"
#include "QuellinCore/Platform/Linux/LinuxEnergySource.h"
#include "QuellinCore/Platform/Linux/LinuxHIDSensorSource.h"
#include "QuellinCore/Platform/Linux/LinuxProcessSource.h"
#include "QuellinCore/Platform/Linux/LinuxSMCSource.h"
#include "QuellinCore/Platform/Linux/LinuxThermalSource.h"

namespace quellin {

PlatformSources linuxSources(const std::shared_ptr<const FileTree>& sys,
                             const std::shared_ptr<const FileTree>& proc) {
  return {.smc = std::make_shared<LinuxSMCSource>(sys),
          .hid = std::make_shared<LinuxHIDSensorSource>(sys),
          .battery = std::make_shared<LinuxBatterySource>(sys),
          .energy = std::make_shared<LinuxEnergySource>(sys),
          .thermal = std::make_shared<LinuxThermalSource>(sys),
          .processes = std::make_shared<LinuxProcessSource>(proc)};
}

}  // namespace quellin
