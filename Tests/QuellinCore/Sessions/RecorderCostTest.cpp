// What recording a session costs: measured, noted beside its samples, and added up over those who record it.
#include <cstdint>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "QuellinCore/Sessions/RecorderMeter.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/FirstVersion.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"
#include "Support/SampleStates.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::Field;
using testing::Gt;
using testing::Optional;
using testing_support::stateOnBattery;

class RecorderCostTest : public testing::Test {
 protected:
  [[nodiscard]] std::shared_ptr<PowerSessionStore> openStore() const {
    return std::make_shared<PowerSessionStore>("0.9.4", path, false,
                                               PowerSessionStoreSurroundings{.executor = executor});
  }
  [[nodiscard]] std::unique_ptr<PowerSessionRecorder> makeRecorder() const {
    return std::make_unique<PowerSessionRecorder>(
        executor, store, Seconds{1e9}, [](int, Seconds) { return std::vector<ProcessActivityInfo>(); },
        std::make_unique<testing_support::ManualBackground>(background), systemWallClock(), cpu);
  }
  std::shared_ptr<PowerSession> start() {
    return recorder->start("Test", PowerSessionSource::app, 1, instantAt(0));
  }
  /// Records a snapshot after `use` seconds of work.
  void record(double second, double use) {
    cpu.use(Seconds{use});
    recorder->record(stateOnBattery(instantAt(second)), {});
    while (background->runOne()) executor->runPosted();
  }
  /// The CPU seconds that a reader finds in the store.
  [[nodiscard]] std::optional<double> cpuSeconds(const std::shared_ptr<PowerSession>& session) const {
    const auto reader = openStore();
    const auto cost = reader->cost(*reader->session(session->id()));
    return cost ? std::optional{cost->cpuSeconds} : std::nullopt;
  }

  const testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  std::shared_ptr<ThreadExecutor> executor = std::make_shared<ThreadExecutor>();
  testing_support::ManualCPUClock cpu;
  std::shared_ptr<testing_support::ManualBackground::Controls> background =
      std::make_shared<testing_support::ManualBackground::Controls>();
  std::shared_ptr<PowerSessionStore> store = openStore();
  std::unique_ptr<PowerSessionRecorder> recorder = makeRecorder();
};

TEST_F(RecorderCostTest, IsNotedWithTheFirstSampleOnceAMinuteAndAtTheEnd) {
  const auto session = start();
  EXPECT_EQ(cpuSeconds(session), std::nullopt);
  record(0, 1);
  EXPECT_EQ(cpuSeconds(session), 1);
  for (int second = 1; second < 60; ++second) record(second, 1);
  EXPECT_EQ(cpuSeconds(session), 1);
  record(60, 1);
  EXPECT_EQ(cpuSeconds(session), 61);
  record(61, 1);
  cpu.use(Seconds{0.5});
  recorder->stop(instantAt(62));
  EXPECT_EQ(cpuSeconds(session), 62.5);
}

TEST_F(RecorderCostTest, ASessionThatOthersEndedHasTheCostUpToWhenThatIsNoticed) {
  const auto session = start();
  record(0, 1);
  record(1, 2);
  const auto other = openStore();
  other->stop(other->session(session->id()), instantAt(2));
  cpu.use(Seconds{0.5});
  recorder->refreshActiveSession();
  EXPECT_EQ(recorder->activeSession(), nullptr);
  EXPECT_EQ(cpuSeconds(session), 3.5);
}

TEST_F(RecorderCostTest, WhoeverOnlyLooksAtASessionCostsItNothing) {
  const auto session = start();
  record(0, 1);
  {
    const auto looking = makeRecorder();
    EXPECT_NE(looking->activeSession(), nullptr);
    cpu.use(Seconds{100});
  }
  EXPECT_EQ(cpuSeconds(session), 1);
}

TEST_F(RecorderCostTest, AnInterruptedSessionHasTheCostOfItsLastMoments) {
  const auto session = start();
  record(0, 1);
  record(1, 2);
  recorder->interrupt(instantAt(2));
  EXPECT_EQ(session->status(), PowerSessionStatus::interrupted);
  EXPECT_EQ(session->endedAt(), instantAt(2));
  EXPECT_EQ(recorder->activeSession(), nullptr);
  EXPECT_EQ(cpuSeconds(session), 3);
  EXPECT_THAT(store->cost(*session), Optional(Field(&RecorderCost::bytesWritten, Gt(0))));
}

TEST_F(RecorderCostTest, WhatHappensBeforeAndBetweenSessionsIsNotCounted) {
  cpu.use(Seconds{100});
  const auto first = start();
  record(0, 1);
  recorder->stop(instantAt(1));
  cpu.use(Seconds{100});
  const auto second = start();
  record(2, 3);
  EXPECT_EQ(cpuSeconds(first), 1);
  EXPECT_EQ(cpuSeconds(second), 3);
}

