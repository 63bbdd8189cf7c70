#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SampleCursor.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"
#include "Support/StoreErrors.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::activity;
using testing_support::emptyState;
using testing_support::kindThrownBy;
using testing_support::noon;
using testing_support::stateOnBattery;
using OnDamage = SampleCursor::OnDamage;

class SampleCursorTest : public testing::Test {
 protected:
  void append(double second) {
    store.appendSample(session, stateOnBattery(noon + Seconds(second)), {activity("clang", 4)}, std::nullopt);
  }
  void edit(const std::string& statement) { store.container().database().execute(statement); }
  std::vector<double> seconds(OnDamage onDamage = OnDamage::fail) {
    std::vector<double> result;
    auto cursor = store.scan(*session, onDamage);
    while (cursor->next()) result.push_back(Seconds(cursor->columns().timestamp - noon).count());
    skipped = cursor->skipped();
    return result;
  }
  std::optional<SampleFacts> factsOfFirst() {
    auto cursor = store.scan(*session);
    return cursor->next() ? cursor->facts() : std::nullopt;
  }

  PowerSessionStore store{"0.9.4", std::nullopt, true};
  std::shared_ptr<PowerSession> session = store.start("Test", PowerSessionSource::app, 1, noon);
  std::int64_t skipped = 0;
};

TEST_F(SampleCursorTest, WalksByTimestamp) {
  for (const double second : {1, 2, 3}) append(second);
  EXPECT_THAT(seconds(), ElementsAre(1, 2, 3));
  append(0.5);
  append(2);
  EXPECT_THAT(seconds(), ElementsAre(0.5, 1, 2, 2, 3));
}

TEST_F(SampleCursorTest, SeesColumnsBlobsAndFacts) {
  append(1);
  const auto sample = store.samples(session)[0];
  auto cursor = store.scan(*session);
  ASSERT_TRUE(cursor->next());
  EXPECT_EQ(cursor->columns(), sample->columns());
  EXPECT_EQ(cursor->blobs(), sample->blobs());
  ASSERT_TRUE(cursor->facts().has_value());
  EXPECT_EQ(cursor->facts()->powerSourceKind, "batteryDischarge");
  EXPECT_THAT(cursor->facts()->contributions, ElementsAre(Contribution{"clang", false, 4}));
  EXPECT_FALSE(cursor->next());
}

TEST_F(SampleCursorTest, ASessionThatIsNotSavedHasNone) {
  const auto unsaved = PowerSession::make({});
  EXPECT_FALSE(store.scan(*unsaved).has_value());
  EXPECT_EQ(store.check(*unsaved), SessionCheck{});
}

TEST_F(SampleCursorTest, FactsGoWhenTheBlobsChange) {
  append(1);
  store.samples(session)[0]->setSnapshotData("{}");
  store.context().save();
  EXPECT_EQ(factsOfFirst(), std::nullopt);
}

TEST_F(SampleCursorTest, FactsGoWhenAColumnChanges) {
  append(1);
  const auto sample = store.samples(session)[0];
  SampleColumns columns = sample->columns();
  columns.acConnected.reset();
  sample->setColumns(columns);
  store.context().save();
  EXPECT_EQ(factsOfFirst(), std::nullopt);
}

TEST_F(SampleCursorTest, FactsGoWhenAnythingIsEditedBySQL) {
  for (const char* statement :
       {"UPDATE SampleBlobs SET snapshotData = x'00'", "UPDATE SampleBlobs SET processActivityData = NULL",
        "DELETE FROM SampleBlobs", "UPDATE PowerSessionSample SET acConnected = NULL"}) {
    edit("DELETE FROM PowerSessionSample; DELETE FROM SampleBlobs");
    append(1);
    ASSERT_TRUE(factsOfFirst().has_value());
    edit(statement);
    EXPECT_EQ(factsOfFirst(), std::nullopt) << statement;
    EXPECT_THAT(seconds(), ElementsAre(1)) << statement;
  }
}

TEST_F(SampleCursorTest, ARowEditedBySQLIsTakenAsItIs) {
  append(1);
  edit("UPDATE PowerSessionSample SET totalWatts = 99");
  auto cursor = store.scan(*session);
  ASSERT_TRUE(cursor->next());
  EXPECT_EQ(cursor->columns().totalWatts, 99);
  edit("UPDATE PowerSession SET title = 'edited'");
  EXPECT_EQ(store.sessions()[0]->title(), "edited");
}

// A row whose values changed behind SQL's back: the trigger is away while the value changes.
constexpr const char* changedBehindTheBack =
    "DROP TRIGGER editedSample; UPDATE PowerSessionSample SET totalWatts = 99 WHERE timestamp = 1741089602";

