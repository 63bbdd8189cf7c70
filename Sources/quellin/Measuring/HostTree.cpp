#include "quellin/Measuring/HostTree.h"

#include <filesystem>

#include "quellin/Outcome/Failure.h"

#ifdef __linux__
#include "QuellinCore/Platform/Linux/LinuxBatterySource.h"
#include "QuellinCore/Platform/Linux/LinuxEnergySource.h"
#include "QuellinCore/Platform/Linux/LinuxHIDSensorSource.h"
#include "QuellinCore/Platform/Linux/LinuxProcessSource.h"
#include "QuellinCore/Platform/Linux/LinuxSMCSource.h"
#include "QuellinCore/Platform/Linux/LinuxThermalSource.h"
#endif

namespace quellin::cli {

#ifdef __linux__

PlatformSources hostTree(const std::string& folder) {
  const std::filesystem::path root{folder};
  if (!std::filesystem::is_directory(root / "sys")) {
    throw Failure{ExitStatus::failed,
                  "--source " + folder +
                      ": the folder has no sys/. Name a folder with a copy of a machine's sys/ "
                      "(and proc/), or the file of a trace."};
  }
  const auto sys = directoryTree((root / "sys").string());
  return {.smc = std::make_shared<LinuxSMCSource>(sys),
          .hid = std::make_shared<LinuxHIDSensorSource>(sys),
          .battery = std::make_shared<LinuxBatterySource>(sys),
          .energy = std::make_shared<LinuxEnergySource>(sys),
          .thermal = std::make_shared<LinuxThermalSource>(sys),
          .processes = std::make_shared<LinuxProcessSource>(directoryTree((root / "proc").string()))};
}

#else

PlatformSources hostTree(const std::string& folder) {
  throw Failure{
      ExitStatus::failed,
      "--source " + folder + " is a folder; kernel files can be read on Linux only. Name a trace instead."};
}

#endif

}  // namespace quellin::cli
