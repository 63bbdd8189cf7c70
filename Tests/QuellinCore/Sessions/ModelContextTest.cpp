#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/ModelContext.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"
#include "Support/SampleStates.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::kindThrownBy;
using testing_support::noon;
using testing_support::stateOnBattery;

class ModelContextTest : public testing::Test {
 protected:
  std::shared_ptr<PowerSessionSample> append(double second) {
    return store.appendSample(session, stateOnBattery(noon + Seconds(second)), {}, std::nullopt);
  }
  // As long as another process holds the lock every save fails.
  [[nodiscard]] auto lock() const {
    struct Lock {
      explicit Lock(const std::filesystem::path& path) : database(path, Database::Access::readWrite, {}) {}
      Database database;
      Transaction transaction{database};
    };
    return std::make_unique<Lock>(folder.path() / "a.store");
  }
  static PowerSessionStoreSurroundings impatient() {
    PowerSessionStoreSurroundings surroundings;
    surroundings.file.busyTimeout = Seconds{0};
    return surroundings;
  }

  const testing_support::TemporaryFolder folder;
  PowerSessionStore store{"0.9.4", folder.path() / "a.store", false, impatient()};
  std::shared_ptr<PowerSession> session = store.start("Test", PowerSessionSource::app, 1, noon);
};

TEST_F(ModelContextTest, TheSameRowIsTheSameObjectWhileSomebodyHoldsIt) {
  const auto sample = append(1);
  EXPECT_THAT(store.sessions(), ElementsAre(session));
  EXPECT_EQ(store.session(session->id()), session);
  EXPECT_THAT(store.samples(session), ElementsAre(sample));
  const auto again = store.samples(session);
  EXPECT_THAT(store.samples(session), again);
}

TEST_F(ModelContextTest, NobodyHoldsWhatNobodyAskedFor) {
  std::weak_ptr<PowerSessionSample> sample = append(1);
  EXPECT_TRUE(sample.expired());
  sample = store.samples(session)[0];
  EXPECT_TRUE(sample.expired());
  const std::weak_ptr<PowerSession> held = session;
  session.reset();
  EXPECT_TRUE(held.expired());
}

TEST_F(ModelContextTest, ChangesTellTheObserversAndAreSavedTogether) {
  const auto sample = append(1);
  std::vector<std::string> heard;
  const auto onSession = session->onChange([&] { heard.push_back(session->title()); });
  const auto onSample = sample->onChange([&] { heard.push_back(sample->snapshotData()); });
  session->setTitle("changed");
  sample->setSnapshotData("{}");
  EXPECT_THAT(heard, ElementsAre("changed", "{}"));
  EXPECT_TRUE(store.context().hasChanges());
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  EXPECT_EQ(other.sessions()[0]->title(), "Test");
  store.context().save();
  EXPECT_FALSE(store.context().hasChanges());
  EXPECT_EQ(other.sessions()[0]->title(), "changed");
  EXPECT_EQ(other.samples(other.sessions()[0])[0]->snapshotData(), "{}");
  EXPECT_EQ(sample->snapshotData(), "{}");
}

TEST_F(ModelContextTest, EveryValueCanBeChanged) {
  const auto sample = append(1);
  SampleColumns columns = sample->columns();
  columns.totalWatts.reset();
  columns.acConnected = true;
  columns.batteryPercent = -3;
  columns.maxFanRPM.reset();
  sample->setColumns(columns);
  sample->setProcessActivityData("[]");
  sample->setProTelemetryData("{}");
  sample->setProTelemetryData(std::nullopt);
  session->setStartedAt(noon - Seconds(1));
  session->setEndedAt(noon + Seconds(9));
  session->setSourceRaw("unheard of");
  session->setSampleInterval(0.5);
  store.context().save();
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  const auto stored = other.sessions().at(0);
  EXPECT_EQ(stored->columns(), session->columns());
  EXPECT_EQ(stored->source(), PowerSessionSource::app);
  EXPECT_EQ(other.samples(stored).at(0)->columns(), columns);
  EXPECT_EQ(other.samples(stored).at(0)->processActivityData(), "[]");
  EXPECT_EQ(other.samples(stored).at(0)->proTelemetryData(), std::nullopt);
}

