#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "Support/Replay.h"

namespace quellin {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;
using namespace testing_support;

/// The example as the services read it, tick by tick.
class MacBookTraceTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const auto player = TracePlayer::open(exampleTrace()).value();
    while (!player->atEnd()) {
      readings().push_back(readEverything(player));
      ASSERT_TRUE(player->advance());
    }
    EXPECT_EQ(player->tornLines(), 0U);
  }

  static std::vector<Reading>& readings() {
    static std::vector<Reading> all;
    return all;
  }

  /// What `of` gives for each reading, with neighbours that are equal taken together.
  template <class Of>
  static auto course(Of of) {
    std::vector<std::decay_t<decltype(of(readings().front()))>> values;
    for (const Reading& reading : readings()) {
      auto value = of(reading);
      if (values.empty() || values.back() != value) values.push_back(std::move(value));
    }
    return values;
  }
};

TEST_F(MacBookTraceTest, GoesThroughEveryPowerSource) {
  using enum PowerReadingKind;
  const auto kinds = course([](const Reading& reading) { return reading.state.primaryPowerReading()->kind; });
  EXPECT_THAT(kinds, ElementsAre(batteryDischarge, batteryChargeInput, ioReportSiliconPower,
                                 batterySupplement, batteryDischarge));
}

TEST_F(MacBookTraceTest, ChargesUntilItIsFull) {
  const auto battery = [](const Reading& reading) { return reading.state.battery.value(); };
  EXPECT_THAT(course([&](const Reading& reading) { return battery(reading).adapterWatts; }),
              ElementsAre(std::nullopt, 96, 20, std::nullopt));
  EXPECT_THAT(course([&](const Reading& reading) { return battery(reading).isFullyCharged; }),
              ElementsAre(false, true, false));
  EXPECT_THAT(course([&](const Reading& reading) { return battery(reading).isInsufficientCharger(); }),
              ElementsAre(false, true, false));
  EXPECT_THAT(course([&](const Reading& reading) { return battery(reading).serialNumber; }),
              ElementsAre("redacted"));
}

TEST_F(MacBookTraceTest, GetsHotAndCoolsDown) {
  using enum ThermalState;
  EXPECT_THAT(course([](const Reading& reading) { return reading.state.thermal.state; }),
              ElementsAre(nominal, fair, serious, fair, nominal));
  const auto hottest = [](const Reading& reading) {
    return std::ranges::max(reading.state.sensors, {}, &TemperatureSensor::temperature).temperature;
  };
  const auto temperatures = course(hottest);
  EXPECT_GT(std::ranges::max(temperatures), 85);
  EXPECT_LT(std::ranges::max(temperatures), 105);
  EXPECT_LT(temperatures.front(), 55);
}

TEST_F(MacBookTraceTest, SleepsOnce) {
  std::vector<double> gaps;
  for (std::size_t index = 1; index < readings().size(); ++index) {
    const Seconds gap = readings()[index].state.timestamp - readings()[index - 1].state.timestamp;
    if (gap > Seconds{6}) gaps.push_back(gap.count());
  }
  ASSERT_THAT(gaps, SizeIs(1));
  EXPECT_NEAR(gaps[0], 125, 1);
  const Seconds length = readings().back().state.timestamp - readings().front().state.timestamp;
  EXPECT_NEAR(length.count(), 1195, 1);
}

TEST_F(MacBookTraceTest, HasTwoFansFortySensorsAndBusyProcesses) {
  for (const auto& [state, activity] : readings()) {
    EXPECT_THAT(state.fans, SizeIs(2));
    EXPECT_THAT(state.sensors, SizeIs(40));
    ASSERT_FALSE(activity.empty());
    EXPECT_GT(state.power->cpuPower, 0);
    EXPECT_LT(state.power->systemPower, 60);
  }
  const auto busiest = course([](const Reading& reading) { return reading.activity.front().name; });
  EXPECT_THAT(busiest, Contains("clang"));
  EXPECT_THAT(busiest, Contains("com.apple.WebKit.WebContent"));
}

TEST_F(MacBookTraceTest, IsWhatACaptureWouldHaveWritten) {
  std::ifstream file{exampleTrace()};
  std::string line;
  ASSERT_TRUE(std::getline(file, line));
  JSONDecoder decoder;
  while (std::getline(file, line)) {
    const auto answers = answersOfTickLine(decoder, line);
    ASSERT_TRUE(answers) << answers.error();
    ASSERT_EQ(tickLine(*answers, SerialNumbers::redacted), line);
  }
}

}  // namespace
}  // namespace quellin
