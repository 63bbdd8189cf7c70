// What a recorder does when its store fails, and when measurements come from other threads.
#include <atomic>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::SizeIs;
using testing_support::activity;
using testing_support::stateOnBattery;
using testing_support::telemetry;

/// A recorder over a store file that another process may lock or damage.
class PowerSessionRecorderFailuresTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<PowerSessionRecorder> makeRecorder() const {
    return std::make_unique<PowerSessionRecorder>(
        executor, store, Seconds{10}, [](int, Seconds) { return std::vector<ProcessActivityInfo>(); });
  }
  std::shared_ptr<PowerSession> start() {
    return recorder->start("Test", PowerSessionSource::app, 2, instantAt(0));
  }
  void record(double second) { recorder->record(stateOnBattery(instantAt(second)), telemetry(second, {})); }
  void lock() { other.execute("BEGIN IMMEDIATE"); }
  void unlock() { other.execute("ROLLBACK"); }

  const testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  std::shared_ptr<ThreadExecutor> executor = std::make_shared<ThreadExecutor>();
  std::shared_ptr<PowerSessionStore> store = std::make_shared<PowerSessionStore>(
      "0.9.4", path, false,
      PowerSessionStoreSurroundings{.executor = executor, .file = {.busyTimeout = Seconds{0}}});
  Database other{path, Database::Access::readWrite, {}};
  std::unique_ptr<PowerSessionRecorder> recorder = makeRecorder();
};

TEST_F(PowerSessionRecorderFailuresTest, AStartThatFailsIsToldAndTheNextSuccessClearsIt) {
  lock();
  EXPECT_THAT(start(), IsNull());
  ASSERT_TRUE(recorder->lastError().has_value());
  EXPECT_THAT(*recorder->lastError(), HasSubstr(path.string()));
  EXPECT_THAT(recorder->activeSession(), IsNull());
  unlock();
  EXPECT_THAT(start(), NotNull());
  EXPECT_EQ(recorder->lastError(), std::nullopt);
}

TEST_F(PowerSessionRecorderFailuresTest, ASummaryThatCannotBeReadIsTold) {
  start();
  record(1);
  other.execute("DROP TABLE PowerSessionSample");
  recorder->refreshSummary();
  ASSERT_TRUE(recorder->lastError().has_value());
  EXPECT_THAT(*recorder->lastError(), HasSubstr(path.string()));
  EXPECT_THAT(recorder->activeSession(), NotNull());
  EXPECT_EQ(recorder->activeSummary().sampleCount, 0);
}

TEST_F(PowerSessionRecorderFailuresTest, ASessionGoesOnUntilItCouldBeEnded) {
  for (const auto ending : {&PowerSessionRecorder::stop, &PowerSessionRecorder::interrupt}) {
    const auto session = start();
    lock();
    (*recorder.*ending)(instantAt(5));
    EXPECT_TRUE(recorder->lastError().has_value());
    EXPECT_EQ(recorder->activeSession(), session);
    unlock();
    (*recorder.*ending)(instantAt(6));
    EXPECT_EQ(recorder->lastError(), std::nullopt);
    EXPECT_THAT(recorder->activeSession(), IsNull());
  }
}

TEST_F(PowerSessionRecorderFailuresTest, ASampleThatCouldNotBeSavedIsSavedWithTheNext) {
  const auto session = start();
  record(1);
  const PowerSessionSummary before = recorder->activeSummary();
  lock();
  record(2);
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_EQ(recorder->activeSummary(), before);
  unlock();
  record(3);
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 2) << "until the next rebuild";
  recorder->refreshSummary();
  EXPECT_EQ(recorder->activeSummary().sampleCount, 3);
}

TEST_F(PowerSessionRecorderFailuresTest, ASessionWhoseDeletionFailedIsRecordedNoMore) {
  const auto session = start();
  record(1);
  lock();
  recorder->remove(session);
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_THAT(recorder->sessions(), IsEmpty());
  unlock();
  EXPECT_THAT(start(), testing::Ne(session));
  EXPECT_TRUE(session->isDeleted());
  EXPECT_THAT(recorder->sessions(), SizeIs(1));
}

TEST_F(PowerSessionRecorderFailuresTest, ASessionOfWhichNothingCanBeReadIsToldInLastError) {
  const auto session = start();
  record(1);
  other.execute("UPDATE PowerSession SET checksum = 7");
  EXPECT_THAT(recorder->sessions(), IsEmpty());
  EXPECT_TRUE(recorder->lastError().has_value());
  recorder = makeRecorder();
  ASSERT_TRUE(recorder->lastError().has_value());
  EXPECT_THAT(*recorder->lastError(), HasSubstr("damaged"));
  EXPECT_THAT(recorder->activeSession(), IsNull());
}

TEST_F(PowerSessionRecorderFailuresTest, ARefreshThatFailsKeepsWhatIsKnown) {
  const auto session = start();
  record(1);
  other.execute("UPDATE PowerSession SET checksum = 7");
  recorder->refreshActiveSession();
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_EQ(recorder->activeSession(), session);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
}

TEST_F(PowerSessionRecorderFailuresTest, SummariesAndExportsOfADamagedSession) {
  const auto session = start();
  for (const double second : {1, 2, 3}) record(second);
  other.execute("UPDATE PowerSessionSample SET checksum = 7 WHERE timestamp = 2");
  EXPECT_EQ(recorder->summary(session).sampleCount, 2);
  other.execute("DROP TABLE PowerSessionSample");
  EXPECT_EQ(recorder->summary(session), PowerSessionSummary::empty());
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_THROW((void)recorder->exportJSONL(session), StoreError);
}

TEST(PowerSessionRecorderThreadsTest, MeasurementsRunBesideTheMainExecutor) {
  constexpr int snapshots = 20;
  const testing_support::MemoryStore fixture;
  const auto isMain = [executor = fixture.executor] { return executor->isCurrent(); };
  std::atomic<int> measurements = 0;
  int completed = 0;
  {
    PowerSessionRecorder recorder(
        fixture.executor, fixture.store, Seconds{0},
        [&](int, Seconds) {
          EXPECT_FALSE(isMain());
          ++measurements;
          return std::vector{activity("make", 1)};
        },
        makeBackground(2));
    const auto session = recorder.start("Test", PowerSessionSource::app, 2, instantAt(0));
    for (int second = 0; second < snapshots; ++second) {
      recorder.record(stateOnBattery(instantAt(second)), std::nullopt, [&] {
        EXPECT_TRUE(isMain());
        ++completed;
      });
    }
    while (completed < snapshots) {
      fixture.executor->runPosted();
      std::this_thread::yield();
    }
    EXPECT_EQ(recorder.activeSummary().sampleCount, snapshots);
    EXPECT_EQ(recorder.summary(session).topContributors.front().score, snapshots);
    for (int second = snapshots; second < 2 * snapshots; ++second) {
      recorder.record(stateOnBattery(instantAt(second)), std::nullopt, [&] { ++completed; });
    }
  }
  fixture.executor->runPosted();
  EXPECT_EQ(completed, snapshots) << "what was in flight is dropped";
  EXPECT_GE(measurements, snapshots);
}

}  // namespace
}  // namespace quellin
