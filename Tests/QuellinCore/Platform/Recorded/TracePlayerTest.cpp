#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ManualMonotonicClock;

std::string tick(double monotonic, const std::string& rest = "") {
  return R"({"kind":"tick","wall":)" + std::to_string(monotonic + 1000) + R"(,"monotonic":)" +
         std::to_string(monotonic) + rest + "}\n";
}

constexpr const char* energy =
    R"(,"energy":{"seconds":0.1,"channels":[{"name":"CPU Energy","nanojoules":10}]})";
constexpr const char* processes =
    R"(,"processes":{"seconds":0.5,"first":[{"pid":1,"user":100,"system":0},{"pid":2,"user":5,"system":0}],)"
    R"("second":[{"pid":1,"name":"launchd","user":200,"system":0},{"pid":3,"name":"new","user":7,"system":0}]})";

class TracePlayerTest : public testing::Test {
 protected:
  std::shared_ptr<TracePlayer> play(const std::string& ticks,
                                    PlaybackSpeed speed = PlaybackSpeed::maximum()) {
    text = *encodeJSON(header) + "\n" + ticks;
    auto player = TracePlayer::over(*TraceReader::over("day", bytesOfText(text)), speed, host);
    EXPECT_TRUE(player);
    return *player;
  }

  static std::vector<std::int32_t> idsOf(ProcessScan& scan, std::size_t room = 10) {
    std::vector<std::int32_t> ids(room);
    ids.resize(static_cast<std::size_t>(scan.listProcessIDs(ids)) / sizeof(std::int32_t));
    return ids;
  }

  static std::uint64_t userTime(ProcessScan& scan, std::int32_t pid) {
    return scan.usage(pid).value_or(ProcessUsage{}).userTimeNanoseconds;
  }

  TraceHeader header;
  std::string text;
  ManualMonotonicClock host;
};

TEST_F(TracePlayerTest, StandsOnEachTickInTurn) {
  const auto player = play(tick(10) + tick(11.5) + tick(13));
  for (const double time : {10.0, 11.5, 13.0}) {
    ASSERT_FALSE(player->atEnd());
    EXPECT_EQ(player->answers()->monotonic, Seconds{time});
    EXPECT_EQ(player->wallClock().now(), instantAt(time + 1000));
    EXPECT_EQ(player->monotonicClock().now(), Seconds{time});
    ASSERT_TRUE(player->advance());
  }
  EXPECT_TRUE(player->atEnd());
  EXPECT_EQ(player->ticksPlayed(), 3U);
}

TEST_F(TracePlayerTest, TheClocksStandStillAtTheEnd) {
  const auto player = play(tick(10));
  for (int time = 0; time < 3; ++time) ASSERT_TRUE(player->advance());
  EXPECT_TRUE(player->atEnd());
  EXPECT_EQ(player->answers(), nullptr);
  EXPECT_EQ(player->wallClock().now(), instantAt(1010));
  EXPECT_EQ(player->monotonicClock().now(), Seconds{10});
  EXPECT_EQ(player->ticksPlayed(), 1U);
}

TEST_F(TracePlayerTest, ATraceWithoutTicksIsAtItsEnd) {
  header.createdAt = 77;
  const auto player = play("");
  EXPECT_TRUE(player->atEnd());
  EXPECT_EQ(player->wallClock().now(), instantAt(77));
  EXPECT_EQ(player->untilNext(), Seconds{0});
}

TEST_F(TracePlayerTest, SleepingMovesTheClockButNotThePlayer) {
  const auto player = play(tick(10) + tick(11) + tick(20));
  player->monotonicClock().sleep(Seconds{0.25});
  player->monotonicClock().sleep(Seconds{-1});
  player->monotonicClock().sleep(Seconds{std::nan("")});
  EXPECT_EQ(player->monotonicClock().now(), Seconds{10.25});
  player->monotonicClock().sleep(Seconds{4.75});
  EXPECT_EQ(player->answers()->monotonic, Seconds{10});
  EXPECT_EQ(player->wallClock().now(), instantAt(1010));
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->monotonicClock().now(), Seconds{15});
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->monotonicClock().now(), Seconds{20});
}

TEST(NominalIntervalTest, IsToldToATwentiethOfASecondUnlessNothingIsLeft) {
  const std::vector<std::pair<double, double>> cases{{1.013, 1}, {0.487, 0.5}, {0.25, 0.25}, {4.98, 5},
                                                     {2, 2},     {0.03, 0.05}, {0.02, 0.02}, {0, 0}};
  for (const auto& [measured, expected] : cases) {
    EXPECT_DOUBLE_EQ(nominalInterval(Seconds{measured}).count(), expected) << measured;
  }
}

