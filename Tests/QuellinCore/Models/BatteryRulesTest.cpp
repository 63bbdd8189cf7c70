#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/BatteryRules.h"
#include "Support/CaseNames.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;
using testing_support::namedBy;

std::int64_t operator""_i(unsigned long long value) { return static_cast<std::int64_t>(value); }

std::string operator""_s(const char* text, std::size_t length) { return std::string(text, length); }

BatteryInfo merged(PropertyTable registry, PropertyTable powerSource = {}) {
  return batteryInfo({.registry = std::move(registry), .powerSource = std::move(powerSource)}).value();
}

TEST(BatteryRulesTest, GivesNoRecordWithoutEitherTable) { EXPECT_EQ(batteryInfo({}), std::nullopt); }

TEST(BatteryRulesTest, GivesARecordForEitherTableAlone) {
  EXPECT_TRUE(batteryInfo({.registry = PropertyTable{}, .powerSource = std::nullopt}).has_value());
  EXPECT_TRUE(batteryInfo({.registry = std::nullopt, .powerSource = PropertyTable{}}).has_value());
}

TEST(BatteryRulesTest, FillsAnEmptyTableWithTheDocumentedFallbacks) {
  BatteryInfo expected;
  expected.designCapacity = 1;
  expected.health = "Unknown";
  EXPECT_EQ(merged({}), expected);
}

TEST(BatteryRulesTest, MergesBothTablesOfALaptopOnBattery) {
  const BatteryInfo battery = merged({{"AppleRawCurrentCapacity", 3000_i},
                                      {"AppleRawMaxCapacity", 5400_i},
                                      {"CurrentCapacity", 56_i},
                                      {"DesignCapacity", 6000_i},
                                      {"CycleCount", 123_i},
                                      {"Voltage", 12600_i},
                                      {"Amperage", -1500_i},
                                      {"Temperature", 3055_i},
                                      {"IsCharging", false},
                                      {"FullyCharged", false},
                                      {"ExternalConnected", false},
                                      {"BatterySerialNumber", "F5D1234"_s}},
                                     {{"BatteryHealth", "Good"_s}, {"Time to Empty", 131_i}});
  BatteryInfo expected;
  expected.chargePercent = 56;
  expected.currentCapacity = 3000;
  expected.maxCapacity = 5400;
  expected.designCapacity = 6000;
  expected.healthPercent = 90;
  expected.cycleCount = 123;
  expected.voltage = 12.6;
  expected.amperage = -1.5;
  expected.wattage = 12.6 * -1.5;
  expected.temperature = 30.55;
  expected.timeRemaining = 131;
  expected.timeRemainingKind = BatteryTimeRemainingKind::untilEmpty;
  expected.health = "Good";
  expected.serialNumber = "F5D1234";
  EXPECT_EQ(battery, expected);
  EXPECT_NEAR(battery.wattage, -18.9, 1e-12);
}

/// Both tables, and the one field that a case looks at.
struct MergeCase {
  std::string name;
  PropertyTable registry;
  PropertyTable powerSource;
  std::function<void(const BatteryInfo&)> check;
};

class BatteryMergeTest : public ::testing::TestWithParam<MergeCase> {};

TEST_P(BatteryMergeTest, TakesEachFieldByItsOrderOfPreference) {
  GetParam().check(merged(GetParam().registry, GetParam().powerSource));
}

template <class Member, class Expected>
auto expects(Member BatteryInfo::* member, Expected expected) {
  return [=](const BatteryInfo& battery) { EXPECT_EQ(battery.*member, Member(expected)); };
}

const PropertyTable halfFull{{"AppleRawCurrentCapacity", 2500_i}, {"AppleRawMaxCapacity", 5000_i}};

PropertyTable with(PropertyTable table, std::initializer_list<Property> more) {
  for (const Property& property : more) table.set(property.key, property.value);
  return table;
}

