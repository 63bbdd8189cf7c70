#include "QuellinCore/Models/BatteryTime.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr std::uint64_t minutesPerWeek = 10080;
constexpr double milliamperesPerAmpere = 1000;
constexpr double minutesPerHour = 60;
constexpr double smallestFlowAmperes = 0.05;
constexpr double smallestDrainWatts = 1.0;

std::optional<std::int64_t> withinOneWeek(std::int64_t minutes) {
  // Unsigned on purpose: the "no estimate" answers -1 and 65535 are both above one week.
  if (static_cast<std::uint64_t>(minutes) > minutesPerWeek) return std::nullopt;
  return minutes;
}

std::optional<std::int64_t> minutesToMove(double milliampereHours, double amperes) {
  return withinOneWeek(roundedToInt64(milliampereHours / (amperes * milliamperesPerAmpere) * minutesPerHour));
}

struct Candidate {
  bool inRegistry;
  std::string_view key;
};

constexpr std::array untilEmptyCandidates{Candidate{false, "Time to Empty"}, Candidate{true, "TimeRemaining"},
                                          Candidate{true, "AvgTimeToEmpty"},
                                          Candidate{true, "InstantTimeToEmpty"}};
constexpr std::array untilFullCandidates{Candidate{false, "Time to Full Charge"},
                                         Candidate{true, "AvgTimeToFull"},
                                         Candidate{true, "InstantTimeToFull"}};

const PropertyTable::Value* valueOf(const Candidate& candidate, const BatteryTables& tables) {
  const auto& table = candidate.inRegistry ? tables.registry : tables.powerSource;
  return table ? table->find(candidate.key) : nullptr;
}

std::optional<std::int64_t> firstValid(std::span<const Candidate> candidates, const BatteryTables& tables) {
  for (const Candidate& candidate : candidates) {
    if (const auto minutes = validMinutes(valueOf(candidate, tables))) return minutes;
  }
  return std::nullopt;
}

std::optional<BatteryTime> timeOfKind(std::optional<std::int64_t> minutes, BatteryTimeRemainingKind kind) {
  if (!minutes) return std::nullopt;
  return BatteryTime{*minutes, kind};
}

std::optional<BatteryTime> timeUntilEmpty(const BatteryInfo& battery, const BatteryTables& tables) {
  auto minutes = firstValid(untilEmptyCandidates, tables);
  if (!minutes) minutes = estimatedMinutesToEmpty(battery.currentCapacity, battery.amperage);
  return timeOfKind(minutes, BatteryTimeRemainingKind::untilEmpty);
}

std::optional<BatteryTime> timeUntilFull(const BatteryInfo& battery, const BatteryTables& tables) {
  auto minutes = firstValid(untilFullCandidates, tables);
  if (!minutes)
    minutes = estimatedMinutesToFull(battery.currentCapacity, battery.maxCapacity, battery.amperage);
  return timeOfKind(minutes, BatteryTimeRemainingKind::untilFull);
}

}  // namespace

std::optional<std::int64_t> validMinutes(const PropertyTable::Value* value) {
  if (value == nullptr) return std::nullopt;
  if (const auto* integer = std::get_if<std::int64_t>(value)) return withinOneWeek(*integer);
  if (const auto* object = std::get_if<NumberObject>(value)) return withinOneWeek(object->integerValue);
  if (const auto* number = std::get_if<double>(value)) return withinOneWeek(roundedToInt64(*number));
  return std::nullopt;
}

std::optional<std::int64_t> estimatedMinutesToEmpty(std::int64_t currentCapacity, double amperage) {
  if (currentCapacity < 1 || !(amperage < -smallestFlowAmperes)) return std::nullopt;
  return minutesToMove(static_cast<double>(currentCapacity), std::abs(amperage));
}

std::optional<std::int64_t> estimatedMinutesToFull(std::int64_t currentCapacity, std::int64_t maxCapacity,
                                                   double amperage) {
  const std::int64_t missing = checkedSub(maxCapacity, currentCapacity);
  if (missing < 1 || !(amperage > smallestFlowAmperes)) return std::nullopt;
  return minutesToMove(static_cast<double>(missing), amperage);
}

std::optional<BatteryTime> batteryTime(const BatteryInfo& battery, const BatteryTables& tables) {
  if (battery.isFullyCharged) return std::nullopt;
  if (battery.wattage < -smallestDrainWatts) return timeUntilEmpty(battery, tables);
  if (battery.isCharging) return timeUntilFull(battery, tables);
  if (battery.acConnected) return std::nullopt;
  return timeUntilEmpty(battery, tables);
}

bool areTimesWithinRange(const BatteryTables& tables) {
  const auto canRound = [&](const Candidate& candidate) {
    const auto* value = valueOf(candidate, tables);
    const auto* number = value == nullptr ? nullptr : std::get_if<double>(value);
    return number == nullptr || roundsToInt64(*number);
  };
  return std::ranges::all_of(untilEmptyCandidates, canRound) &&
         std::ranges::all_of(untilFullCandidates, canRound);
}

}  // namespace quellin