TEST_F(ModelContextTest, AppendingTellsTheObserversOfTheSession) {
  int changes = 0;
  const auto subscription = session->onChange([&] { ++changes; });
  append(1);
  EXPECT_EQ(changes, 1);
}

TEST_F(ModelContextTest, WhatAnotherProcessChangedIsSeenAndTold) {
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  const auto theirs = other.sessions().at(0);
  int changes = 0;
  const auto subscription = theirs->onChange([&] { ++changes; });
  session->setTitle("renamed");
  store.context().save();
  EXPECT_THAT(other.sessions(), ElementsAre(theirs));
  EXPECT_EQ(theirs->title(), "renamed");
  EXPECT_EQ(changes, 1);
}

TEST_F(ModelContextTest, OnesOwnUnsavedChangeOutlivesAFetch) {
  session->setTitle("mine");
  EXPECT_THAT(store.sessions(), ElementsAre(session));
  EXPECT_EQ(session->title(), "mine");
}

TEST_F(ModelContextTest, AFailedSaveKeepsTheSampleForTheNext) {
  append(1);
  auto held = lock();
  EXPECT_EQ(kindThrownBy([&] { append(2); }), StoreError::Kind::locked);
  EXPECT_EQ(kindThrownBy([&] { append(3); }), StoreError::Kind::locked);
  EXPECT_TRUE(store.context().hasChanges());
  const auto pending = store.samples(session);
  ASSERT_THAT(pending, SizeIs(3));
  EXPECT_THAT(pending[2]->snapshotData(), testing::HasSubstr("2025-03-04T12:00:03Z"));
  held.reset();
  append(4);
  EXPECT_FALSE(store.context().hasChanges());
  const auto saved = store.samples(session);
  ASSERT_THAT(saved, SizeIs(4));
  EXPECT_EQ(saved[1], pending[1]);
  EXPECT_EQ(saved[2], pending[2]);
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  EXPECT_EQ(other.check(*other.sessions()[0]),
            (SessionCheck{.sampleCount = 4, .lostSamples = 0, .lostSnapshots = 0, .lostProcessData = 0}));
}

TEST_F(ModelContextTest, AFailedStartForgetsTheSession) {
  store.stop(session, noon);
  const auto start = [&](double interval) {
    return store.start("next", PowerSessionSource::app, interval, noon);
  };
  EXPECT_EQ(kindThrownBy([&] { start(std::numeric_limits<double>::infinity()); }),
            StoreError::Kind::notStorable);
  EXPECT_FALSE(store.context().hasChanges());
  EXPECT_THAT(store.sessions(), SizeIs(1));
  EXPECT_EQ(start(1)->title(), "next");
}

TEST_F(ModelContextTest, AFailedStopKeepsTheNewValuesForTheNextSave) {
  auto held = lock();
  EXPECT_EQ(kindThrownBy([&] { store.stop(session, noon + Seconds(1)); }), StoreError::Kind::locked);
  EXPECT_EQ(session->status(), PowerSessionStatus::completed);
  held.reset();
  store.context().save();
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  EXPECT_EQ(other.sessions()[0]->endedAt(), noon + Seconds(1));
}

TEST_F(ModelContextTest, AFailedDeletionIsDoneByTheNextSave) {
  const auto sample = append(1);
  auto held = lock();
  EXPECT_EQ(kindThrownBy([&] { store.remove(session); }), StoreError::Kind::locked);
  EXPECT_FALSE(session->isDeleted());
  EXPECT_TRUE(store.context().hasChanges());
  EXPECT_THAT(store.samples(session), ElementsAre(sample)) << "it is still there to be looked at";
  held.reset();
  EXPECT_THAT(store.sessions(), IsEmpty());
  EXPECT_THAT(store.session(session->id()), testing::IsNull());
  EXPECT_EQ(kindThrownBy([&] { append(2); }), StoreError::Kind::sessionGone);
  const auto next = store.start("next", PowerSessionSource::app, 1, noon);
  EXPECT_NE(next, session);
  EXPECT_TRUE(session->isDeleted());
  EXPECT_FALSE(store.context().hasChanges());
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  EXPECT_THAT(other.sessions(), SizeIs(1));
}

