#include "QuellinCore/Platform/Linux/LinuxEnergySource.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Platform/Linux/EnergyTotals.h"
#include "QuellinCore/Platform/Linux/EnergyZones.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::energyCounters;
constexpr const char* permission =
    "Run as root, or let your group read the energy_uj files below /sys/class/powercap (a udev rule can do "
    "that). The "
    "kernel hides them because their steps betray what other programs compute.";

std::vector<EnergyCount> readCounts(const FileTree& sys, const std::vector<EnergyZone>& zones) {
  std::vector<EnergyCount> counts;
  counts.reserve(zones.size());
  for (const EnergyZone& zone : zones) counts.push_back(readEnergyCount(sys, zone));
  return counts;
}

bool hasAny(const std::vector<EnergyCount>& counts) {
  return std::ranges::any_of(counts, [](const EnergyCount& count) { return count.has_value(); });
}

class LinuxEnergyMeasurement final : public EnergyMeasurement {
 public:
  LinuxEnergyMeasurement(std::shared_ptr<const FileTree> sys, std::vector<EnergyZone> zones,
                         std::vector<EnergyCount> before)
      : sys_(std::move(sys)), zones_(std::move(zones)), before_(std::move(before)) {}

  std::optional<std::vector<EnergyChannel>> finish() override {
    const auto after = readCounts(*sys_, zones_);
    if (!hasAny(after)) return std::nullopt;
    std::vector<EnergyZoneGain> gains;
    for (std::size_t index = 0; index < zones_.size(); ++index) {
      const bool known = before_[index] && after[index];
      gains.push_back({zones_[index],
                       known ? counterGain(*before_[index], *after[index], zones_[index].maxRangeMicrojoules)
                             : std::nullopt});
    }
    return energyTotals(gains);
  }

 private:
  std::shared_ptr<const FileTree> sys_;
  std::vector<EnergyZone> zones_;
  std::vector<EnergyCount> before_;
};

}  // namespace

LinuxEnergySource::LinuxEnergySource(std::shared_ptr<const FileTree> sys) : sys_(std::move(sys)) {}

std::unique_ptr<EnergyMeasurement> LinuxEnergySource::begin() {
  auto zones = readEnergyZones(*sys_);
  if (!zones) return nullptr;
  auto counts = readCounts(*sys_, *zones);
  if (!hasAny(counts)) return nullptr;
  return std::make_unique<LinuxEnergyMeasurement>(sys_, *std::move(zones), std::move(counts));
}

SourceDiagnosis LinuxEnergySource::diagnose() {
  const std::string path = sys_->displayPath(powercapDirectory);
  const auto zones = readEnergyZones(*sys_);
  if (!zones) return unreadableSource(sourceName, zones.error(), permission);
  if (zones->empty()) {
    return absentSource(sourceName, "The kernel publishes no energy counter of a processor package.", path);
  }
  std::string names;
  std::vector<ReadFault> faults;
  for (const EnergyZone& zone : *zones) {
    if (const auto count = readEnergyCount(*sys_, zone); !count) {
      faults.push_back({sys_->displayPath(energyCounterPath(zone)), count.error()});
      continue;
    }
    names +=
        (names.empty() ? "" : ", ") + zone.directory.substr(std::string_view{powercapDirectory}.size() + 1);
  }
  if (names.empty()) return unreadableSource(sourceName, faults.front(), permission);
  return availableInPart(sourceName, "Read: " + names + ".", path, faults, permission);
}

[[gnu::visibility("default")]] std::shared_ptr<EnergySource> nativeEnergySource() {
  return std::make_shared<LinuxEnergySource>();
}

}  // namespace quellin
