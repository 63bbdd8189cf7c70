#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/Watch/History.h"

namespace quellin::cli {
namespace {

SystemPowerState stateAt(double seconds, std::optional<double> batteryWatts, double degrees = 40) {
  SystemPowerState state;
  if (batteryWatts) {
    state.battery = BatteryInfo{};
    state.battery->wattage = *batteryWatts;
    state.battery->isCharging = *batteryWatts > 0;
    state.battery->acConnected = *batteryWatts > 0;
  }
  state.sensors = {{.key = "Tp01", .name = "CPU core", .temperature = degrees}};
  state.timestamp = instantAt(seconds);
  return state;
}

TEST(HistoryTest, FollowsThePrimaryReading) {
  const std::vector<SystemPowerState> history{stateAt(0, -5), stateAt(1, std::nullopt), stateAt(2, -12)};
  const HistoryPlot plot = wattsOver(history, 10);
  EXPECT_EQ(plot.title, "Battery draw, W");
  ASSERT_EQ(plot.points.size(), 3);
  EXPECT_EQ(plot.points[0].value, 5);
  EXPECT_EQ(plot.points[1].value, std::nullopt);
  EXPECT_EQ(plot.points[2].value, 12);
  EXPECT_EQ(plot.scale, (PlotScale{0, 15}));
}

TEST(HistoryTest, KeepsFiguresOfAnotherKindFromBeingBars) {
  const std::vector<SystemPowerState> history{stateAt(0, -5), stateAt(1, 30), stateAt(2, 31)};
  const HistoryPlot plot = wattsOver(history, 10);
  EXPECT_EQ(plot.title, "Battery charge input, W");
  EXPECT_FALSE(plot.points[0].isSolid);
  EXPECT_TRUE(plot.points[1].isSolid);
  EXPECT_TRUE(plot.points[2].isSolid);
}

TEST(HistoryTest, TakesTheLatestStatesOnly) {
  const std::vector<SystemPowerState> history{stateAt(0, -90, 90), stateAt(5, -5, 41), stateAt(10, -4, 44)};
  EXPECT_EQ(wattsOver(history, 2).points.size(), 2);
  EXPECT_EQ(wattsOver(history, 2).scale, (PlotScale{0, 5}));
  EXPECT_EQ(temperatureOver(history, 2).scale, (PlotScale{40, 50}));
  EXPECT_EQ(timeOver(history, 2), Seconds{5});
  EXPECT_EQ(timeOver(history, 9), Seconds{10});
}

TEST(HistoryTest, FollowsTheRepresentativeTemperature) {
  std::vector<SystemPowerState> history{stateAt(0, -5, 41), stateAt(1, -5, 44)};
  history.front().sensors.front() = {.key = "TB0T", .name = "Battery", .temperature = 30};
  const HistoryPlot plot = temperatureOver(history, 10);
  EXPECT_EQ(plot.title, "CPU Avg, °C");
  EXPECT_EQ(plot.points[0].value, 30);
  EXPECT_FALSE(plot.points[0].isSolid);
  EXPECT_EQ(plot.points[1].value, 44);
  EXPECT_TRUE(plot.points[1].isSolid);
}

TEST(HistoryTest, HasATitleWithoutAnyFigure) {
  EXPECT_EQ(wattsOver({}, 10).title, "Power, W");
  EXPECT_EQ(temperatureOver({}, 10).title, "Temperature, °C");
  EXPECT_EQ(timeOver({}, 10), Seconds{0});
  EXPECT_EQ(timeOver({}, -1), Seconds{0});
}

}  // namespace
}  // namespace quellin::cli
