#include "QuellinCore/Models/BatteryRules.h"

#include <algorithm>
#include <array>
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

/// What the tables say of the battery's charge.
struct Capacities {
  std::int64_t current = 0;
  std::int64_t maximum = 0;
  std::optional<std::int64_t> percent;
  std::optional<std::int64_t> design;
};

Capacities capacities(const PropertyTable& registry, const PropertyTable& powerSource) {
  Capacities result;
  result.current = integerOrZero(registry, "AppleRawCurrentCapacity");
  auto maximum = registry.integer("AppleRawMaxCapacity");
  if (!maximum) maximum = registry.integer("NominalChargeCapacity");
  result.maximum = maximum.value_or(0);
  result.percent = registry.integer("CurrentCapacity");
  if (!result.percent) result.percent = powerSource.integer("Current Capacity");
  result.design = registry.integer("DesignCapacity");
  return result;
}

void fillCapacities(BatteryInfo& battery, const Capacities& given) {
  battery.currentCapacity = given.current;
  battery.maxCapacity = given.maximum;
  if (given.percent) {
    battery.chargePercent = cappedPercent(*given.percent);
  } else {
    battery.chargePercent = given.maximum < 1 ? 0 : percentOf(given.current, given.maximum);
  }
}

void fillHealth(BatteryInfo& battery, const Capacities& given) {
  // Without a design capacity the present maximum stands in for it, so that a working battery reads as
  // healthy.
  battery.designCapacity = given.design.value_or(std::max<std::int64_t>(given.maximum, 1));
  battery.healthPercent =
      battery.designCapacity < 1 ? fullPercent : percentOf(given.maximum, battery.designCapacity);
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

const PropertyTable& tableOrEmpty(const std::optional<PropertyTable>& table) {
  static const PropertyTable empty;
  return table ? *table : empty;
}

}  // namespace

std::optional<BatteryInfo> batteryInfo(const BatteryTables& tables) {
  if (!tables.registry && !tables.powerSource) return std::nullopt;
  const PropertyTable& registry = tableOrEmpty(tables.registry);
  const PropertyTable& powerSource = tableOrEmpty(tables.powerSource);

  BatteryInfo battery;
  const Capacities given = capacities(registry, powerSource);
  fillCapacities(battery, given);
  fillHealth(battery, given);
  battery.cycleCount = integerOrZero(registry, "CycleCount");
  fillFlow(battery, registry);
  fillCharger(battery, registry, powerSource);
  if (const auto time = batteryTime(battery, tables)) {
    battery.timeRemaining = time->minutes;
    battery.timeRemainingKind = time->kind;
  }
  fillIdentity(battery, registry, powerSource);
  return battery;
}

bool isWithinRange(const BatteryTables& tables) {
  constexpr std::int64_t largest = std::int64_t{1} << 53U;
  const Capacities given = capacities(tableOrEmpty(tables.registry), tableOrEmpty(tables.powerSource));
  const std::array figures{given.current, given.maximum, given.percent.value_or(0), given.design.value_or(0)};
  const auto isSmall = [](std::int64_t figure) { return figure >= -largest && figure <= largest; };
  return std::ranges::all_of(figures, isSmall) && areTimesWithinRange(tables);
}

}  // namespace quellin
