#include "QuellinCore/Platform/Linux/BatteryPack.h"

#include <algorithm>
#include <cmath>

namespace quellin {
namespace {

using Amount = std::optional<double>;

Amount scaled(std::optional<std::int64_t> value, double factor) {
  return value ? Amount{static_cast<double>(*value) * factor} : std::nullopt;
}

// The kernel counts charge, current and voltage in millionths; the tables in thousandths.
Amount thousandths(std::optional<std::int64_t> millionths) { return scaled(millionths, 1e-3); }

Amount positive(Amount value) { return value && *value > 0 ? value : std::nullopt; }

// Seconds as minutes; below 0 stand the codes of drivers that have no estimate.
Amount minutes(std::optional<std::int64_t> seconds) {
  return seconds && *seconds >= 0 ? scaled(seconds, 1.0 / 60) : std::nullopt;
}

// Power or energy over voltage: µW and mV give mA, µWh and mV give mAh.
Amount overVoltage(std::optional<std::int64_t> value, Amount millivolts) {
  return value && millivolts ? Amount{static_cast<double>(*value) / *millivolts} : std::nullopt;
}

std::optional<ChargingStatus> chargingStatus(const std::optional<std::string>& text) {
  if (text == "Charging") return ChargingStatus::charging;
  if (text == "Discharging") return ChargingStatus::discharging;
  if (text == "Full") return ChargingStatus::full;
  if (text == "Not charging") return ChargingStatus::notCharging;
  return std::nullopt;
}

// Most drivers give the magnitude, whatever the direction; a sign is believed only where the status has none.
Amount signedByStatus(Amount current, std::optional<ChargingStatus> status) {
  if (!current) return std::nullopt;
  if (status == ChargingStatus::discharging) return -std::abs(*current);
  if (status == ChargingStatus::charging) return std::abs(*current);
  return current;
}

void fillCharges(BatteryPack& pack, const PowerSupply& battery) {
  if (battery.chargeNow || battery.chargeFull) {
    pack.chargeNow = thousandths(battery.chargeNow);
    pack.chargeFull = thousandths(battery.chargeFull);
    pack.chargeDesign = thousandths(battery.chargeFullDesign);
    return;
  }
  const Amount design = positive(thousandths(battery.voltageMinDesign));
  const Amount voltage = positive(pack.voltage) ? pack.voltage : design;
  pack.chargeNow = overVoltage(battery.energyNow, voltage);
  pack.chargeFull = overVoltage(battery.energyFull, voltage);
  pack.chargeDesign = overVoltage(battery.energyFullDesign, voltage);
}

void fillCurrents(BatteryPack& pack, const PowerSupply& battery) {
  const Amount current = battery.currentNow ? thousandths(battery.currentNow)
                                            : overVoltage(battery.powerNow, positive(pack.voltage));
  pack.current = signedByStatus(current, pack.status);
  pack.currentAverage = signedByStatus(thousandths(battery.currentAverage), pack.status);
}

std::optional<std::string> meaningful(const std::optional<std::string>& text) {
  return text && !text->empty() && *text != "Unknown" ? text : std::nullopt;
}

// The sum of one amount over all packs, each scaled by its voltage relative to the first one's.
Amount sumAtFirstVoltage(std::span<const BatteryPack> packs, Amount BatteryPack::* member) {
  const Amount firstVoltage = positive(packs.front().voltage);
  double sum = 0;
  for (const BatteryPack& pack : packs) {
    const Amount amount = pack.*member;
    const Amount voltage = positive(pack.voltage);
    if (!amount || !voltage || !firstVoltage) return std::nullopt;
    sum += *amount * *voltage / *firstVoltage;
  }
  return sum;
}

Amount highest(std::span<const BatteryPack> packs, Amount BatteryPack::* member) {
  return (*std::ranges::max_element(packs, {}, member)).*member;
}

std::optional<ChargingStatus> combinedStatus(std::span<const BatteryPack> packs) {
  for (const auto moving : {ChargingStatus::discharging, ChargingStatus::charging}) {
    if (std::ranges::find(packs, moving, &BatteryPack::status) != packs.end()) return moving;
  }
  // Resting batteries are full together only when every one is.
  const auto first = packs.front().status;
  const bool agree =
      std::ranges::all_of(packs, [&](const BatteryPack& pack) { return pack.status == first; });
  return agree ? first : std::optional{ChargingStatus::notCharging};
}

Amount combinedPercent(const BatteryPack& whole, std::span<const BatteryPack> packs) {
  const Amount full = positive(whole.chargeFull);
  if (whole.chargeNow && full) return *whole.chargeNow / *full * 100;
  double sum = 0;
  for (const BatteryPack& pack : packs) {
    if (!pack.percent) return std::nullopt;
    sum += *pack.percent;
  }
  return sum / static_cast<double>(packs.size());
}

std::optional<std::string> combinedHealth(std::span<const BatteryPack> packs) {
  std::optional<std::string> health;
  for (const BatteryPack& pack : packs) {
    if (pack.health && *pack.health != "Good") return pack.health;
    if (!health) health = pack.health;
  }
  return health;
}

}  // namespace

BatteryPack batteryPack(const PowerSupply& battery) {
  BatteryPack pack;
  pack.status = chargingStatus(battery.status);
  pack.percent = scaled(battery.capacity, 1);
  pack.voltage = thousandths(battery.voltageNow);
  fillCharges(pack, battery);
  fillCurrents(pack, battery);
  pack.temperature = scaled(battery.temperature, 10);
  // Drivers that do not know the count give 0; a count of 0 looks the same either way.
  pack.cycleCount = positive(scaled(battery.cycleCount, 1));
  pack.minutesToEmpty = minutes(battery.timeToEmptyNow);
  pack.minutesToEmptyAverage = minutes(battery.timeToEmptyAverage);
  pack.minutesToFull = minutes(battery.timeToFullNow);
  pack.minutesToFullAverage = minutes(battery.timeToFullAverage);
  pack.health = meaningful(battery.health);
  pack.serialNumber = meaningful(battery.serialNumber);
  return pack;
}

BatteryPack combinedPack(std::span<const BatteryPack> packs) {
  if (packs.empty()) return {};
  if (packs.size() == 1) return packs.front();
  BatteryPack whole;
  whole.status = combinedStatus(packs);
  whole.voltage = packs.front().voltage;
  whole.chargeNow = sumAtFirstVoltage(packs, &BatteryPack::chargeNow);
  whole.chargeFull = sumAtFirstVoltage(packs, &BatteryPack::chargeFull);
  whole.chargeDesign = sumAtFirstVoltage(packs, &BatteryPack::chargeDesign);
  whole.current = sumAtFirstVoltage(packs, &BatteryPack::current);
  whole.currentAverage = sumAtFirstVoltage(packs, &BatteryPack::currentAverage);
  whole.percent = combinedPercent(whole, packs);
  whole.temperature = highest(packs, &BatteryPack::temperature);
  whole.cycleCount = highest(packs, &BatteryPack::cycleCount);
  whole.health = combinedHealth(packs);
  const auto withSerial =
      std::ranges::find_if(packs, [](const BatteryPack& pack) { return pack.serialNumber.has_value(); });
  if (withSerial != packs.end()) whole.serialNumber = withSerial->serialNumber;
  return whole;
}

}  // namespace quellin
