#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Support/FakeHost.h"
#include "Support/ManualClock.h"
#include "Support/Replay.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using namespace testing_support;

ProcessUsage usage(std::uint64_t milliseconds, std::optional<std::uint64_t> energy = std::nullopt) {
  return {.userTimeNanoseconds = milliseconds * 900'000,
          .systemTimeNanoseconds = milliseconds * 100'000,
          .packageIdleWakeups = milliseconds * 3,
          .interruptWakeups = milliseconds,
          .diskBytesRead = milliseconds * 4096,
          .diskBytesWritten = std::nullopt,
          .energyNanojoules = energy,
          .startToken = 77};
}

/// A Mac with a value in every source, each of every kind there is.
class ReplayTest : public testing::Test {
 protected:
  ReplayTest() {
    fillSMC();
    fillBattery();
    fillProcesses();
    host.hid->services = {{"PMU tdie1", 51.5},
                          {"PMU tdie1", 51.25},
                          {"gas gauge battery", 31.099999999999998},
                          {std::nullopt, 40},
                          {"PMU tdev4", -21.5},
                          {"PMU tcal", std::nullopt},
                          {"PMU nan", std::numeric_limits<double>::quiet_NaN()},
                          {"PMU inf", -std::numeric_limits<double>::infinity()}};
    host.energy->gain = std::vector<EnergyChannel>{
        {"CPU Energy", 512'000'000}, {"GPU Energy", 123'456'789}, {"ANE0", 0}, {"DRAM0", -5}, {"DISP0", 31}};
    host.thermal->signals = {.stateCode = 1,
                             .pressureState = std::numeric_limits<std::uint64_t>::max() / 2,
                             .isLowPowerMode = true};
  }

  void fillSMC() const {
    host.smc->set("FNum", "ui8 ", {2});
    host.smc->set("F0Ac", "flt ", {0x00, 0x10, 0x14, 0x45});
    host.smc->set("F0Mx", "fpe2", {0x5D, 0xC0});
    host.smc->set("F1Ac", std::string_view{"flt\0", 4}, {0x00, 0x00, 0x96, 0x44});
    host.smc->set("TB1T", "sp78", {0x1F, 0x40});
    host.smc->set("Tp09", "flt ", {0x66, 0x66, 0x52, 0x42});
  }

  void fillBattery() const {
    const PropertyTable adapter{
        {"Watts", std::int64_t{96}}, {"SerialString", std::string{"A-SECRET"}}, {"IsWireless", false}};
    host.battery->tables = {
        .registry = PropertyTable{{"CurrentCapacity", std::int64_t{55}},
                                  {"Voltage", std::int64_t{12}},
                                  {"VirtualTemperature", 12.0},
                                  {"Temperature", std::int64_t{3055}},
                                  {"Amperage", std::int64_t{-1500}},
                                  {"IsCharging", false},
                                  {"AvgTimeToEmpty", 89.5},
                                  {"InstantTimeToEmpty", NumberObject{120}},
                                  {"Limit", std::numeric_limits<double>::infinity()},
                                  {"BatterySerialNumber", std::string{"F-SECRET"}},
                                  {"AdapterDetails", adapter}},
        .powerSource = PropertyTable{{"BatteryHealth", std::string{"G\"ood/ \xC3\xA9"}},
                                     {"Hardware Serial Number", std::string{"F-SECRET"}}}};
  }

