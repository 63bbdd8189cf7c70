#include <cmath>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSegments.h"
#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "Support/ManualBackground.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"

namespace quellin {
namespace {

using testing_support::activity;
using testing_support::energyRow;
using testing_support::ManualBackground;
using testing_support::telemetry;

/// Streams of snapshots as no machine gives them: gaps, missing readings, changes of the source, several
/// snapshots of one instant and figures that are not numbers. Where the clock may be set back, time does
/// not only go forwards.
class StateStream {
 public:
  StateStream(std::uint64_t seed, bool isClockSetBack) : random_(seed), isClockSetBack_(isClockSetBack) {}

  SystemPowerState next() {
    step();
    SystemPowerState state;
    state.timestamp = instantAt(now_);
    state.thermal.pressure = pick(5);
    if (pick(4) > 0) state.battery = battery();
    if (pick(3) > 0) state.power.emplace().systemPower = pick(40) == 0 ? notANumber : uniform(0, 30);
    for (int count = pick(3); count > 0; --count) state.fans.push_back({0, "Fan 0", pick(6000), 0, 6000});
    for (int count = pick(4); count > 0; --count) state.sensors.push_back({"TC0P", "CPU", uniform(-10, 110)});
    return state;
  }

  std::optional<ProTelemetrySnapshot> telemetryOrNone() {
    if (pick(4) > 0) return std::nullopt;
    const char* name = names.at(static_cast<std::size_t>(pick(3)));
    auto snapshot = telemetry(std::floor(now_), {energyRow(name, uniform(-1, 3)), energyRow(name, {}, 2.5)});
    snapshot.isAvailable = pick(3) > 0;
    return snapshot;
  }

  std::vector<ProcessActivityInfo> activities() {
    std::vector<ProcessActivityInfo> rows;
    for (int count = pick(4); count > 0; --count) {
      rows.push_back(activity(names.at(static_cast<std::size_t>(pick(3))), uniform(-1, 20)));
    }
    return rows;
  }

  int pick(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }

 private:
  static constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  static constexpr std::array<const char*, 3> names{"clang", "make", "Finder"};

  double uniform(double low, double high) { return std::uniform_real_distribution(low, high)(random_); }

  void step() {
    const int kind = pick(10);
    if (kind == 0) now_ += uniform(600, 40'000);
    if (kind == 1 && isClockSetBack_) now_ -= uniform(0, 5000);
    if (kind > 3) now_ += uniform(0, 3);
  }

  BatteryInfo battery() {
    BatteryInfo info;
    info.chargePercent = pick(101);
    info.acConnected = pick(2) == 0;
    info.isCharging = pick(2) == 0;
    info.wattage = pick(5) == 0 ? 0 : uniform(-40, 40);
    if (pick(40) == 0) info.wattage = notANumber;
    return info;
  }

  std::mt19937_64 random_;
  double now_ = 1'741'089'600;
  bool isClockSetBack_;
};

/// One recording of a random stream.
class Recording {
 public:
  Recording(std::uint64_t seed, bool isClockSetBack) : stream_(seed, isClockSetBack) {
    session = recorder.start("Test", PowerSessionSource::app, 2, instantAt(1'741'089'600));
    for (int count = 1 + stream_.pick(120); count > 0; --count) {
      recorder.record(stream_.next(), stream_.telemetryOrNone());
      while (background->runOne()) fixture.executor->runPosted();
    }
  }

  testing_support::MemoryStore fixture;
  std::shared_ptr<ManualBackground::Controls> background = std::make_shared<ManualBackground::Controls>();

 private:
  StateStream stream_;

 public:
  PowerSessionRecorder recorder{fixture.executor, fixture.store, Seconds{5},
                                [this](int, Seconds) { return stream_.activities(); },
                                std::make_unique<ManualBackground>(background)};
  std::shared_ptr<PowerSession> session;
};

class SummaryAgreementTest : public testing::TestWithParam<std::uint64_t> {};

TEST_P(SummaryAgreementTest, LiveAndStoredAgreeWhileTimeGoesForwards) {
  Recording recording(GetParam(), false);
  const PowerSessionSummary live = recording.recorder.activeSummary();
  EXPECT_EQ(live, recording.fixture.store->summary(recording.session));
  JSONDecoder decoder;
  const auto samples = recording.fixture.store->samples(recording.session);
  EXPECT_EQ(live, PowerSessionMetrics::summary(*recording.session, samples, decoder));
  recording.recorder.refreshSummary();
  EXPECT_EQ(live, recording.recorder.activeSummary()) << "rebuilt from the store";
}

TEST_P(SummaryAgreementTest, AfterARebuildTheyAgreeHoweverTheClockWasSet) {
  Recording recording(GetParam(), true);
  PowerSessionSummary live = recording.recorder.activeSummary();
  const PowerSessionSummary stored = recording.fixture.store->summary(recording.session);
  EXPECT_EQ(live.sampleCount, stored.sampleCount);
  EXPECT_EQ(live.wattSampleCount, stored.wattSampleCount);
  EXPECT_EQ(live.minWatts, stored.minWatts);
  EXPECT_EQ(live.maxWatts, stored.maxWatts);
  EXPECT_EQ(live.averageWattsNote, stored.averageWattsNote);
  EXPECT_EQ(live.maxThermalPressure, stored.maxThermalPressure);
  EXPECT_EQ(live.maxTemperature, stored.maxTemperature);
  EXPECT_EQ(live.maxFanRPM, stored.maxFanRPM);
  recording.recorder.refreshSummary();
  EXPECT_EQ(recording.recorder.activeSummary(), stored);
}

TEST_P(SummaryAgreementTest, SegmentsCoverTheSamplesAndTheirEnergy) {
  Recording recording(GetParam(), false);
  const PowerSessionSummary summary = recording.recorder.activeSummary();
  std::int64_t sampleCount = 0;
  std::int64_t wattSampleCount = 0;
  double wattHours = 0;
  for (const auto& segment : summary.powerSegments) {
    EXPECT_EQ(segment.index, &segment - summary.powerSegments.data());
    sampleCount += segment.sampleCount;
    wattSampleCount += segment.wattSampleCount;
    wattHours += segment.totalWattHours.value_or(0);
  }
  EXPECT_EQ(sampleCount, summary.sampleCount);
  EXPECT_EQ(wattSampleCount, summary.wattSampleCount);
  if (summary.powerSegments.size() == 1) {
    EXPECT_EQ(wattHours, summary.totalWattHours.value_or(0));
  }
  EXPECT_EQ(summary.averageWattsNote.has_value(), hasMixedSources(summary.powerSegments));
}

INSTANTIATE_TEST_SUITE_P(Seeds, SummaryAgreementTest, testing::Range<std::uint64_t>(0, 60));

}  // namespace
}  // namespace quellin
