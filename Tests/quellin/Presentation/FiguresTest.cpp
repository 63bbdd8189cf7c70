#include <algorithm>

#include <gtest/gtest.h>

#include "Support/FakeHost.h"
#include "quellin/Presentation/Figure.h"

namespace quellin::cli {
namespace {

using testing_support::FakeHost;

SystemPowerState stateWith(const BatteryInfo& battery, const FanInfo& fan = FanInfo{}) {
  SystemPowerState state;
  state.battery = battery;
  state.fans = {fan};
  return state;
}

/// The figure of that name; one of no group when there is none.
Figure figureOf(const SystemPowerState& state, const std::string& name) {
  const FakeHost host;
  const auto all = figures(state, host.sources());
  const auto found = std::ranges::find(all, name, &Figure::name);
  return found == all.end() ? Figure{} : *found;
}

TEST(FiguresTest, ShowsWhatTheBatteryTells) {
  BatteryInfo battery;
  battery.cycleCount = 31;
  battery.voltage = 12.5;
  battery.amperage = -2;
  battery.wattage = -25;
  const auto state = stateWith(battery);
  EXPECT_EQ(figureOf(state, "Cycles").value, 31);
  EXPECT_EQ(figureOf(state, "Voltage").value, 12.5);
  EXPECT_EQ(figureOf(state, "Current").value, -2);
  EXPECT_EQ(figureOf(state, "Terminal power").value, -25);
}

TEST(FiguresTest, TakesNoZeroForAFigureThatABatteryCannotHave) {
  const auto state = stateWith({});
  for (const char* name : {"Present charge", "Full charge", "Design charge", "Health", "Cycles", "Voltage",
                           "Terminal power", "Temperature"}) {
    const Figure figure = figureOf(state, name);
    EXPECT_EQ(figure.group, "Battery") << name;
    EXPECT_FALSE(figure.isKnown()) << name;
  }
}

TEST(FiguresTest, ShowsAZeroThatMayBeTheFigure) {
  BatteryInfo battery;
  battery.voltage = 12.5;
  const auto state =
      stateWith(battery, {.id = 0, .name = "Fan 0", .currentRPM = 0, .minRPM = 0, .maxRPM = 6000});
  EXPECT_EQ(figureOf(state, "Current").value, 0);
  EXPECT_EQ(figureOf(state, "Terminal power").value, 0);
  EXPECT_EQ(figureOf(state, "Fan 0").value, 0);
  EXPECT_FALSE(figureOf(state, "Fan 0 lowest").isKnown());
  EXPECT_EQ(figureOf(state, "Fan 0 highest").value, 6000);
}

}  // namespace
}  // namespace quellin::cli