INSTANTIATE_TEST_SUITE_P(
    ChargePercent, BatteryMergeTest,
    ::testing::Values(
        MergeCase{"Capped", {{"CurrentCapacity", 104_i}}, {}, expects(&BatteryInfo::chargePercent, 100)},
        MergeCase{"NotRaised", {{"CurrentCapacity", -3_i}}, {}, expects(&BatteryInfo::chargePercent, -3)},
        MergeCase{"RegistryFirst",
                  {{"CurrentCapacity", 40_i}},
                  {{"Current Capacity", 41_i}},
                  expects(&BatteryInfo::chargePercent, 40)},
        MergeCase{
            "PowerSource", halfFull, {{"Current Capacity", 41_i}}, expects(&BatteryInfo::chargePercent, 41)},
        MergeCase{"PowerSourceCapped",
                  {},
                  {{"Current Capacity", 101_i}},
                  expects(&BatteryInfo::chargePercent, 100)},
        MergeCase{"WrongKindFallsBack",
                  {{"CurrentCapacity", 40.0}},
                  {{"Current Capacity", 41_i}},
                  expects(&BatteryInfo::chargePercent, 41)},
        MergeCase{"FromRawCapacities", halfFull, {}, expects(&BatteryInfo::chargePercent, 50)},
        MergeCase{"DividesAsIntegers",
                  {{"AppleRawCurrentCapacity", 1999_i}, {"AppleRawMaxCapacity", 3000_i}},
                  {},
                  expects(&BatteryInfo::chargePercent, 66)},
        MergeCase{"RawCapped",
                  {{"AppleRawCurrentCapacity", 5100_i}, {"AppleRawMaxCapacity", 5000_i}},
                  {},
                  expects(&BatteryInfo::chargePercent, 100)},
        MergeCase{
            "NoMaximum", {{"AppleRawCurrentCapacity", 2500_i}}, {}, expects(&BatteryInfo::chargePercent, 0)},
        MergeCase{"MaximumBelowOne",
                  {{"AppleRawCurrentCapacity", 2500_i}, {"AppleRawMaxCapacity", -5_i}},
                  {},
                  expects(&BatteryInfo::chargePercent, 0)}),
    namedBy(&MergeCase::name));

INSTANTIATE_TEST_SUITE_P(
    Capacities, BatteryMergeTest,
    ::testing::Values(MergeCase{"RawMaximumFirst",
                                {{"AppleRawMaxCapacity", 5000_i}, {"NominalChargeCapacity", 5100_i}},
                                {},
                                expects(&BatteryInfo::maxCapacity, 5000)},
                      MergeCase{"NominalMaximum",
                                {{"NominalChargeCapacity", 5100_i}},
                                {},
                                expects(&BatteryInfo::maxCapacity, 5100)},
                      MergeCase{"MaximumOfWrongKind",
                                {{"AppleRawMaxCapacity", true}, {"NominalChargeCapacity", 5100_i}},
                                {},
                                expects(&BatteryInfo::maxCapacity, 5100)},
                      MergeCase{"MaximumAboveDesign",
                                {{"AppleRawMaxCapacity", 6300_i}, {"DesignCapacity", 6000_i}},
                                {},
                                expects(&BatteryInfo::healthPercent, 100)},
                      MergeCase{"DesignZero",
                                {{"AppleRawMaxCapacity", 5000_i}, {"DesignCapacity", 0_i}},
                                {},
                                [](const BatteryInfo& battery) {
                                  EXPECT_EQ(battery.designCapacity, 0);
                                  EXPECT_EQ(battery.healthPercent, 100);
                                }},
                      MergeCase{"DesignNegative",
                                {{"AppleRawMaxCapacity", 5000_i}, {"DesignCapacity", -1_i}},
                                {},
                                [](const BatteryInfo& battery) {
                                  EXPECT_EQ(battery.designCapacity, -1);
                                  EXPECT_EQ(battery.healthPercent, 100);
                                }},
                      MergeCase{"NoDesign",
                                {{"AppleRawMaxCapacity", 5000_i}},
                                {},
                                [](const BatteryInfo& battery) {
                                  EXPECT_EQ(battery.designCapacity, 5000);
                                  EXPECT_EQ(battery.healthPercent, 100);
                                }},
                      MergeCase{"DesignOfWrongKind",
                                {{"AppleRawMaxCapacity", 5000_i}, {"DesignCapacity", 6000.0}},
                                {},
                                expects(&BatteryInfo::designCapacity, 5000)},
                      MergeCase{"CyclesOfWrongKind",
                                {{"CycleCount", NumberObject{7}}},
                                {{"CycleCount", 8_i}},
                                expects(&BatteryInfo::cycleCount, 0)},
                      MergeCase{"NoDesignAndNoMaximum",
                                {},
                                {},
                                [](const BatteryInfo& battery) {
                                  EXPECT_EQ(battery.designCapacity, 1);
                                  EXPECT_EQ(battery.healthPercent, 0);
                                }}),
    namedBy(&MergeCase::name));