TEST_F(TracePlayerTest, TheIntervalLeadsToTheNextTickAtAnySpeed) {
  const auto player = play(tick(10) + tick(15) + tick(17), *PlaybackSpeed::times(4));
  player->monotonicClock().sleep(Seconds{6});
  EXPECT_EQ(player->interval(), Seconds{5});
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->interval(), Seconds{2});
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->interval(), std::nullopt);
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->interval(), std::nullopt);
}

TEST_F(TracePlayerTest, AtMaximumSpeedNobodyWaits) {
  const auto player = play(tick(10) + tick(3600));
  player->monotonicClock().sleep(Seconds{5});
  EXPECT_EQ(player->untilNext(), Seconds{0});
  EXPECT_EQ(host.slept(), Seconds{0});
}

TEST_F(TracePlayerTest, AtAnySpeedTicksComeWhenTheyAreDue) {
  const auto player = play(tick(10) + tick(14) + tick(18), *PlaybackSpeed::times(4));
  EXPECT_EQ(player->untilNext(), Seconds{1});
  player->monotonicClock().sleep(Seconds{2});
  EXPECT_THAT(host.sleeps, ElementsAre(Seconds{0.5}));
  EXPECT_EQ(player->untilNext(), Seconds{0.5});
  host.advance(Seconds{0.75});
  EXPECT_EQ(player->untilNext(), Seconds{0});
  ASSERT_TRUE(player->advance());
  // Having been late for one tick does not delay the next.
  EXPECT_EQ(player->untilNext(), Seconds{0.75});
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(player->untilNext(), Seconds{0});
}

TEST_F(TracePlayerTest, TheSpeedIsAPositiveNumber) {
  for (const double factor : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(PlaybackSpeed::times(factor)) << factor;
  }
  EXPECT_EQ(PlaybackSpeed::times(0.5)->shortened(Seconds{3}), Seconds{6});
}

TEST_F(TracePlayerTest, DamageIsToldWhenItIsReached) {
  const auto player = play(tick(10) + "{\n" + tick(11));
  EXPECT_FALSE(player->atEnd());
  const auto moved = player->advance();
  ASSERT_FALSE(moved);
  EXPECT_EQ(moved.error().line, 3U);
  EXPECT_TRUE(player->atEnd());
  EXPECT_TRUE(player->advance());
}

TEST_F(TracePlayerTest, ADamagedFirstTickIsRefusedAtOnce) {
  text = *encodeJSON(header) + "\n{\n";
  const auto player = TracePlayer::over(*TraceReader::over("day", bytesOfText(text)));
  ASSERT_FALSE(player);
  EXPECT_EQ(player.error().line, 2U);
}

TEST_F(TracePlayerTest, ATornLineIsCounted) {
  const auto player = play(tick(10) + "{\"kind\":\"ti");
  ASSERT_TRUE(player->advance());
  EXPECT_TRUE(player->atEnd());
  EXPECT_EQ(player->tornLines(), 1U);
}

TEST_F(TracePlayerTest, AMissingFileIsAnError) { EXPECT_FALSE(TracePlayer::open("/nowhere/to/be/found")); }

TEST_F(TracePlayerTest, TheSourcesHaveNothingAtTheEnd) {
  const auto player =
      play(tick(10, std::string{energy} + processes + R"(,"smc":[],"thermal":{"stateCode":1})"));
  const PlatformSources sources = recordedSources(player);
  EXPECT_NE(sources.smc->open(), nullptr);
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(sources.smc->open(), nullptr);
  EXPECT_EQ(sources.energy->begin(), nullptr);
  EXPECT_EQ(sources.thermal->read(), ThermalSignals{});
  EXPECT_EQ(sources.battery->read(), BatteryTables{});
  EXPECT_THAT(sources.hid->temperatureServices(), IsEmpty());
  EXPECT_THAT(idsOf(*sources.processes->beginScan()), IsEmpty());
  for (const SourceDiagnosis& diagnosis : sources.diagnose()) {
    EXPECT_EQ(diagnosis.availability, SourceAvailability::absent);
    EXPECT_EQ(diagnosis.reason, "The trace has ended.");
    EXPECT_EQ(diagnosis.path, "day");
  }
}

