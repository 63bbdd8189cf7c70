#include <gmock/gmock.h>

#include "Support/Replay.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct StoreClaimTest : testing::Test {
  testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  PowerSessionStore store{"0.9.4", path};

  [[nodiscard]] Options optionsOver(const std::string& source) const {
    Options options;
    options.source = source;
    options.store = path;
    return options;
  }
  const Options trace = optionsOver(testing_support::exampleTrace());

  void begin(Instant moment) { store.start("Theirs", PowerSessionSource::cli, 1, moment); }

  // How claiming the store for a machine fails; empty when it does not.
  std::string failureOf(const Options& options) {
    try {
      static_cast<void>(claimStore(store, options, MeasuredHost::open(options)));
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::failed);
      return failure.what();
    }
    return {};
  }
};

TEST_F(StoreClaimTest, AnEmptyStoreIsThereForOne) {
  const MeasuredHost host = MeasuredHost::open(trace);
  const RecorderLock lock = claimStore(store, trace, host);
  EXPECT_EQ(failureOf(trace), "a session is being recorded by another program into " + path.string() +
                                  ". 'quellin stop --store " + path.string() +
                                  "' ends that session; --store names another store.");
}

TEST_F(StoreClaimTest, ATraceGoesOnWithWhatBeganWhenItDoesOrBefore) {
  begin(MeasuredHost::open(trace).wallClock->now());
  EXPECT_EQ(failureOf(trace), "");
}

TEST_F(StoreClaimTest, ATraceDoesNotGoOnWithWhatBeganLater) {
  begin(MeasuredHost::open(trace).wallClock->now() + Seconds{0.5});
  EXPECT_THAT(failureOf(trace),
              AllOf(StartsWith("session "), HasSubstr(", Theirs, is active in " + path.string()),
                    HasSubstr("the trace " + trace.source), HasSubstr("'quellin stop --store ")));
  EXPECT_TRUE(RecorderLock::take(path)) << "a store that was not claimed is free";
}

TEST_F(StoreClaimTest, ATraceDoesNotGoOnWithWhatAMachineBegan) {
  begin(systemWallClock().now());
  EXPECT_THAT(failureOf(trace),
              HasSubstr(", Theirs, is active in " + path.string() + " and was begun over no trace, as " +
                        trace.source + " is: they cannot be one session. 'quellin stop --store "));
}

TEST_F(StoreClaimTest, AMachineGoesOnWithWhatItBegan) {
  begin(systemWallClock().now());
  EXPECT_EQ(failureOf(optionsOver("native")), "");
}

TEST_F(StoreClaimTest, AMachineDoesNotGoOnWithWhatWasBegunOverATrace) {
  begin(MeasuredHost::open(trace).wallClock->now());
  EXPECT_THAT(
      failureOf(optionsOver("native")),
      HasSubstr(" and was begun over a trace, but this machine is measured: they cannot be one session. "));
}

}  // namespace
}  // namespace quellin::cli
