#include "QuellinCore/Platform/Linux/LinuxThermalSource.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Platform/Linux/CoolingDevice.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::thermalState;
constexpr const char* profilePath = "firmware/acpi/platform_profile";

std::optional<bool> lowPowerMode(const std::expected<std::string, SystemError>& profile) {
  return profile ? std::optional{*profile == "low-power"} : std::nullopt;
}

std::string describe(bool hasState, bool hasProfile) {
  std::string text = hasState ? "Cooling devices give the thermal state."
                              : "No cooling device says how hard the machine throttles.";
  text += hasProfile ? " The platform profile gives low-power mode."
                     : " There is no platform profile to give low-power mode.";
  return text;
}

}  // namespace

LinuxThermalSource::LinuxThermalSource(std::shared_ptr<const FileTree> sys) : sys_(std::move(sys)) {}

ThermalSignals LinuxThermalSource::read() {
  const auto cooling = readCoolingDevices(*sys_);
  return {.stateCode = cooling ? thermalStateCode(cooling->devices) : std::nullopt,
          .pressureState = std::nullopt,
          .isLowPowerMode = lowPowerMode(readText(*sys_, profilePath))};
}

SourceDiagnosis LinuxThermalSource::diagnose() {
  const std::string devicesPath = sys_->displayPath(thermalDirectory);
  const auto cooling = readCoolingDevices(*sys_);
  const auto profile = readText(*sys_, profilePath);
  const bool hasState = cooling && thermalStateCode(cooling->devices).has_value();
  if (hasState || profile) {
    return availableSource(sourceName, describe(hasState, profile.has_value()),
                           hasState ? devicesPath : sys_->displayPath(profilePath));
  }
  std::vector<ReadFault> faults = {{sys_->displayPath(profilePath), profile.error()}};
  const auto devicesFault =
      cooling ? cooling->firstFault : std::optional{ReadFault{devicesPath, cooling.error()}};
  if (devicesFault) faults.insert(faults.begin(), *devicesFault);
  for (const ReadFault& fault : faults) {
    if (!saysAbsent(fault.error)) return unreadableSource(sourceName, fault, std::nullopt);
  }
  return absentSource(sourceName, "The machine has no cooling device that throttles and no platform profile.",
                      devicesPath);
}

[[gnu::visibility("default")]] std::shared_ptr<ThermalSource> nativeThermalSource() {
  return std::make_shared<LinuxThermalSource>();
}

}  // namespace quellin
