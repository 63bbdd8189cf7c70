#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/BatteryTime.h"
#include "Support/CaseNames.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;
using testing_support::namedBy;

using Value = PropertyTable::Value;
using Kind = BatteryTimeRemainingKind;

std::int64_t operator""_i(unsigned long long value) { return static_cast<std::int64_t>(value); }

BatteryTables tables(PropertyTable registry, PropertyTable powerSource = {}) {
  return {.registry = std::move(registry), .powerSource = std::move(powerSource)};
}

struct MinutesCase {
  const char* name;
  Value value;
  std::optional<std::int64_t> minutes;
};

class ValidMinutesTest : public ::testing::TestWithParam<MinutesCase> {};

TEST_P(ValidMinutesTest, ReadsNumbersWithinOneWeek) {
  EXPECT_EQ(validMinutes(&GetParam().value), GetParam().minutes);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ValidMinutesTest,
    ::testing::Values(
        MinutesCase{"Nothing", 0_i, 0}, MinutesCase{"OneWeek", 10080_i, 10080},
        MinutesCase{"MoreThanOneWeek", 10081_i, std::nullopt}, MinutesCase{"MinusOne", -1_i, std::nullopt},
        MinutesCase{"Unknown", 65535_i, std::nullopt},
        MinutesCase{"Smallest", std::numeric_limits<std::int64_t>::min(), std::nullopt},
        MinutesCase{"NumberObject", NumberObject{240}, 240},
        MinutesCase{"NegativeNumberObject", NumberObject{-1}, std::nullopt}, MinutesCase{"HalfUp", 89.5, 90},
        MinutesCase{"Down", 89.49, 89}, MinutesCase{"HalfAwayFromEven", 90.5, 91},
        MinutesCase{"NegativeToNothing", -0.4, 0}, MinutesCase{"NegativeHalf", -0.5, std::nullopt},
        MinutesCase{"DownToOneWeek", 10080.4, 10080}, MinutesCase{"UpBeyondOneWeek", 10080.5, std::nullopt},
        MinutesCase{"Boolean", true, std::nullopt}, MinutesCase{"Text", std::string{"90"}, std::nullopt},
        MinutesCase{"Table", PropertyTable{}, std::nullopt}),
    namedBy(&MinutesCase::name));

TEST(BatteryTimeTest, TakesNoMinutesFromAKeyThatIsMissing) { EXPECT_EQ(validMinutes(nullptr), std::nullopt); }