TEST_F(RecorderCostTest, AddsUpOverEverybodyWhoRecordsTheSession) {
  const auto session = start();
  record(0, 1);
  record(1, 1);
  recorder.reset();
  EXPECT_EQ(cpuSeconds(session), 2) << "a recorder that goes notes its cost";
  cpu.use(Seconds{100});
  recorder = makeRecorder();
  record(2, 4);
  EXPECT_EQ(start(), session);
  record(3, 8);
  recorder->stop(instantAt(4));
  EXPECT_EQ(cpuSeconds(session), 14);
}

TEST_F(RecorderCostTest, AClockSetBackIsNoReasonToNoteNothing) {
  const auto session = start();
  record(1000, 1);
  record(10, 1);
  EXPECT_EQ(cpuSeconds(session), 2);
}

TEST_F(RecorderCostTest, WhatCouldNotBeSavedIsNotedWithTheNextSave) {
  store = std::make_shared<PowerSessionStore>(
      "0.9.4", path, false,
      PowerSessionStoreSurroundings{.executor = executor, .file = {.busyTimeout = Seconds{0}}});
  recorder = makeRecorder();
  const auto session = start();
  Database other{path, Database::Access::readWrite, {}};
  other.execute("BEGIN IMMEDIATE");
  record(0, 1);
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_EQ(cpuSeconds(session), std::nullopt);
  other.execute("ROLLBACK");
  record(1, 1);
  EXPECT_EQ(cpuSeconds(session), 1);
}

TEST_F(RecorderCostTest, ASessionEndedElsewhereGetsTheCostOfItsLastMoments) {
  const auto session = start();
  record(0, 1);
  const auto elsewhere = openStore();
  elsewhere->stop(elsewhere->activeSession(), instantAt(1));
  cpu.use(Seconds{2});
  recorder.reset();
  EXPECT_EQ(cpuSeconds(session), 3);
  EXPECT_EQ(elsewhere->session(session->id())->status(), PowerSessionStatus::completed);
}

TEST_F(RecorderCostTest, ASessionDeletedElsewhereLeavesNothing) {
  start();
  record(0, 1);
  const auto elsewhere = openStore();
  elsewhere->remove(elsewhere->activeSession());
  recorder.reset();
  EXPECT_EQ(Database(path, Database::Access::readWrite, {}).integer("SELECT count(*) FROM RecorderCost"), 0);
}

TEST_F(RecorderCostTest, OfASessionOfEarlierSoftwareIsNotKnown) {
  const auto session = start();
  record(0, 1);
  recorder.reset();
  store.reset();
  Database(path, Database::Access::readWrite, {}).execute(testing_support::backToVersion1);
  EXPECT_EQ(cpuSeconds(session), std::nullopt);
  store = openStore();
  recorder = makeRecorder();
  record(1, 1);
  recorder->stop(instantAt(2));
  EXPECT_EQ(cpuSeconds(session), std::nullopt) << "a part would pass for the whole";
}

TEST_F(RecorderCostTest, TheBytesAreThePagesInTheLog) {
  start();
  recorder.reset();
  store.reset();  // everything moves into the file
  store = openStore();
  recorder = makeRecorder();
  for (int second = 0; second < 10; ++second) record(second, 0);
  constexpr std::uintmax_t page = 4096;
  constexpr std::uintmax_t header = 32;
  constexpr std::uintmax_t frameHeader = 24;
  const auto frames = (std::filesystem::file_size(path.string() + "-wal") - header) / (frameHeader + page);
  EXPECT_GT(frames, 10U);
  EXPECT_EQ(store->bytesWritten(), static_cast<std::int64_t>(frames * page));
}

TEST_F(RecorderCostTest, TheBytesOfARecordingAreThoseWrittenSinceItBegan) {
  const auto session = start();
  const auto before = store->bytesWritten();
  record(0, 0);
  record(1, 0);
  const auto after = store->bytesWritten();
  recorder->stop(instantAt(2));
  EXPECT_THAT(store->cost(*session), Optional(Field(&RecorderCost::bytesWritten, after - before)));
  EXPECT_THAT(after - before, Gt(2 * 4096));
}

TEST_F(RecorderCostTest, ADamagedNoteIsFoundByACheck) {
  const auto session = start();
  record(0, 1);
  EXPECT_TRUE(store->check(*session).isWhole());
  Database(path, Database::Access::readWrite, {}).execute("UPDATE RecorderCost SET checksum = 1");
  EXPECT_TRUE(store->check(*session).hasLostCost);
  EXPECT_FALSE(store->check(*session).isWhole());
  EXPECT_EQ(store->cost(*session), std::nullopt);
}

TEST(RecorderCostInMemoryTest, NothingIsWrittenToDisk) {
  PowerSessionStore store("0.9.4", std::nullopt, true);
  store.start("Test", PowerSessionSource::app, 1, instantAt(0));
  EXPECT_EQ(store.bytesWritten(), 0);
}

}  // namespace
}  // namespace quellin
