#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/ThermalInfo.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/CaseNames.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;
using testing_support::namedBy;

struct ThermalCase {
  std::string name;
  ThermalSignals signals;
  ThermalInfo info;
};

class ThermalInfoTest : public ::testing::TestWithParam<ThermalCase> {};

TEST_P(ThermalInfoTest, MapsEachSignalOnItsOwn) {
  EXPECT_EQ(thermalInfo(GetParam().signals), GetParam().info);
}

template <class Value>
std::string nameOf(const std::optional<Value>& value) {
  return value ? std::to_string(*value) : "Absent";
}

ThermalCase stateCase(std::optional<std::int64_t> code, ThermalState state) {
  return {nameOf(code), {.stateCode = code, .pressureState = 0, .isLowPowerMode = false}, {state, 0, false}};
}

ThermalCase pressureCase(std::optional<std::uint64_t> state, std::int64_t pressure) {
  return {nameOf(state),
          {.stateCode = 2, .pressureState = state, .isLowPowerMode = false},
          {ThermalState::serious, pressure, false}};
}

INSTANTIATE_TEST_SUITE_P(
    States, ThermalInfoTest,
    ::testing::Values(stateCase(0, ThermalState::nominal), stateCase(1, ThermalState::fair),
                      stateCase(2, ThermalState::serious), stateCase(3, ThermalState::critical),
                      stateCase(4, ThermalState::nominal), stateCase(7, ThermalState::nominal),
                      stateCase(-1, ThermalState::nominal), stateCase(std::nullopt, ThermalState::nominal)),
    namedBy(&ThermalCase::name));

INSTANTIATE_TEST_SUITE_P(Pressures, ThermalInfoTest,
                         ::testing::Values(pressureCase(0, 0), pressureCase(3, 3), pressureCase(4, 4),
                                           pressureCase(5, 4), pressureCase(8, 4),
                                           pressureCase(std::numeric_limits<std::int64_t>::max(), 4),
                                           pressureCase(std::nullopt, 0)),
                         namedBy(&ThermalCase::name));

INSTANTIATE_TEST_SUITE_P(
    LowPowerMode, ThermalInfoTest,
    ::testing::Values(ThermalCase{"On",
                                  {.stateCode = 0, .pressureState = {}, .isLowPowerMode = true},
                                  {ThermalState::nominal, 0, true}},
                      ThermalCase{"Absent",
                                  {.stateCode = 1, .pressureState = 2, .isLowPowerMode = {}},
                                  {ThermalState::fair, 2, false}},
                      ThermalCase{"AllAbsent", {}, {}}),
    namedBy(&ThermalCase::name));

TEST(ThermalInfoDeathTest, EndsTheProcessOnAPressureThatIsNegativeWhenSigned) {
  const ThermalSignals signals{
      .stateCode = 0, .pressureState = std::uint64_t{1} << 63U, .isLowPowerMode = false};
  EXPECT_EXIT(static_cast<void>(thermalInfo(signals)), endedByTrap, "");
}

TEST(ThermalInfoRulesTest, KnowsThePressuresItCanReckonWith) {
  ThermalSignals signals;
  EXPECT_TRUE(isWithinRange(signals));
  signals.pressureState = std::numeric_limits<std::int64_t>::max();
  EXPECT_TRUE(isWithinRange(signals));
  signals.pressureState = std::uint64_t{1} << 63U;
  EXPECT_FALSE(isWithinRange(signals));
}

TEST(ThermalStateTest, IsNamedByItsExactRawString) {
  EXPECT_EQ(rawValue(ThermalState::nominal), "nominal");
  EXPECT_EQ(rawValue(ThermalState::fair), "fair");
  EXPECT_EQ(rawValue(ThermalState::serious), "serious");
  EXPECT_EQ(rawValue(ThermalState::critical), "critical");
  EXPECT_EQ(fromRawValue<ThermalState>("critical"), ThermalState::critical);
  EXPECT_EQ(fromRawValue<ThermalState>("Critical"), std::nullopt);
}

TEST(ThermalStateTest, DescribesEveryFieldInOrder) {
  EXPECT_EQ(encodeJSON(ThermalInfo{ThermalState::fair, 2, true}),
            R"({"state":"fair","pressure":2,"isLowPowerMode":true})");
}

}  // namespace
}  // namespace quellin
