#include "QuellinCore/Models/BatteryRules.h"

#include <algorithm>
#include <cstdint>

#include "QuellinCore/Models/BatteryTime.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr std::int64_t fullPercent = 100;
constexpr double millisPerUnit = 1000;
constexpr double hundredthsPerDegree = 100;

std::int64_t cappedPercent(std::int64_t percent) { return std::min(percent, fullPercent); }

// `whole` is at least 1 at every call.
std::int64_t percentOf(std::int64_t part, std::int64_t whole) {
  return cappedPercent(checkedMul(part, fullPercent) / whole);
}

std::int64_t integerOrZero(const PropertyTable& table, std::string_view key) {
  return table.integer(key).value_or(0);
}

double scaled(std::int64_t value, double divisor) { return static_cast<double>(value) / divisor; }

void fillCapacities(BatteryInfo& battery, const PropertyTable& registry, const PropertyTable& powerSource) {
  battery.currentCapacity = integerOrZero(registry, "AppleRawCurrentCapacity");
  auto maximum = registry.integer("AppleRawMaxCapacity");
  if (!maximum) maximum = registry.integer("NominalChargeCapacity");
  battery.maxCapacity = maximum.value_or(0);

  auto charge = registry.integer("CurrentCapacity");
  if (!charge) charge = powerSource.integer("Current Capacity");
  if (charge) {
    battery.chargePercent = cappedPercent(*charge);
  } else {
    battery.chargePercent =
        battery.maxCapacity < 1 ? 0 : percentOf(battery.currentCapacity, battery.maxCapacity);
  }
}

void fillHealth(BatteryInfo& battery, const PropertyTable& registry) {
  // Without a design capacity the present maximum stands in for it, so that a working battery reads as
  // healthy.
  battery.designCapacity =
      registry.integer("DesignCapacity").value_or(std::max<std::int64_t>(battery.maxCapacity, 1));
  battery.healthPercent =
      battery.designCapacity < 1 ? fullPercent : percentOf(battery.maxCapacity, battery.designCapacity);
  battery.cycleCount = integerOrZero(registry, "CycleCount");
}

void fillFlow(BatteryInfo& battery, const PropertyTable& registry) {
  auto milliamperes = registry.integer("Amperage");
  if (!milliamperes) milliamperes = registry.integer("InstantAmperage");
  battery.voltage = scaled(integerOrZero(registry, "Voltage"), millisPerUnit);
  battery.amperage = scaled(milliamperes.value_or(0), millisPerUnit);
  battery.wattage = battery.voltage * battery.amperage;
  battery.temperature = scaled(integerOrZero(registry, "Temperature"), hundredthsPerDegree);
}

void fillCharger(BatteryInfo& battery, const PropertyTable& registry, const PropertyTable& powerSource) {
  auto charging = registry.boolean("IsCharging");
  if (!charging) charging = powerSource.boolean("Is Charging");
  auto charged = registry.boolean("FullyCharged");
  if (!charged) charged = powerSource.boolean("Is Charged");
  battery.isCharging = charging.value_or(false);
  battery.isFullyCharged = charged.value_or(false);
  battery.acConnected = registry.boolean("ExternalConnected").value_or(false);

  battery.adapterWatts = powerSource.integer("Watts");
  if (battery.adapterWatts) return;
  if (const PropertyTable* adapter = registry.table("AdapterDetails"))
    battery.adapterWatts = adapter->integer("Watts");
}

void fillIdentity(BatteryInfo& battery, const PropertyTable& registry, const PropertyTable& powerSource) {
  battery.health = powerSource.string("BatteryHealth").value_or("Unknown");
  battery.serialNumber = registry.string("BatterySerialNumber");
  if (!battery.serialNumber) battery.serialNumber = powerSource.string("Hardware Serial Number");
}

}  // namespace

std::optional<BatteryInfo> batteryInfo(const BatteryTables& tables) {
  if (!tables.registry && !tables.powerSource) return std::nullopt;
  const PropertyTable empty;
  const PropertyTable& registry = tables.registry ? *tables.registry : empty;
  const PropertyTable& powerSource = tables.powerSource ? *tables.powerSource : empty;

  BatteryInfo battery;
  fillCapacities(battery, registry, powerSource);
  fillHealth(battery, registry);
  fillFlow(battery, registry);
  fillCharger(battery, registry, powerSource);
  if (const auto time = batteryTime(battery, tables)) {
    battery.timeRemaining = time->minutes;
    battery.timeRemainingKind = time->kind;
  }
  fillIdentity(battery, registry, powerSource);
  return battery;
}

}  // namespace quellin
