#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {

/// What an energy counter of the processor counts.
enum class EnergyDomain {
  package,   ///< all of one processor package: cores, graphics, cache
  graphics,  ///< the graphics within a package
  memory,    ///< the memory of a package, not part of it
};

/// One counter that the totals are made of.
struct EnergyZone {
  EnergyDomain domain = EnergyDomain::package;
  std::string directory;                            ///< below /sys
  std::optional<std::int64_t> maxRangeMicrojoules;  ///< the counter wraps to 0 after this value

  bool operator==(const EnergyZone&) const = default;
};

/// One reading of a zone's counter.
using EnergyCount = std::expected<std::int64_t, SystemError>;

/// Where the kernel lists energy counters, below /sys.
inline constexpr const char* powercapDirectory = "class/powercap";

/// The zones that the totals are made of, in natural order. The cores are left out because their package
/// holds them, the whole platform ("psys") because it holds the packages, and the memory-mapped copies
/// ("intel-rapl-mmio") because they count the same energy again. A zone whose name cannot be read may belong
/// to any total, so then there are no zones.
[[nodiscard]] std::expected<std::vector<EnergyZone>, ReadFault> readEnergyZones(const FileTree& sys);

/// The path of the zone's counter, below /sys.
[[nodiscard]] std::string energyCounterPath(const EnergyZone& zone);

/// The counter as it stands, in µJ.
[[nodiscard]] EnergyCount readEnergyCount(const FileTree& sys, const EnergyZone& zone);

}  // namespace quellin
