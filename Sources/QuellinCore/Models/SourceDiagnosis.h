#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// Whether a hardware source can be read on this machine by this process.
enum class SourceAvailability {
  available,     ///< a read right now would give values
  absent,        ///< the host has no such source: nothing is wrong and nothing would help
  notPermitted,  ///< the source is there, this process may not read it
  failed,        ///< the source is there and permitted, reading it failed
};

template <>
inline constexpr std::array rawValues<SourceAvailability>{
    std::string_view{"available"}, std::string_view{"absent"}, std::string_view{"notPermitted"},
    std::string_view{"failed"}};

/// What a source says about itself when a reading is missing. Pure data: the front end decides how to show
/// it.
struct SourceDiagnosis {
  std::string source;  ///< which source, in words: "Battery", "Energy counters"
  SourceAvailability availability = SourceAvailability::absent;  ///< the verdict
  std::string
      reason;  ///< one sentence in plain words; for a failed call the call and the system's error text
  std::optional<std::string> path;    ///< the file, registry entry, library or symbol the verdict rests on
  std::optional<std::string> remedy;  ///< what the user could do; absent when nothing would help

  static constexpr auto fields() {
    return std::tuple{Field{"source", &SourceDiagnosis::source},
                      Field{"availability", &SourceDiagnosis::availability},
                      Field{"reason", &SourceDiagnosis::reason}, Field{"path", &SourceDiagnosis::path},
                      Field{"remedy", &SourceDiagnosis::remedy}};
  }

  bool operator==(const SourceDiagnosis&) const = default;
};

/// The sources by name.
namespace SourceNames {
inline constexpr const char* battery = "Battery";                         ///< `BatterySource`
inline constexpr const char* energyCounters = "Energy counters";          ///< `EnergySource`
inline constexpr const char* processes = "Processes";                     ///< `ProcessSource`
inline constexpr const char* smc = "SMC";                                 ///< `SMCSource`
inline constexpr const char* temperatureSensors = "Temperature sensors";  ///< `HIDSensorSource`
inline constexpr const char* thermalState = "Thermal state";              ///< `ThermalSource`
}  // namespace SourceNames

/// The source can be read; `reason` says what it gives.
[[nodiscard]] SourceDiagnosis availableSource(std::string source, std::string reason, std::string path);

/// The machine has no such source; `reason` says what is not there, `path` where it would be.
[[nodiscard]] SourceDiagnosis absentSource(std::string source, std::string reason, std::string path);

}  // namespace quellin
