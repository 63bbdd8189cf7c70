#include <gmock/gmock.h>

#include "Support/ManualClock.h"
#include "Support/Replay.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Support/ExampleOptions.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// The moment at which a trace begins.
Instant startOf(const Options& trace) { return MeasuredHost::open(trace).wallClock->now(); }

struct StoreClaimTest : testing::Test {
  testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  testing_support::ManualWallClock clock{instantAt(1900000000)};
  PowerSessionStore store{"0.9.4", path, false, {.clock = clock}};
  const Options trace = optionsOver(testing_support::exampleTrace());
  const Options machine = optionsOver("native");

  [[nodiscard]] Options optionsOver(const std::string& source) const {
    Options options;
    options.source = source;
    options.store = path;
    return options;
  }

  // A trace of one tick that was begun at another moment than the example.
  [[nodiscard]] Options otherTrace() const {
    return optionsOver(folder.write(
        "other.jsonl", R"({"kind":"trace","format":"quellin-trace","majorVersion":1,"minorVersion":0,)"
                       R"("createdAt":1741081200.5,"redactsSerialNumbers":true})"
                       "\n"
                       R"({"kind":"tick","wall":1741081201,"monotonic":1})"
                       "\n"));
  }

  // Makes a session that began at `moment`, so many seconds later.
  void begin(Instant moment, double secondsLater = 0) {
    clock.set(moment + Seconds{secondsLater});
    store.start("Theirs", PowerSessionSource::cli, 1, moment);
  }

  // A recorder claims the store, begins a session at `moment`, and is killed. Its lock's file stays.
  void beginAndKill(const Options& options, const MeasuredHost& host, Instant moment, double secondsLater) {
    static_cast<void>(claimStore(store, options, host));
    begin(moment, secondsLater);
  }
  void beginAndKill(const Options& options, Instant moment, double secondsLater = 0) {
    beginAndKill(options, MeasuredHost::open(options), moment, secondsLater);
  }
  [[nodiscard]] std::string lockFile() const { return path.string() + "-recorder"; }

  // How claiming the store fails; empty when it does not.
  std::string failureOf(const Options& options, const MeasuredHost& host) {
    try {
      static_cast<void>(claimStore(store, options, host));
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::failed);
      return failure.what();
    }
    return {};
  }
  std::string failureOf(const Options& options) { return failureOf(options, MeasuredHost::open(options)); }
};

TEST_F(StoreClaimTest, AnEmptyStoreIsThereForOne) {
  const MeasuredHost host = MeasuredHost::open(trace);
  const RecorderLock lock = claimStore(store, trace, host);
  EXPECT_EQ(failureOf(trace), "a session is being recorded by another program into " + path.string() +
                                  ". 'quellin stop --store " + path.string() +
                                  "' ends that session; --store names another store.");
}

TEST_F(StoreClaimTest, ATraceGoesOnWithWhatBeganWhenItDoesOrBefore) {
  beginAndKill(trace, startOf(trace));
  EXPECT_EQ(failureOf(trace), "");
}

TEST_F(StoreClaimTest, ATraceDoesNotGoOnWithWhatBeganLater) {
  beginAndKill(trace, startOf(trace) + Seconds{0.5});
  EXPECT_THAT(failureOf(trace),
              AllOf(StartsWith("session "), HasSubstr(", Theirs, is active in " + path.string()),
                    HasSubstr("the trace " + trace.source), HasSubstr("'quellin stop --store ")));
  EXPECT_TRUE(RecorderLock::take(path)) << "a store that was not claimed is free";
}

// Its age is that of a machine's session.
TEST_F(StoreClaimTest, ATraceThatWasPlayedRightAfterItsCaptureIsStillATrace) {
  beginAndKill(trace, startOf(trace), 4);
  const std::string refusal =
      " and was begun over a trace, but this machine is measured: they cannot be one session. "
      "'quellin stop --store ";
  EXPECT_THAT(failureOf(machine), HasSubstr(refusal));
  EXPECT_THAT(failureOf(machine), HasSubstr(refusal)) << "a refusal changes nothing";
  EXPECT_EQ(failureOf(trace), "");
}

