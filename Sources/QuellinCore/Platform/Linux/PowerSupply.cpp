#include "QuellinCore/Platform/Linux/PowerSupply.h"

#include <array>
#include <utility>

namespace quellin {
namespace {

template <class Value>
struct PropertyFile {
  const char* file;
  std::optional<Value> PowerSupply::* member;
};

constexpr std::array texts = {
    PropertyFile{"type", &PowerSupply::type},
    PropertyFile{"scope", &PowerSupply::scope},
    PropertyFile{"status", &PowerSupply::status},
    PropertyFile{"health", &PowerSupply::health},
    PropertyFile{"serial_number", &PowerSupply::serialNumber},
};

constexpr std::array numbers = {
    PropertyFile{"present", &PowerSupply::present},
    PropertyFile{"online", &PowerSupply::online},
    PropertyFile{"capacity", &PowerSupply::capacity},
    PropertyFile{"charge_now", &PowerSupply::chargeNow},
    PropertyFile{"charge_full", &PowerSupply::chargeFull},
    PropertyFile{"charge_full_design", &PowerSupply::chargeFullDesign},
    PropertyFile{"energy_now", &PowerSupply::energyNow},
    PropertyFile{"energy_full", &PowerSupply::energyFull},
    PropertyFile{"energy_full_design", &PowerSupply::energyFullDesign},
    PropertyFile{"voltage_now", &PowerSupply::voltageNow},
    PropertyFile{"voltage_min_design", &PowerSupply::voltageMinDesign},
    PropertyFile{"voltage_max", &PowerSupply::voltageMax},
    PropertyFile{"current_now", &PowerSupply::currentNow},
    PropertyFile{"current_avg", &PowerSupply::currentAverage},
    PropertyFile{"current_max", &PowerSupply::currentMax},
    PropertyFile{"power_now", &PowerSupply::powerNow},
    PropertyFile{"temp", &PowerSupply::temperature},
    PropertyFile{"cycle_count", &PowerSupply::cycleCount},
    PropertyFile{"time_to_empty_now", &PowerSupply::timeToEmptyNow},
    PropertyFile{"time_to_empty_avg", &PowerSupply::timeToEmptyAverage},
    PropertyFile{"time_to_full_now", &PowerSupply::timeToFullNow},
    PropertyFile{"time_to_full_avg", &PowerSupply::timeToFullAverage},
};

template <class Value>
void keep(PowerSupply& supply, std::optional<Value> PowerSupply::* member, const FileTree& sys,
          const std::string& path, std::expected<Value, SystemError> result) {
  if (result) {
    supply.*member = *std::move(result);
  } else if (!saysAbsent(result.error())) {
    supply.faults.push_back({sys.displayPath(path), result.error()});
  }
}

PowerSupply readPowerSupply(const FileTree& sys, std::string name) {
  PowerSupply supply;
  supply.name = std::move(name);
  const std::string directory = std::string{powerSupplyDirectory} + "/" + supply.name + "/";
  for (const auto& [file, member] : texts) {
    keep(supply, member, sys, directory + file, readText(sys, directory + file));
  }
  for (const auto& [file, member] : numbers) {
    keep(supply, member, sys, directory + file, readInteger(sys, directory + file));
  }
  return supply;
}

bool belongsToPeripheral(const PowerSupply& supply) { return supply.scope == "Device"; }

}  // namespace

std::expected<std::vector<PowerSupply>, SystemError> readPowerSupplies(const FileTree& sys) {
  auto names = classEntries(sys, powerSupplyDirectory);
  if (!names) return std::unexpected(names.error());
  std::vector<PowerSupply> supplies;
  for (std::string& name : *names) supplies.push_back(readPowerSupply(sys, std::move(name)));
  return supplies;
}

bool isSystemBattery(const PowerSupply& supply) {
  return supply.type == "Battery" && !belongsToPeripheral(supply) && supply.present != 0;
}

bool isExternalSupply(const PowerSupply& supply) {
  return supply.type && *supply.type != "Battery" && *supply.type != "UPS" && !belongsToPeripheral(supply);
}

bool isOnline(const PowerSupply& supply) { return supply.online == 1 || supply.online == 2; }

}  // namespace quellin
