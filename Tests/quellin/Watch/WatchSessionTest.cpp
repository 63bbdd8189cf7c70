#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Support/SQLWork.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Support/BusyStore.h"
#include "quellin/Support/ExampleOptions.h"
#include "quellin/Support/LoopRuns.h"
#include "quellin/Support/OldSessions.h"
#include "quellin/Watch/WatchSession.h"

namespace quellin::cli {
namespace {

using testing_support::BusyStore;
using testing_support::exampleWord;
using testing_support::impatient;
using testing_support::optionsOverExample;

// One state, recorded or not.
void passState(WatchSession& session, const MeasuredHost& host, Loop& loop) {
  testing_support::runToItsEnd(loop,
                               [&](auto done) { session.record(host.reader().readAll(), std::move(done)); });
}

// The work that one state takes in a store with so many old sessions.
std::int64_t workOfAState(int oldSessions) {
  const testing_support::TemporaryFolder folder;
  const testing_support::SQLWork work;
  const Options options = optionsOverExample(folder.path() / "a.store");
  testing_support::recordOldSessions(*options.store, oldSessions);
  const MeasuredHost host = MeasuredHost::open(options);
  Loop loop;
  WatchSession session{options, host, loop};
  session.toggle(Seconds{1});
  const auto record = [&] { passState(session, host, loop); };
  record();
  const std::int64_t cost = work.of(record);
  EXPECT_TRUE(session.isRecording()) << session.text();
  return cost;
}

TEST(WatchSessionTest, AStateCostsTheSameHoweverManySessionsThereAre) {
  const std::int64_t withFew = workOfAState(2);
  EXPECT_GT(withFew, 0);
  EXPECT_EQ(workOfAState(40), withFew);
}

// A live view of the example trace, over a store where a session is active.
struct WatchSessionBesideAnotherTest : testing::Test {
  testing_support::TemporaryFolder folder;
  const Options options = optionsOverExample(folder.path() / "a.store");
  const MeasuredHost host = MeasuredHost::open(options);
  Loop loop;

  [[nodiscard]] std::shared_ptr<PowerSession> begin(PowerSessionStore& store, double second) const {
    return store.start("Theirs", PowerSessionSource::cli, 1, instantAt(second));
  }
  [[nodiscard]] std::filesystem::path lockFile() const { return folder.path() / "a.store-recorder"; }
  void pass(WatchSession& session) { passState(session, host, loop); }
};

TEST_F(WatchSessionBesideAnotherTest, DoesNotJoinALiveRecorder) {
  PowerSessionStore theirs{"elsewhere", *options.store};
  const auto active = begin(theirs, 1000);
  auto lock = RecorderLock::take(*options.store);
  ASSERT_TRUE(lock);
  WatchSession session{options, host, loop};
  session.toggle(Seconds{1});
  pass(session);
  EXPECT_FALSE(session.isRecording());
  EXPECT_THAT(session.failure().value_or(""),
              testing::HasSubstr("Theirs, is being recorded by another program"));
  theirs.stop(active, instantAt(2000));
  lock.reset();
  pass(session);
  EXPECT_EQ(session.failure(), std::nullopt);
  session.toggle(Seconds{1});
  EXPECT_TRUE(session.isRecording());
  EXPECT_FALSE(RecorderLock::take(*options.store)) << "held while it is recorded here";
  session.end();
  EXPECT_FALSE(std::filesystem::exists(lockFile()));
  EXPECT_TRUE(RecorderLock::take(*options.store));
}

TEST_F(WatchSessionBesideAnotherTest, KeepsNoWordOfASessionThatWasEndedElsewhere) {
  WatchSession session{options, host, loop};
  session.toggle(Seconds{1});
  EXPECT_EQ(testing_support::contentOf(lockFile()), exampleWord);
  pass(session);
  PowerSessionStore theirs{"elsewhere", *options.store};
  const auto ended = theirs.activeSession();
  theirs.stop(ended, instantAt(2000));
  pass(session);
  EXPECT_FALSE(session.isRecording());
  EXPECT_FALSE(std::filesystem::exists(lockFile()));
  EXPECT_THAT(theirs.cost(*ended),
              testing::Optional(testing::Field(&RecorderCost::bytesWritten, testing::Gt(0))));
}

TEST_F(WatchSessionBesideAnotherTest, WritesNothingIntoAnEmptyFile) {
  folder.write("a.store", "");
  const WatchSession session{options, host, loop};
  EXPECT_EQ(session.failure(), std::nullopt);
  EXPECT_EQ(std::filesystem::file_size(*options.store), 0U);
}

// A session that others may go on with is on the disk then, whatever is known here.
TEST_F(WatchSessionBesideAnotherTest, AnEndingThatCannotBeSavedLeavesTheWord) {
  WatchSession session{options, host, loop, impatient()};
  session.toggle(Seconds{1});
  const BusyStore writer{*options.store};
  session.end();
  EXPECT_NE(session.failure(), std::nullopt);
  EXPECT_EQ(testing_support::contentOf(lockFile()), exampleWord);
  session.toggle(Seconds{1});
  EXPECT_FALSE(session.isRecording());
  EXPECT_EQ(testing_support::contentOf(lockFile()), exampleWord);
}

TEST_F(WatchSessionBesideAnotherTest, ABeginningThatFailsLeavesTheWordOnlyOfAnActiveSession) {
  PowerSessionStore theirs{"elsewhere", *options.store};
  for (const bool isActive : {false, true}) {
    if (isActive) static_cast<void>(begin(theirs, 1000));
    WatchSession session{options, host, loop, impatient()};
    const BusyStore writer{*options.store};
    session.toggle(Seconds{1});
    EXPECT_FALSE(session.isRecording());
    EXPECT_NE(session.failure(), std::nullopt);
    EXPECT_EQ(std::filesystem::exists(lockFile()), isActive);
  }
}

TEST_F(WatchSessionBesideAnotherTest, DoesNotMixATraceIntoALaterSession) {
  PowerSessionStore theirs{"elsewhere", *options.store};
  const auto active = begin(theirs, 1900000000);
  WatchSession session{options, host, loop};
  session.toggle(Seconds{1});
  EXPECT_FALSE(session.isRecording());
  EXPECT_THAT(session.failure().value_or(""), testing::HasSubstr("they cannot be one session"));
  EXPECT_TRUE(RecorderLock::take(*options.store));
}

}  // namespace
}  // namespace quellin::cli