TEST_F(SampleCursorTest, ADamagedRowFailsOrIsSkipped) {
  for (const double second : {1, 2, 3}) append(second);
  edit(changedBehindTheBack);
  EXPECT_EQ(kindThrownBy([&] { seconds(); }), StoreError::Kind::damaged);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(1, 3));
  EXPECT_EQ(skipped, 1);
  EXPECT_EQ(store.samples(session).size(), 2U);
  EXPECT_EQ(store.check(*session).lostSamples, 1);
  append(0);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(0, 1, 3));
  EXPECT_EQ(skipped, 1);
}

TEST_F(SampleCursorTest, ADamagedLastRowIsCounted) {
  for (const double second : {1, 2}) append(second);
  edit(changedBehindTheBack);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(1));
  EXPECT_EQ(skipped, 1);
}

TEST_F(SampleCursorTest, AMissingRowFailsOrIsCounted) {
  for (const double second : {1, 2, 3, 4}) append(second);
  edit("DELETE FROM PowerSessionSample WHERE timestamp BETWEEN 1741089602 AND 1741089603");
  EXPECT_EQ(kindThrownBy([&] { seconds(); }), StoreError::Kind::damaged);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(1, 4));
  EXPECT_EQ(skipped, 2);
}

TEST_F(SampleCursorTest, MissingRowsOfAClockSetBackFailOrAreCounted) {
  for (const double second : {3, 4, 1, 2, 5}) append(second);
  EXPECT_THAT(seconds(), ElementsAre(1, 2, 3, 4, 5));
  edit("DELETE FROM PowerSessionSample WHERE timestamp IN (1741089601, 1741089605)");
  EXPECT_EQ(kindThrownBy([&] { seconds(); }), StoreError::Kind::damaged);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(2, 3, 4));
  EXPECT_EQ(skipped, 2);
}

TEST_F(SampleCursorTest, MissingLastRowsAreCountedByTheBlobsTheyLeave) {
  for (const double second : {1, 2, 3, 4}) append(second);
  edit("DELETE FROM PowerSessionSample WHERE timestamp >= 1741089603");
  EXPECT_EQ(kindThrownBy([&] { seconds(); }), StoreError::Kind::damaged);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(1, 2));
  EXPECT_EQ(skipped, 2);
  append(5);
  EXPECT_THAT(seconds(OnDamage::skip), ElementsAre(1, 2, 5)) << "a new sample takes no key of theirs";
  edit("DELETE FROM PowerSessionSample");
  EXPECT_THAT(seconds(OnDamage::skip), IsEmpty());
  EXPECT_EQ(skipped, 5);
}

TEST_F(SampleCursorTest, ADamagedSessionRecordIsNotListed) {
  edit("DROP TRIGGER editedSession; UPDATE PowerSession SET title = 'x'");
  EXPECT_EQ(kindThrownBy([&] { (void)store.sessions(); }), StoreError::Kind::damaged);
}

TEST_F(SampleCursorTest, SamplesTellOfASessionWhoseRecordIsGone) {
  append(1);
  store.stop(session, noon + Seconds(1));
  const auto other = store.start("Other", PowerSessionSource::app, 1, noon);
  store.appendSample(other, emptyState(noon), {}, std::nullopt);
  EXPECT_EQ(store.sessions().size(), 2U);
  edit("DROP TRIGGER deletedSession; DELETE FROM PowerSession WHERE title = 'Other'");
  EXPECT_EQ(kindThrownBy([&] { (void)store.sessions(); }), StoreError::Kind::damaged);
  EXPECT_EQ(kindThrownBy([&] { store.start("Third", PowerSessionSource::app, 1, noon); }),
            StoreError::Kind::damaged);
}

TEST_F(SampleCursorTest, DamagedBlobsAreEmptyAndCounted) {
  append(1);
  store.appendSample(session, emptyState(noon + Seconds(2)), {}, std::nullopt);
  edit(
      "UPDATE SampleBlobs SET processActivityData = x'0100000000' WHERE processActivityData IS NOT NULL;"
      "UPDATE SampleBlobs SET snapshotData = substr(snapshotData, 1, length(snapshotData) - 1) WHERE "
      "processActivityData IS NULL");
  const auto samples = store.samples(session);
  EXPECT_EQ(samples[0]->processActivityData(), "");
  EXPECT_NE(samples[0]->snapshotData(), "");
  EXPECT_EQ(samples[1]->snapshotData(), "");
  EXPECT_EQ(store.check(*session),
            (SessionCheck{.sampleCount = 2, .lostSamples = 0, .lostSnapshots = 1, .lostProcessData = 1}));
}

}  // namespace
}  // namespace quellin
