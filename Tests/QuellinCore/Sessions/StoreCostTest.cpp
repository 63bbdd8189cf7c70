// What operations cost as a session grows, in work that can be counted.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <vector>

#include <gmock/gmock.h>

#include "Support/FaultyFileSystem.h"
#include "Support/KnownStore.h"
#include "Support/SQLWork.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::FaultyFileSystem;
using testing_support::KnownRecording;
using testing_support::KnownSession;
using testing_support::SQLWork;

class StoreCostTest : public testing::Test {
 protected:
  void recordUpTo(std::int64_t samples) {
    while (recording.samples() < samples) recording.recordNext();
  }

  const testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  const SQLWork work;
  FaultyFileSystem files;
  KnownRecording recording{path, KnownSession(), {.fileSystem = files.name()}};
};

TEST_F(StoreCostTest, AnAppendCostsTheSameHoweverLongTheSessionIs) {
  std::vector<std::int64_t> costs;
  // Samples that neither telemetry nor process activity comes with.
  for (const std::int64_t length : {65, 965, 3065}) {
    recordUpTo(length);
    costs.push_back(work.of([&] { recording.recordNext(); }));
  }
  EXPECT_GT(costs.front(), 0);
  EXPECT_THAT(costs, testing::Each(costs.front()));
}

TEST_F(StoreCostTest, ReadingsCostInProportionToTheSamples) {
  using Reading = std::function<void(PowerSessionStore&, const std::shared_ptr<PowerSession>&)>;
  const std::vector<Reading> readings{
      [](auto& store, const auto& session) { static_cast<void>(store.summary(session)); },
      [](auto& store, const auto& session) { static_cast<void>(store.coverage(session)); },
      [](auto& store, const auto& session) { static_cast<void>(store.check(*session)); },
      [](auto& store, const auto& session) { static_cast<void>(store.exportJSONL(session, {})); }};
  constexpr std::int64_t step = 600;
  std::vector<std::vector<std::int64_t>> costs(readings.size());
  for (const std::int64_t length : {step, 2 * step, 4 * step}) {
    recordUpTo(length);
    for (std::size_t index = 0; index < readings.size(); ++index) {
      PowerSessionStore store("reader", path);
      const auto session = store.sessions().at(0);
      costs[index].push_back(work.of([&] { readings[index](store, session); }));
    }
  }
  for (const auto& cost : costs) {
    EXPECT_GT(cost[0], step);
    const auto forTheFirst = static_cast<double>(cost[1] - cost[0]);
    const auto forTwiceAsMany = static_cast<double>(cost[2] - cost[1]);
    EXPECT_NEAR(forTwiceAsMany / forTheFirst, 2, 0.02);
  }
}

TEST_F(StoreCostTest, WhetherASessionIsStillActiveCostsTheSameHoweverManyThereAre) {
  std::vector<std::int64_t> costs;
  for (const int sessions : {1, 2, 40}) {
    PowerSessionStore store("reader", folder.path() / "many.store");
    while (std::ssize(store.sessions()) < sessions) {
      if (const auto before = store.activeSession()) store.stop(before, instantAt(1));
      store.start("Another", PowerSessionSource::app, 1, instantAt(0));
    }
    const auto session = store.activeSession();
    costs.push_back(work.of([&] { EXPECT_TRUE(store.isStillActive(session)); }));
  }
  EXPECT_GT(costs.front(), 0);
  EXPECT_THAT(costs, testing::Each(costs.front()));
}

TEST_F(StoreCostTest, WhatWaitsForRoomOnTheDiskDoesNotMakeEveryAttemptDearer) {
  recordUpTo(5);
  files.fail(FaultyFileSystem::Fault::diskFull);
  recordUpTo(305);
  const std::int64_t withFew = work.of([&] { recordUpTo(365); });
  recordUpTo(905);
  const std::int64_t withMany = work.of([&] { recordUpTo(965); });
  EXPECT_GT(withFew, 0);
  EXPECT_LE(withMany, withFew + withFew / 10);
  files.fail(FaultyFileSystem::Fault::none);
  recordUpTo(966);
  EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
  const auto reading = testing_support::readKnownStore(path, recording.known());
  EXPECT_EQ(reading.fault, "");
  EXPECT_EQ(reading.samples, 966);
}

}  // namespace
}  // namespace quellin