INSTANTIATE_TEST_SUITE_P(
    Flow, BatteryMergeTest,
    ::testing::Values(
        MergeCase{"AmperageFirst",
                  {{"Amperage", -1500_i}, {"InstantAmperage", -1700_i}},
                  {},
                  expects(&BatteryInfo::amperage, -1.5)},
        MergeCase{
            "InstantAmperage", {{"InstantAmperage", -1700_i}}, {}, expects(&BatteryInfo::amperage, -1.7)},
        MergeCase{"VoltageOfWrongKind", {{"Voltage", 12600.0}}, {}, expects(&BatteryInfo::voltage, 0.0)},
        MergeCase{"Temperature", {{"Temperature", 3055_i}}, {}, expects(&BatteryInfo::temperature, 30.55)}),
    namedBy(&MergeCase::name));

INSTANTIATE_TEST_SUITE_P(
    Charger, BatteryMergeTest,
    ::testing::Values(
        MergeCase{"ChargingByRegistry",
                  {{"IsCharging", false}},
                  {{"Is Charging", true}},
                  expects(&BatteryInfo::isCharging, false)},
        MergeCase{"ChargingByPowerSource",
                  {{"IsCharging", 0_i}},
                  {{"Is Charging", true}},
                  expects(&BatteryInfo::isCharging, true)},
        MergeCase{"ChargedByRegistry",
                  {{"FullyCharged", false}},
                  {{"Is Charged", true}},
                  expects(&BatteryInfo::isFullyCharged, false)},
        MergeCase{
            "ChargedByPowerSource", {}, {{"Is Charged", true}}, expects(&BatteryInfo::isFullyCharged, true)},
        MergeCase{"Connected", {{"ExternalConnected", true}}, {}, expects(&BatteryInfo::acConnected, true)},
        MergeCase{"ConnectedOfWrongKind",
                  {{"ExternalConnected", 1_i}},
                  {},
                  expects(&BatteryInfo::acConnected, false)},
        MergeCase{"WattsByPowerSource",
                  {{"AdapterDetails", PropertyTable{{"Watts", 96_i}}}},
                  {{"Watts", 95_i}},
                  expects(&BatteryInfo::adapterWatts, 95)},
        MergeCase{"WattsByAdapter",
                  {{"AdapterDetails", PropertyTable{{"Watts", 96_i}}}},
                  {},
                  expects(&BatteryInfo::adapterWatts, 96)},
        MergeCase{"WattsOfWrongKind",
                  {{"AdapterDetails", PropertyTable{{"Watts", 96.0}}}},
                  {{"Watts", "95"_s}},
                  expects(&BatteryInfo::adapterWatts, std::nullopt)},
        MergeCase{"AdapterOfWrongKind",
                  {{"AdapterDetails", 96_i}},
                  {},
                  expects(&BatteryInfo::adapterWatts, std::nullopt)},
        MergeCase{
            "RegistryHasNoWatts", {{"Watts", 96_i}}, {}, expects(&BatteryInfo::adapterWatts, std::nullopt)}),
    namedBy(&MergeCase::name));

INSTANTIATE_TEST_SUITE_P(
    Identity, BatteryMergeTest,
    ::testing::Values(MergeCase{"HealthOfWrongKind",
                                {},
                                {{"BatteryHealth", 1_i}},
                                expects(&BatteryInfo::health, "Unknown")},
                      MergeCase{"HealthNotFromRegistry",
                                {{"BatteryHealth", "Good"_s}},
                                {},
                                expects(&BatteryInfo::health, "Unknown")},
                      MergeCase{"SerialByRegistry",
                                {{"BatterySerialNumber", "R"_s}},
                                {{"Hardware Serial Number", "P"_s}},
                                expects(&BatteryInfo::serialNumber, "R")},
                      MergeCase{"SerialByPowerSource",
                                {{"BatterySerialNumber", 1_i}},
                                {{"Hardware Serial Number", "P"_s}},
                                expects(&BatteryInfo::serialNumber, "P")},
                      MergeCase{"NoSerial", {}, {}, expects(&BatteryInfo::serialNumber, std::nullopt)}),
    namedBy(&MergeCase::name));

TEST(BatteryRulesTest, CountsTheTimeToFullFromTheFlow) {
  const PropertyTable charging{{"AppleRawCurrentCapacity", 4000_i},
                               {"AppleRawMaxCapacity", 5000_i},
                               {"Voltage", 12000_i},
                               {"Amperage", 2000_i},
                               {"IsCharging", true},
                               {"ExternalConnected", true}};
  const BatteryInfo battery = merged(charging);
  EXPECT_EQ(battery.timeToFullCharge(), 30);

  const BatteryInfo trickle = merged(with(charging, {{"Amperage", 50_i}}));
  EXPECT_EQ(trickle.timeRemaining, std::nullopt);
  EXPECT_EQ(trickle.timeRemainingKind, std::nullopt);
}

