#include "QuellinCore/Platform/Linux/LinuxBatterySource.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "QuellinCore/Platform/Linux/BatteryPack.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::battery;
constexpr const char* permission = "Run as root: the file is readable for its owner only.";

// Firmware can answer with garbage; a figure that no battery has must not reach arithmetic that ends the
// process.
constexpr double largestAmount = 1e9;

std::vector<PowerSupply> systemBatteries(std::span<const PowerSupply> supplies) {
  std::vector<PowerSupply> batteries;
  std::ranges::copy_if(supplies, std::back_inserter(batteries), isSystemBattery);
  return batteries;
}

void setRounded(PropertyTable& table, const char* key, std::optional<double> amount) {
  if (!amount || !(std::abs(*amount) <= largestAmount)) return;
  table.set(key, static_cast<std::int64_t>(std::llround(*amount)));
}

void setText(PropertyTable& table, const char* key, const std::optional<std::string>& text) {
  if (text) table.set(key, *text);
}

// The last and strongest offer of a USB adapter is its rating: µV times µA are millionths of a millionth of a
// watt.
std::optional<double> ratedWatts(const PowerSupply& supply) {
  if (!isOnline(supply) || !supply.voltageMax || !supply.currentMax) return std::nullopt;
  const double watts =
      static_cast<double>(*supply.voltageMax) * 1e-6 * static_cast<double>(*supply.currentMax) * 1e-6;
  return watts >= 0.5 ? std::optional{watts} : std::nullopt;
}

void setExternalPower(PropertyTable& registry, std::span<const PowerSupply> supplies) {
  std::optional<bool> connected;
  for (const PowerSupply& supply : supplies) {
    if (!isExternalSupply(supply) || !supply.online) continue;
    connected = connected.value_or(false) || isOnline(supply);
    PropertyTable adapter;
    setRounded(adapter, "Watts", ratedWatts(supply));
    if (!adapter.properties().empty() && registry.table("AdapterDetails") == nullptr) {
      registry.set("AdapterDetails", std::move(adapter));
    }
  }
  if (connected) registry.set("ExternalConnected", *connected);
}

PropertyTable registryTable(const BatteryPack& pack) {
  PropertyTable registry;
  setRounded(registry, "CurrentCapacity", pack.percent);
  setRounded(registry, "AppleRawCurrentCapacity", pack.chargeNow);
  setRounded(registry, "AppleRawMaxCapacity", pack.chargeFull);
  setRounded(registry, "DesignCapacity", pack.chargeDesign);
  setRounded(registry, "CycleCount", pack.cycleCount);
  setRounded(registry, "Voltage", pack.voltage);
  setRounded(registry, "Amperage", pack.currentAverage);
  setRounded(registry, "InstantAmperage", pack.current);
  setRounded(registry, "Temperature", pack.temperature);
  setRounded(registry, "AvgTimeToEmpty", pack.minutesToEmptyAverage);
  setRounded(registry, "InstantTimeToEmpty", pack.minutesToEmpty);
  setRounded(registry, "AvgTimeToFull", pack.minutesToFullAverage);
  setRounded(registry, "InstantTimeToFull", pack.minutesToFull);
  setText(registry, "BatterySerialNumber", pack.serialNumber);
  if (pack.status) {
    registry.set("IsCharging", pack.status == ChargingStatus::charging);
    registry.set("FullyCharged", pack.status == ChargingStatus::full);
  }
  return registry;
}

bool countsEnergy(const PowerSupply& battery) {
  return !battery.chargeNow && !battery.chargeFull && (battery.energyNow || battery.energyFull);
}

std::string describe(std::span<const PowerSupply> batteries) {
  std::string text;
  for (const PowerSupply& battery : batteries) text += (text.empty() ? "" : ", ") + battery.name;
  text += batteries.size() == 1 ? " is read." : " are read as one battery.";
  if (std::ranges::any_of(batteries, countsEnergy)) {
    text += " The driver counts energy: capacities in mAh are approximate.";
  }
  return text;
}

std::vector<ReadFault> faultsOf(std::span<const PowerSupply> batteries) {
  std::vector<ReadFault> faults;
  for (const PowerSupply& battery : batteries) std::ranges::copy(battery.faults, std::back_inserter(faults));
  return faults;
}

}  // namespace

BatteryTables batteryTables(std::span<const PowerSupply> supplies) {
  std::vector<BatteryPack> packs;
  for (const PowerSupply& battery : systemBatteries(supplies)) packs.push_back(batteryPack(battery));
  if (packs.empty()) return {};
  const BatteryPack whole = combinedPack(packs);
  BatteryTables tables{.registry = registryTable(whole), .powerSource = std::nullopt};
  setExternalPower(*tables.registry, supplies);
  if (whole.health) tables.powerSource = PropertyTable{{"BatteryHealth", *whole.health}};
  return tables;
}

LinuxBatterySource::LinuxBatterySource(std::shared_ptr<const FileTree> sys) : sys_(std::move(sys)) {}

BatteryTables LinuxBatterySource::read() {
  const auto supplies = readPowerSupplies(*sys_);
  return supplies ? batteryTables(*supplies) : BatteryTables{};
}

SourceDiagnosis LinuxBatterySource::diagnose() {
  const std::string path = sys_->displayPath(powerSupplyDirectory);
  const auto supplies = readPowerSupplies(*sys_);
  if (!supplies) return unreadableSource(sourceName, {path, supplies.error()}, permission);
  const auto batteries = systemBatteries(*supplies);
  if (!batteries.empty()) {
    return availableInPart(sourceName, describe(batteries), path + "/" + batteries.front().name,
                           faultsOf(batteries), permission);
  }
  // A supply of unknown type may be the battery.
  for (const PowerSupply& supply : *supplies) {
    if (!supply.type && !supply.faults.empty())
      return unreadableSource(sourceName, supply.faults.front(), permission);
  }
  return absentSource(sourceName, "None of the machine's power supplies is a battery of its own.", path);
}

[[gnu::visibility("default")]] std::shared_ptr<BatterySource> nativeBatterySource() {
  return std::make_shared<LinuxBatterySource>();
}

}  // namespace quellin
