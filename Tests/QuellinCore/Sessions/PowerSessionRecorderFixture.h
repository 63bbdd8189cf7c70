#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "Support/ManualBackground.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin::testing_support {

/// A recorder over a store in memory, whose measurements the test lets happen one by one.
class PowerSessionRecorderFixture : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<PowerSessionRecorder> makeRecorder(Seconds interval = Seconds{10}) {
    return std::make_unique<PowerSessionRecorder>(
        fixture.executor, fixture.store, interval,
        [this](int limit, Seconds duration) {
          measurements.emplace_back(limit, duration);
          return std::vector{activity("make", 2)};
        },
        std::make_unique<ManualBackground>(background), fixture.clock);
  }

  std::shared_ptr<PowerSession> start(double second = 1000) {
    return recorder->start("Test", PowerSessionSource::app, 2, instantAt(second));
  }

  /// Records a snapshot of `second`, without letting a measurement happen.
  void offer(double second, const std::optional<ProTelemetrySnapshot>& proTelemetry = {}) {
    recorder->record(stateOnBattery(instantAt(second)), proTelemetry,
                     [this, second] { completed.push_back(second); });
  }

  /// Lets the oldest measurement happen and its result arrive.
  void finishMeasurement() {
    ASSERT_TRUE(background->runOne()) << "nothing is being measured";
    fixture.executor->runPosted();
  }

  /// Records a snapshot to the end.
  void record(double second, const std::optional<ProTelemetrySnapshot>& proTelemetry = {}) {
    offer(second, proTelemetry);
    while (background->runOne()) fixture.executor->runPosted();
  }

  /// When the samples of a session were taken.
  [[nodiscard]] std::vector<double> secondsOf(const std::shared_ptr<PowerSession>& session) const {
    std::vector<double> seconds;
    for (const auto& sample : fixture.store->samples(session)) {
      seconds.push_back(sample->timestamp().time_since_epoch().count());
    }
    return seconds;
  }

  /// A snapshot that has no JSON form.
  [[nodiscard]] static SystemPowerState stateThatCannotBeStored(double second) {
    SystemPowerState state = stateOnBattery(instantAt(second));
    state.sensors.front().temperature = std::numeric_limits<double>::quiet_NaN();
    return state;
  }

  testing_support::MemoryStore fixture;
  std::shared_ptr<ManualBackground::Controls> background = std::make_shared<ManualBackground::Controls>();
  std::vector<std::pair<int, Seconds>> measurements;
  std::vector<double> completed;
  std::unique_ptr<PowerSessionRecorder> recorder = makeRecorder();
};

}  // namespace quellin::testing_support