TEST_F(TracePlayerTest, DiagnosesBySourceWhatTheTickHolds) {
  const SourceDiagnosis refused{.source = "Battery",
                                .availability = SourceAvailability::notPermitted,
                                .reason = "Only root may.",
                                .path = "/sys/x",
                                .remedy = "Be root."};
  header.diagnoses = TraceDiagnoses{};
  header.diagnoses->battery = refused;
  const auto player = play(tick(10, energy) + tick(11, R"(,"battery":{"registry":[]})"));
  const PlatformSources sources = recordedSources(player);
  EXPECT_EQ(sources.energy->diagnose().availability, SourceAvailability::available);
  EXPECT_EQ(sources.smc->diagnose(),
            (SourceDiagnosis{"SMC", SourceAvailability::absent,
                             "The trace has no values of this source at this point.", "day", std::nullopt}));
  EXPECT_EQ(sources.battery->diagnose(),
            (SourceDiagnosis{"Battery", SourceAvailability::notPermitted,
                             "When the trace was captured: Only root may.", "day", std::nullopt}));
  ASSERT_TRUE(player->advance());
  EXPECT_EQ(sources.battery->diagnose().availability, SourceAvailability::available);
  EXPECT_EQ(sources.energy->diagnose().availability, SourceAvailability::absent);
}

TEST_F(TracePlayerTest, AMeasurementKeepsTheTickItWasBegunAt) {
  const auto player = play(tick(10, energy) + tick(10.1));
  const auto measurement = recordedSources(player).energy->begin();
  ASSERT_TRUE(player->advance());
  EXPECT_THAT(measurement->finish().value(), ElementsAre(EnergyChannel{"CPU Energy", 10}));
}

TEST_F(TracePlayerTest, AScanGivesBothSnapshots) {
  const auto player = play(tick(10, processes));
  const auto scan = recordedSources(player).processes->beginScan();
  EXPECT_THAT(idsOf(*scan), ElementsAre(1, 2));
  EXPECT_EQ(userTime(*scan, 1), 100U);
  EXPECT_EQ(userTime(*scan, 2), 5U);
  EXPECT_FALSE(scan->usage(3));
  player->monotonicClock().sleep(Seconds{0.5});
  EXPECT_THAT(idsOf(*scan), ElementsAre(1, 3));
  EXPECT_EQ(userTime(*scan, 1), 200U);
  EXPECT_EQ(scan->name(1), "launchd");
  EXPECT_FALSE(scan->usage(2));
  EXPECT_FALSE(scan->name(2));
  EXPECT_EQ(userTime(*scan, 3), 7U);
}

TEST_F(TracePlayerTest, AListThatDidNotFitIsAskedForAgain) {
  const auto player = play(tick(10, processes));
  const auto scan = recordedSources(player).processes->beginScan();
  EXPECT_THAT(idsOf(*scan, 1), ElementsAre(1));
  EXPECT_THAT(idsOf(*scan, 2), ElementsAre(1, 2));
  static_cast<void>(scan->usage(1));
  EXPECT_THAT(idsOf(*scan, 1), ElementsAre(1));
  EXPECT_THAT(idsOf(*scan, 2), ElementsAre(1, 3));
}

TEST_F(TracePlayerTest, ALongerWaitStretchesWhatAProcessDid) {
  const auto player = play(tick(10, processes));
  const auto scan = recordedSources(player).processes->beginScan();
  static_cast<void>(idsOf(*scan));
  player->monotonicClock().sleep(Seconds{2});
  static_cast<void>(idsOf(*scan));
  EXPECT_EQ(userTime(*scan, 1), 500U);
  EXPECT_EQ(userTime(*scan, 3), 7U);
}

TEST_F(TracePlayerTest, TicksWithoutProcessesRepeatTheLast) {
  const auto player = play(tick(10) + tick(11, processes) + tick(12));
  const PlatformSources sources = recordedSources(player);
  EXPECT_THAT(idsOf(*sources.processes->beginScan()), IsEmpty());
  EXPECT_EQ(sources.processes->diagnose().availability, SourceAvailability::absent);
  for (int later = 0; later < 2; ++later) {
    ASSERT_TRUE(player->advance());
    EXPECT_THAT(idsOf(*sources.processes->beginScan()), ElementsAre(1, 2));
    EXPECT_EQ(sources.processes->diagnose().availability, SourceAvailability::available);
  }
}

}  // namespace
}  // namespace quellin
