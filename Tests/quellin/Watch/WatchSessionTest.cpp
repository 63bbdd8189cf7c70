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

}  // namespace
}  // namespace quellin::cli