  void fillProcesses() const {
    host.processes->before = {{0, {}}, {1, {usage(500), "launchd"}}, {2, {usage(100), "idle"}},
                              {3, {}}, {4, {usage(10), "leaves"}},   {6, {usage(10), "named badly"}}};
    host.processes->after = {{0, {}},
                             {1, {usage(600, 5'000'000'000), "launchd"}},
                             {2, {usage(100), "idle"}},
                             {3, {}},
                             {5, {usage(900), "arrives"}},
                             {6, {usage(20), "caf\xE9\x01"}}};
  }

  std::shared_ptr<TracePlayer> capture(SerialNumbers serialNumbers = SerialNumbers::kept, int ticks = 1) {
    return captureAndOpen(path, host.sources(), clock, wallClock, serialNumbers, ticks);
  }

  FakeHost host;
  TemporaryFolder folder;
  std::string path = folder.pathOf("trace.jsonl");
  ManualMonotonicClock clock;
  ManualWallClock wallClock{instantAt(1741081260.1234567)};
};

TEST_F(ReplayTest, ReadsAsTheMachineDid) {
  const Reading live = readEverything(host.sources(), clock, wallClock);
  ASSERT_TRUE(live.state.battery && live.state.power);
  ASSERT_THAT(live.state.fans, SizeIs(2));
  ASSERT_THAT(live.state.sensors, SizeIs(2));
  ASSERT_THAT(live.activity, SizeIs(2));
  EXPECT_EQ(readEverything(capture()), live);
}

TEST_F(ReplayTest, ReadsTheSensorHubAsTheMachineDid) {
  host.smc = std::make_shared<VirtualSMC>();
  const Reading live = readEverything(host.sources(), clock, wallClock);
  ASSERT_THAT(live.state.sensors, SizeIs(4));
  EXPECT_EQ(readEverything(capture()), live);
}

TEST_F(ReplayTest, GivesEveryTableAsItWas) {
  const PlatformSources replayed = recordedSources(capture());
  EXPECT_EQ(replayed.battery->read(), host.battery->tables);
  EXPECT_EQ(replayed.thermal->read(), host.thermal->signals);
  const auto measurement = replayed.energy->begin();
  ASSERT_NE(measurement, nullptr);
  EXPECT_EQ(measurement->finish(), *host.energy->gain);
  const auto services = replayed.hid->temperatureServices();
  ASSERT_EQ(services.size(), 8U);
  EXPECT_THAT(std::vector(services.begin(), services.begin() + 6),
              testing::ElementsAreArray(host.hid->services.begin(), host.hid->services.begin() + 6));
  EXPECT_TRUE(std::isnan(services[6].temperature.value()));
  EXPECT_EQ(services[7], host.hid->services[7]);
}

TEST_F(ReplayTest, AnswersAgainAndInAnyOrder) {
  const auto player = capture();
  const Reading once = readEverything(player);
  static_cast<void>(recordedSources(player).hid->temperatureServices());
  EXPECT_EQ(readEverything(player), once);
}

TEST_F(ReplayTest, EveryTickIsReadAsTheMachineWas) {
  std::vector<Reading> live;
  auto writer = TraceWriter::create(path, traceHeader(host.sources(), wallClock, SerialNumbers::kept));
  ASSERT_TRUE(writer);
  for (int tick = 0; tick < 5; ++tick) {
    wallClock.set(instantAt(1000 - tick));
    host.battery->tables.registry->set("Amperage", std::int64_t{-1000 - tick});
    (*host.energy->gain)->at(0).nanojoules += 1000;
    live.push_back(readEverything(host.sources(), clock, wallClock));
    ASSERT_TRUE(writer->write(captureTick(host.sources(), wallClock, clock)));
  }
  const auto player = *TracePlayer::open(path);
  for (const Reading& reading : live) {
    EXPECT_EQ(readEverything(player), reading);
    ASSERT_TRUE(player->advance());
  }
  EXPECT_TRUE(player->atEnd());
}

TEST_F(ReplayTest, AMachineWithNothingStaysOne) {
  host = FakeHost{};
  const Reading live = readEverything(host.sources(), clock, wallClock);
  const auto player = capture();
  EXPECT_EQ(readEverything(player), live);
  EXPECT_EQ(recordedSources(player).energy->begin(), nullptr);
}

TEST_F(ReplayTest, AMeasurementThatFailedFailsAgain) {
  host.energy->gain = std::optional<std::vector<EnergyChannel>>{};
  const auto measurement = recordedSources(capture()).energy->begin();
  ASSERT_NE(measurement, nullptr);
  EXPECT_EQ(measurement->finish(), std::nullopt);
}

TEST_F(ReplayTest, SerialNumbersAreLeftOutOfEveryTable) {
  const PlatformSources replayed = recordedSources(capture(SerialNumbers::redacted));
  EXPECT_THAT(contentOf(path), Not(HasSubstr("SECRET")));
  const BatteryTables tables = replayed.battery->read();
  EXPECT_EQ(tables.registry->string("BatterySerialNumber"), "redacted");
  EXPECT_EQ(tables.registry->table("AdapterDetails")->string("SerialString"), "redacted");
  EXPECT_EQ(tables.powerSource->string("Hardware Serial Number"), "redacted");
  EXPECT_EQ(tables.registry->integer("Amperage"), -1500);
}

TEST_F(ReplayTest, SerialNumbersAreKeptWhenAskedFor) {
  EXPECT_EQ(recordedSources(capture()).battery->read(), host.battery->tables);
  EXPECT_THAT(contentOf(path), HasSubstr("F-SECRET"));
}

TEST_F(ReplayTest, AWaitOfAnotherLengthKeepsTheRates) {
  const auto player = capture();
  const auto measurement = recordedSources(player).energy->begin();
  player->monotonicClock().sleep(Seconds{0.2});
  const auto channels = measurement->finish();
  ASSERT_TRUE(channels);
  EXPECT_EQ(channels->at(0), (EnergyChannel{"CPU Energy", 1'024'000'000}));
}

}  // namespace
}  // namespace quellin
