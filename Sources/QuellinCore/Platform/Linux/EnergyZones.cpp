#include "QuellinCore/Platform/Linux/EnergyZones.h"

#include <string_view>

namespace quellin {
namespace {

// The driver's name is Intel's, whoever made the processor.
constexpr std::string_view zonePrefix = "intel-rapl:";

std::optional<EnergyDomain> energyDomain(std::string_view zoneName) {
  if (zoneName.starts_with("package-")) return EnergyDomain::package;
  if (zoneName == "uncore") return EnergyDomain::graphics;
  if (zoneName == "dram") return EnergyDomain::memory;
  return std::nullopt;
}

}  // namespace

std::expected<std::vector<EnergyZone>, ReadFault> readEnergyZones(const FileTree& sys) {
  const auto names = classEntries(sys, powercapDirectory);
  if (!names) return std::unexpected(ReadFault{sys.displayPath(powercapDirectory), names.error()});
  std::vector<EnergyZone> zones;
  for (const std::string& name : *names) {
    if (!name.starts_with(zonePrefix)) continue;
    const std::string directory = std::string{powercapDirectory} + "/" + name;
    const auto zoneName = readText(sys, directory + "/name");
    if (!zoneName && !saysAbsent(zoneName.error())) {
      return std::unexpected(ReadFault{sys.displayPath(directory + "/name"), zoneName.error()});
    }
    const auto domain = energyDomain(zoneName.value_or(""));
    if (!domain) continue;
    zones.push_back({.domain = *domain,
                     .directory = directory,
                     .maxRangeMicrojoules = valueOf(readInteger(sys, directory + "/max_energy_range_uj"))});
  }
  return zones;
}

std::string energyCounterPath(const EnergyZone& zone) { return zone.directory + "/energy_uj"; }

EnergyCount readEnergyCount(const FileTree& sys, const EnergyZone& zone) {
  return readInteger(sys, energyCounterPath(zone));
}

}  // namespace quellin
