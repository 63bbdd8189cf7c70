#include <string>

#include "QuellinCore/Platform/Darwin/ProcessInformation.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"
#include "QuellinCore/Platform/Darwin/ThermalPressure.h"
#include "QuellinCore/Platform/ThermalSource.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::thermalState;

void addMissing(std::string& missing, const std::string& signal) { missing += " Missing: " + signal + "."; }

class DarwinThermalSource final : public ThermalSource {
 public:
  [[nodiscard]] ThermalSignals read() override {
    const darwin::ProcessInformation process;
    ThermalSignals signals;
    signals.stateCode = process.thermalState();
    if (const auto pressure = darwin::readThermalPressure()) signals.pressureState = *pressure;
    signals.isLowPowerMode = process.isLowPowerModeEnabled();
    return signals;
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    const darwin::ProcessInformation process;
    const auto pressure = darwin::readThermalPressure();
    std::string missing;
    if (!process.thermalState()) addMissing(missing, "the state of the process");
    if (!pressure) addMissing(missing, "the thermal pressure (" + pressure.error() + ")");
    if (!process.isLowPowerModeEnabled()) addMissing(missing, "low-power mode");
    if (!pressure && !process.thermalState()) {
      return darwin::faultDiagnosis(
          sourceName,
          {.availability = SourceAvailability::failed, .reason = "No sign of heat can be read." + missing},
          darwin::thermalPressureName);
    }
    return availableSource(sourceName, "The system publishes its signs of heat." + missing,
                           darwin::thermalPressureName);
  }
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<ThermalSource> nativeThermalSource() {
  return std::make_shared<DarwinThermalSource>();
}

}  // namespace quellin