TEST_F(StoreClaimTest, ATraceDoesNotGoOnWithAnother) {
  beginAndKill(trace, startOf(trace));
  const Options other = otherTrace();
  EXPECT_THAT(failureOf(other), HasSubstr(", Theirs, is active in " + path.string() +
                                          " and was begun over another trace, but " + other.source +
                                          " is measured: they cannot be one session. 'quellin stop "));
  EXPECT_EQ(failureOf(trace), "");
}

// The session of a machine whose clock was set long after it had begun.
TEST_F(StoreClaimTest, AMachineGoesOnWithItsOwnAndATraceDoesNot) {
  beginAndKill(machine, startOf(trace), 5000);
  EXPECT_THAT(failureOf(trace),
              HasSubstr(", Theirs, is active in " + path.string() + " and was begun over no trace, as " +
                        trace.source + " is: they cannot be one session. 'quellin stop --store "));
  EXPECT_EQ(failureOf(machine), "");
}

TEST_F(StoreClaimTest, MachinesAreToldApart) {
  const std::string place = folder.pathOf("copy");
  const Options copy = optionsOver(place);
  const MeasuredHost host{.sources = {}, .player = nullptr};
  beginAndKill(copy, host, startOf(trace), 0);
  EXPECT_THAT(failureOf(machine),
              HasSubstr(" and was begun over another machine, but this machine is measured"));
  EXPECT_THAT(failureOf(trace), HasSubstr(" and was begun over no trace, "));
  EXPECT_EQ(failureOf(optionsOver(folder.pathOf("other/../copy")), host), "");
}

// No place on this system has such a name; it still is one of its own.
TEST_F(StoreClaimTest, TreesWhoseRealPlaceIsUnknownAreToldApart) {
  const MeasuredHost host{.sources = {}, .player = nullptr};
  const std::string place = folder.pathOf(std::string(300, 'a'));
  const Options tree = optionsOver(place);
  beginAndKill(tree, host, startOf(trace), 0);
  EXPECT_EQ(testing_support::contentOf(lockFile()), "tree " + place + "\n");
  EXPECT_THAT(failureOf(optionsOver(place + "b"), host), HasSubstr(" and was begun over another machine, "));
  EXPECT_EQ(failureOf(tree, host), "");
}

TEST_F(StoreClaimTest, WhoGoesOnLeavesTheWordForTheNext) {
  begin(startOf(trace), 61);
  const RecorderLock lock = claimStore(store, trace, MeasuredHost::open(trace));
  EXPECT_EQ(testing_support::contentOf(lockFile()), testing_support::exampleWord);
}

TEST_F(StoreClaimTest, WithoutAWordTheAgeOfASessionTellsWhatItIsOver) {
  const struct {
    double secondsLater;
    bool isTrace;
  } sessions[] = {{-61, true}, {-59, false}, {0, false}, {59, false}, {61, true}, {4e8, true}};
  for (const char* left : {"", "machine", "mach\n", "machinery\n", "trace\n"}) {
    for (const auto& [secondsLater, isTrace] : sessions) {
      begin(startOf(trace), secondsLater);
      folder.write("a.store-recorder", left);
      EXPECT_THAT(failureOf(isTrace ? machine : trace),
                  HasSubstr(isTrace ? "was begun over a trace, but" : "was begun over no trace, as"))
          << secondsLater << " " << left;
      folder.write("a.store-recorder", left);
      EXPECT_EQ(failureOf(isTrace ? trace : machine), "") << secondsLater << " " << left;
      store.stop(store.activeSession(), clock.now());
    }
  }
}

}  // namespace
}  // namespace quellin::cli