TEST(BatteryRulesTest, TellsADrainOnExternalPowerFromAnIdleBattery) {
  const PropertyTable idle =
      with(halfFull, {{"Voltage", 10000_i}, {"Amperage", -50_i}, {"ExternalConnected", true}});
  EXPECT_FALSE(merged(idle).isPluggedInAndDraining());
  EXPECT_EQ(merged(idle).timeRemaining, std::nullopt);
  EXPECT_EQ(merged(idle).timeRemainingKind, std::nullopt);

  const BatteryInfo draining = merged(with(idle, {{"Amperage", -300_i}}));
  EXPECT_TRUE(draining.isPluggedInAndDraining());
  EXPECT_EQ(draining.timeToEmpty(), 500);
}

TEST(BatteryRulesDeathTest, EndsTheProcessWhenAPercentageOverflows) {
  const std::int64_t huge = std::numeric_limits<std::int64_t>::max();
  EXPECT_EXIT(static_cast<void>(merged({{"AppleRawMaxCapacity", huge}})), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(merged({{"AppleRawCurrentCapacity", huge}, {"AppleRawMaxCapacity", 1_i}})),
              endedByTrap, "");
}

TEST(BatteryRulesTest, KnowsTheFiguresItCanReckonWith) {
  EXPECT_TRUE(isWithinRange({}));
  constexpr std::int64_t largest = std::int64_t{1} << 53U;
  for (const char* key : {"AppleRawCurrentCapacity", "AppleRawMaxCapacity", "NominalChargeCapacity",
                          "CurrentCapacity", "DesignCapacity"}) {
    for (const std::int64_t sign : {1, -1}) {
      const BatteryTables fits{.registry = PropertyTable{{key, sign * largest}}, .powerSource = {}};
      EXPECT_TRUE(isWithinRange(fits)) << key;
      EXPECT_TRUE(batteryInfo(fits)) << key;
      EXPECT_FALSE(isWithinRange({.registry = PropertyTable{{key, sign * (largest + 1)}}, .powerSource = {}}))
          << key;
    }
  }
  EXPECT_FALSE(
      isWithinRange({.registry = {}, .powerSource = PropertyTable{{"Current Capacity", largest + 1}}}));
  EXPECT_TRUE(isWithinRange({.registry = PropertyTable{{"UpdateTime", largest + 1}}, .powerSource = {}}))
      << "no rule reads it";
}

TEST(BatteryRulesTest, ReckonsWithTheLargestFiguresOfEitherSign) {
  constexpr std::int64_t largest = std::int64_t{1} << 53U;
  for (const std::int64_t current : {largest, -largest}) {
    for (const std::int64_t milliamperes : {51_i, -51_i}) {
      const PropertyTable registry{{"AppleRawCurrentCapacity", current},
                                   {"AppleRawMaxCapacity", largest},
                                   {"DesignCapacity", 1_i},
                                   {"Voltage", 12000_i},
                                   {"Amperage", milliamperes},
                                   {"IsCharging", milliamperes > 0}};
      EXPECT_EQ(merged(registry).timeRemaining, std::nullopt);
    }
  }
}

TEST(BatteryRulesTest, KnowsTheTimesItCanRound) {
  for (const char* key :
       {"TimeRemaining", "AvgTimeToEmpty", "InstantTimeToEmpty", "AvgTimeToFull", "InstantTimeToFull"}) {
    EXPECT_TRUE(isWithinRange({.registry = PropertyTable{{key, 1e18}}, .powerSource = {}})) << key;
    EXPECT_FALSE(isWithinRange({.registry = PropertyTable{{key, 1e19}}, .powerSource = {}})) << key;
    EXPECT_TRUE(isWithinRange({.registry = {}, .powerSource = PropertyTable{{key, 1e19}}})) << key;
  }
  for (const char* key : {"Time to Empty", "Time to Full Charge"}) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(isWithinRange({.registry = {}, .powerSource = PropertyTable{{key, notANumber}}})) << key;
    EXPECT_TRUE(isWithinRange({.registry = PropertyTable{{key, notANumber}}, .powerSource = {}})) << key;
  }
}

}  // namespace
}  // namespace quellin