TEST(BatteryTimeDeathTest, EndsTheProcessOnMinutesThatDoNotFit) {
  for (const double number :
       {1e19, -1e19, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    const Value value = number;
    EXPECT_EXIT(static_cast<void>(validMinutes(&value)), endedByTrap, "");
  }
  EXPECT_EXIT(static_cast<void>(estimatedMinutesToFull(-1, std::numeric_limits<std::int64_t>::max(), 1)),
              endedByTrap, "");
}

TEST(BatteryTimeTest, EstimatesTheTimeToEmpty) {
  EXPECT_EQ(estimatedMinutesToEmpty(3000, -1.5), 120);
  EXPECT_EQ(estimatedMinutesToEmpty(1, -0.0501), 1);  // 1.2 minutes
  EXPECT_EQ(estimatedMinutesToEmpty(0, -1.5), std::nullopt);
  EXPECT_EQ(estimatedMinutesToEmpty(3000, -0.05), std::nullopt);
  EXPECT_EQ(estimatedMinutesToEmpty(3000, 1.5), std::nullopt);
  EXPECT_EQ(estimatedMinutesToEmpty(30000, -0.06), std::nullopt);  // longer than a week
}

TEST(BatteryTimeTest, EstimatesTheTimeToFull) {
  EXPECT_EQ(estimatedMinutesToFull(4000, 5000, 2.0), 30);
  EXPECT_EQ(estimatedMinutesToFull(4999, 5000, 0.0501), 1);
  EXPECT_EQ(estimatedMinutesToFull(5000, 5000, 2.0), std::nullopt);
  EXPECT_EQ(estimatedMinutesToFull(5001, 5000, 2.0), std::nullopt);
  EXPECT_EQ(estimatedMinutesToFull(4000, 5000, 0.05), std::nullopt);
  EXPECT_EQ(estimatedMinutesToFull(4000, 5000, -2.0), std::nullopt);
}

BatteryInfo discharging() {
  BatteryInfo battery;
  battery.currentCapacity = 3000;
  battery.maxCapacity = 5000;
  battery.amperage = -1.5;
  battery.wattage = -18;
  return battery;
}

BatteryInfo charging() {
  BatteryInfo battery;
  battery.currentCapacity = 4000;
  battery.maxCapacity = 5000;
  battery.amperage = 2.0;
  battery.wattage = 24;
  battery.isCharging = true;
  battery.acConnected = true;
  return battery;
}

TEST(BatteryTimeTest, AsksForTheTimeToEmptyInAFixedOrder) {
  const PropertyTable registry{{"TimeRemaining", 101_i},
                               {"AvgTimeToEmpty", 102_i},
                               {"InstantTimeToEmpty", 103_i},
                               {"AvgTimeToFull", 7_i}};
  const PropertyTable powerSource{{"Time to Empty", 100_i}, {"Time to Full Charge", 8_i}};
  EXPECT_EQ(batteryTime(discharging(), tables(registry, powerSource)), (BatteryTime{100, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(discharging(), tables(registry)), (BatteryTime{101, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(discharging(), tables({{"AvgTimeToEmpty", 102_i}, {"InstantTimeToEmpty", 103_i}})),
            (BatteryTime{102, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(discharging(), tables({{"InstantTimeToEmpty", 103_i}})),
            (BatteryTime{103, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(discharging(), tables({}, {{"TimeRemaining", 101_i}})),
            (BatteryTime{120, Kind::untilEmpty}));
}

TEST(BatteryTimeTest, PassesOverCandidatesThatAreNotValid) {
  const auto time = batteryTime(discharging(), tables({{"TimeRemaining", 65535_i}, {"AvgTimeToEmpty", 240_i}},
                                                      {{"Time to Empty", -1_i}}));
  EXPECT_EQ(time, (BatteryTime{240, Kind::untilEmpty}));
}

TEST(BatteryTimeTest, AsksForTheTimeToFullInAFixedOrder) {
  const PropertyTable registry{{"AvgTimeToFull", 51_i}, {"InstantTimeToFull", 52_i}, {"TimeRemaining", 7_i}};
  EXPECT_EQ(
      batteryTime(charging(), tables(registry, {{"Time to Full Charge", 50_i}, {"Time to Empty", 8_i}})),
      (BatteryTime{50, Kind::untilFull}));
  EXPECT_EQ(batteryTime(charging(), tables(registry)), (BatteryTime{51, Kind::untilFull}));
  EXPECT_EQ(batteryTime(charging(), tables({{"InstantTimeToFull", 52_i}})),
            (BatteryTime{52, Kind::untilFull}));
  EXPECT_EQ(batteryTime(charging(), tables({{"TimeRemaining", 7_i}})), (BatteryTime{30, Kind::untilFull}));
}

TEST(BatteryTimeTest, HasNoTimeWhenFullyChargedWhateverFlows) {
  BatteryInfo battery = discharging();
  battery.isFullyCharged = true;
  EXPECT_EQ(batteryTime(battery, tables({{"TimeRemaining", 101_i}})), std::nullopt);
}

TEST(BatteryTimeTest, CountsADrainingBatteryTowardsEmptyEvenWhileItClaimsToCharge) {
  BatteryInfo battery = discharging();
  battery.isCharging = true;
  battery.acConnected = true;
  EXPECT_EQ(batteryTime(battery, tables({})), (BatteryTime{120, Kind::untilEmpty}));
  battery.wattage = -1.0;
  EXPECT_EQ(batteryTime(battery, tables({{"AvgTimeToFull", 51_i}, {"TimeRemaining", 101_i}})),
            (BatteryTime{51, Kind::untilFull}));
}

TEST(BatteryTimeTest, HasNoTimeWhenIdleOnExternalPower) {
  BatteryInfo battery = discharging();
  battery.acConnected = true;
  battery.wattage = -0.5;
  EXPECT_EQ(batteryTime(battery, tables({{"TimeRemaining", 101_i}})), std::nullopt);
}

TEST(BatteryTimeTest, CountsTowardsEmptyOnBatteryHoweverLittleFlows) {
  BatteryInfo battery = discharging();
  battery.wattage = -0.5;
  EXPECT_EQ(batteryTime(battery, tables({{"TimeRemaining", 101_i}})), (BatteryTime{101, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(battery, tables({})), (BatteryTime{120, Kind::untilEmpty}));
}

TEST(BatteryTimeTest, HasNoTimeWhereNeitherCandidatesNorEstimateAreValid) {
  BatteryInfo empty = discharging();
  empty.currentCapacity = 0;
  EXPECT_EQ(batteryTime(empty, tables({{"TimeRemaining", 65535_i}})), std::nullopt);
  BatteryInfo trickle = charging();
  trickle.amperage = 0.05;
  EXPECT_EQ(batteryTime(trickle, tables({})), std::nullopt);
}

TEST(BatteryTimeTest, LooksIntoWhicheverTableIsThere) {
  EXPECT_EQ(batteryTime(discharging(),
                        {.registry = std::nullopt, .powerSource = PropertyTable{{"Time to Empty", 9_i}}}),
            (BatteryTime{9, Kind::untilEmpty}));
  EXPECT_EQ(batteryTime(discharging(),
                        {.registry = PropertyTable{{"TimeRemaining", 8_i}}, .powerSource = std::nullopt}),
            (BatteryTime{8, Kind::untilEmpty}));
}

}  // namespace
}  // namespace quellin