TEST_F(ModelContextTest, AChangeBesideAFailedDeletionLeavesNothingBehind) {
  const auto sample = append(1);
  auto held = lock();
  EXPECT_EQ(kindThrownBy([&] { store.remove(session); }), StoreError::Kind::locked);
  session->setTitle("too late");
  sample->setSnapshotData(R"({"another":"shape"})");
  held.reset();
  store.context().save();
  EXPECT_TRUE(session->isDeleted());
  for (const char* rows : {"SELECT count(*) FROM PowerSession", "SELECT count(*) FROM PowerSessionSample",
                           "SELECT count(*) FROM SampleBlobs", "SELECT count(*) FROM BlobReference"}) {
    EXPECT_EQ(store.container().database().integer(rows), 0) << rows;
  }
}

TEST_F(ModelContextTest, AnObserverOfALostSessionMayUseTheStoreAtOnce) {
  append(1);
  PowerSessionStore other("0.9.4", folder.path() / "a.store");
  other.remove(other.activeSession());
  std::shared_ptr<PowerSession> next;
  const auto subscription = session->onChange([&] {
    if (session->isDeleted() && !next) next = store.start("next", PowerSessionSource::app, 1, noon);
  });
  EXPECT_EQ(kindThrownBy([&] { append(2); }), StoreError::Kind::sessionGone);
  ASSERT_NE(next, nullptr);
  EXPECT_THAT(other.sessions(), SizeIs(1));
}

TEST_F(ModelContextTest, SessionsAndSamplesOfOnesOwnMakingAreSaved) {
  const auto own = PowerSession::make({.id = UUID::random(),
                                       .title = "own",
                                       .startedAt = noon,
                                       .endedAt = noon,
                                       .status = PowerSessionStatus::interrupted,
                                       .source = PowerSessionSource::cli,
                                       .appVersion = "1",
                                       .schemaVersion = 2,
                                       .sampleInterval = 1});
  store.context().insert(own);
  PowerSessionSampleInit values;
  values.snapshotData = "not JSON";
  values.session = own;
  const auto sample = PowerSessionSample::make(values);
  store.context().insert(sample);
  EXPECT_THAT(store.sessions(), ElementsAre(own, session)) << "with one start, the newest first";
  EXPECT_THAT(own->samples(), testing::Optional(ElementsAre(sample)));
  store.context().save();
  EXPECT_THAT(own->samples(), testing::Optional(ElementsAre(sample)));
  EXPECT_EQ(sample->snapshotData(), "not JSON");
  EXPECT_EQ(store.check(*own).sampleCount, 1);
}

TEST_F(ModelContextTest, AnObserverMayDeleteTheSession) {
  const auto subscription = session->onChange([&] {
    if (session->title() == "delete me") store.remove(session);
  });
  session->setTitle("delete me");
  EXPECT_TRUE(session->isDeleted());
  EXPECT_FALSE(store.context().hasChanges());
  EXPECT_THAT(store.sessions(), IsEmpty());
}

TEST_F(ModelContextTest, ModelsOutliveTheirStore) {
  std::shared_ptr<PowerSession> outlasting;
  std::shared_ptr<PowerSessionSample> sample;
  {
    PowerSessionStore other("0.9.4", folder.path() / "b.store");
    outlasting = other.start("x", PowerSessionSource::app, 1, noon);
    sample = other.appendSample(outlasting, stateOnBattery(noon), {}, std::nullopt);
  }
  outlasting->setTitle("y");
  EXPECT_EQ(outlasting->title(), "y");
  EXPECT_THAT(outlasting->samples(), testing::Optional(IsEmpty()));
  EXPECT_EQ(sample->snapshotData(), "");
}

}  // namespace
}  // namespace quellin
