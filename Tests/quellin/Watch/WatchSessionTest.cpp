#include <cstdint>
#include <vector>

#include <gmock/gmock.h>

#include "Support/Replay.h"
#include "Support/SQLWork.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Support/OldSessions.h"
#include "quellin/Watch/WatchSession.h"

namespace quellin::cli {
namespace {

// The work that one state takes in a store with so many old sessions.
std::int64_t workOfAState(int oldSessions) {
  const testing_support::TemporaryFolder folder;
  const testing_support::SQLWork work;
  Options options;
  options.source = testing_support::exampleTrace();
  options.store = folder.path() / "a.store";
  testing_support::recordOldSessions(*options.store, oldSessions);
  const MeasuredHost host = MeasuredHost::open(options);
  Loop loop;
  WatchSession session{options, host, loop};
  session.toggle(Seconds{1});
  const auto record = [&] {
    session.record(host.reader().readAll(), [&] { loop.executor()->post([&] { loop.stop(); }); });
    loop.runAgain();
  };
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
  Options options = [this] {
    Options result;
    result.source = testing_support::exampleTrace();
    result.store = folder.path() / "a.store";
    return result;
  }();
  const MeasuredHost host = MeasuredHost::open(options);
  Loop loop;

  [[nodiscard]] std::shared_ptr<PowerSession> begin(PowerSessionStore& store, double second) const {
    return store.start("Theirs", PowerSessionSource::cli, 1, instantAt(second));
  }
  // One state, recorded or not.
  void pass(WatchSession& session) {
    session.record(host.reader().readAll(), [&] { loop.executor()->post([&] { loop.stop(); }); });
    loop.runAgain();
  }
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
  EXPECT_TRUE(RecorderLock::take(*options.store));
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
