#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/FirstVersion.h"
#include "Support/SampleStates.h"
#include "Support/TerminalProgram.h"
#include "quellin/EndToEnd/FrontEnd.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing_support::contentOf;
using testing_support::FrontEnd;
using testing_support::macbook;
using testing_support::ProgramResult;
using testing_support::ProgramStart;
using testing_support::RunningProgram;
using testing_support::TerminalEnd;
using testing_support::TerminalProgram;

// The number behind `name` in a JSON document; -1 when it is not there.
long numberIn(const std::string& json, const std::string& name) {
  const std::string key = "\"" + name + "\" : ";
  const std::size_t at = json.find(key);
  return at == std::string::npos ? -1 : std::stol(json.substr(at + key.size()));
}

struct RecordingTest : testing::Test {
  FrontEnd frontEnd;
  // A tick every tenth of a second, for twenty seconds.
  const FrontEnd::Words slowly{"record", "--source", macbook, "--speed", "50", "--title", "Slow"};

  // The same into another store.
  [[nodiscard]] FrontEnd::Words slowlyInto(const std::string& store) const {
    FrontEnd::Words words = slowly;
    words.insert(words.end(), {"--store", store});
    return words;
  }

  [[nodiscard]] long samplesOfLast() const {
    return numberIn(frontEnd.run({"show", "last", "--json"}).output, "sampleCount");
  }
  // As much of it as people see.
  [[nodiscard]] std::string lastIdentifier() const {
    const std::string table = frontEnd.run({"sessions"}).output;
    return table.substr(table.find('\n') + 1, 8);
  }
  // Looks from another process until the recording has so many samples.
  [[nodiscard]] bool reachesSamples(RunningProgram& recorder, long count) const {
    return recorder.waitFor("recording session") && reachSamples(count);
  }
  [[nodiscard]] bool reachSamples(long count) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{30};
    while (samplesOfLast() < count) {
      if (std::chrono::steady_clock::now() > deadline) return false;
    }
    return true;
  }
};

TEST_F(RecordingTest, IsVisibleToOthersWhileItRuns) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 2));
  EXPECT_THAT(frontEnd.run({"sessions"}).output, HasSubstr("active"));
  EXPECT_THAT(frontEnd.run({"show", "last"}).output, HasSubstr("Ended             not yet"));
  EXPECT_THAT(frontEnd.run({"export", "last"}).output, HasSubstr("\"recordType\":\"sample\""));
}

TEST_F(RecordingTest, SaysWhatItCostUnlessEarlierSoftwareRecordedTheSession) {
  const std::string store = frontEnd.pathOf("costs.store");
  ASSERT_EQ(frontEnd.run({"record", "--source", macbook, "--store", store}).exitStatus, 0);
  const FrontEnd::Words show{"show", "last", "--store", store};
  const FrontEnd::Words showJSON{"show", "last", "--store", store, "--json"};
  EXPECT_THAT(frontEnd.run(show).output,
              ContainsRegex("\nRecorder          [0-9.]+ s of CPU time, [0-9.]+ .B written to the log\n"));
  EXPECT_GT(numberIn(frontEnd.run(showJSON).output, "bytesWritten"), 4096);
  Database(store, Database::Access::readWrite, {}).execute(testing_support::backToVersion1);
  EXPECT_THAT(frontEnd.run(show).output, HasSubstr("\nRecorder          unknown\n"));
  EXPECT_THAT(frontEnd.run(showJSON).output, Not(HasSubstr("recorderCost")));
  EXPECT_THAT(frontEnd.run({"sessions", "--store", store}).output, HasSubstr("completed"));
}

class EndingSignalTest : public RecordingTest, public testing::WithParamInterface<int> {};

TEST_P(EndingSignalTest, EndsTheSessionProperlyWithItsSummary) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 2));
  recorder.send(GetParam());
  const ProgramResult result = recorder.finish();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.output, AllOf(StartsWith("Slow\n"), HasSubstr("\nStatus            completed\n"),
                                   HasSubstr("\n#  Source        Duration")))
      << result;
  EXPECT_THAT(frontEnd.run({"sessions"}).output, AllOf(HasSubstr("completed"), Not(HasSubstr("active"))));
}

INSTANTIATE_TEST_SUITE_P(Signals, EndingSignalTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(RecordingTest, AHangUpIsIgnoredWhereItWasFromTheStart) {
  ProgramStart start = frontEnd.start(slowly);
  start.prepare = [before = start.prepare] {
    before();
    std::signal(SIGHUP, SIG_IGN);  // as nohup does
  };
  RunningProgram recorder{start};
  ASSERT_TRUE(reachesSamples(recorder, 1));
  recorder.send(SIGHUP);
  EXPECT_TRUE(reachSamples(samplesOfLast() + 3));
  recorder.send(SIGTERM);
  EXPECT_EQ(recorder.finish().exitStatus, 0);
}

TEST_F(RecordingTest, ASecondSignalEndsItAtOnceThoughAReadingIsUnderWay) {
  // A measurement of a quarter of a second takes the better part of an hour at this pace.
  RunningProgram recorder{frontEnd.start({"record", "--source", macbook, "--speed", "0.0001"})};
  ASSERT_TRUE(recorder.waitFor("recording session"));
  recorder.send(SIGINT);
  recorder.send(SIGTERM);
  const ProgramResult result = recorder.finish();
  EXPECT_EQ(result.exitStatus, 1) << result;
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_THAT(frontEnd.run({"sessions"}).output, HasSubstr("active"));
}

TEST_F(RecordingTest, AfterAKillTheSameSessionGoesOn) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 3));
  recorder.send(SIGKILL);
  EXPECT_EQ(recorder.finish().signal, SIGKILL);
  const std::string identifier = lastIdentifier();
  const long before = samplesOfLast();
  ASSERT_GE(before, 3);

  const ProgramResult resumed =
      frontEnd.run({"record", "--source", macbook, "--for", "10s", "--title", "Another", "--json"});
  EXPECT_EQ(resumed.exitStatus, 0) << resumed;
  EXPECT_THAT(resumed.error, HasSubstr("going on with session " + identifier + ", Slow;"));
  EXPECT_THAT(resumed.error, HasSubstr("the active session keeps its title"));
  EXPECT_THAT(resumed.error, HasSubstr(std::to_string(before + 1) + " samples"));
  EXPECT_THAT(resumed.output, HasSubstr("\"title\" : \"Slow\""));
  EXPECT_THAT(resumed.output, HasSubstr("\"status\" : \"completed\""));
  EXPECT_EQ(numberIn(resumed.output, "sampleCount"), before + 2);
}

TEST_F(RecordingTest, AfterAKillNothingElseGoesOnWithTheSession) {
  const std::string store = frontEnd.pathOf("killed.store");
  RunningProgram recorder{frontEnd.start(slowlyInto(store))};
  ASSERT_TRUE(recorder.waitFor("1 sample"));
  recorder.send(SIGKILL);
  EXPECT_EQ(recorder.finish().signal, SIGKILL);

  // The same machine at the same time, captured by somebody else.
  std::string trace = contentOf(frontEnd.folder() + "/" + macbook);
  const std::string createdAt = "\"createdAt\":1741081200,";
  trace.replace(trace.find(createdAt), createdAt.size(), "\"createdAt\":1741081199,");
  const std::string other = frontEnd.home().write("other.jsonl", trace);
  const ProgramResult refused = frontEnd.run({"record", "--source", other, "--store", store});
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_THAT(refused.error, HasSubstr(" and was begun over another trace, but " + other +
                                       " is measured: they cannot be one"));
  EXPECT_EQ(frontEnd.run({"stop", "--store", store}).exitStatus, 0);
  EXPECT_EQ(frontEnd.run({"record", "--source", macbook, "--for", "5s", "--store", store}).exitStatus, 0);
  EXPECT_FALSE(std::filesystem::exists(store + "-recorder"));
}

TEST_F(RecordingTest, AStoreHasOneRecorder) {
  const std::string store = frontEnd.pathOf("one.store");
  RunningProgram recorder{frontEnd.start(slowlyInto(store))};
  ASSERT_TRUE(recorder.waitFor("1 sample"));

  const ProgramResult second = frontEnd.run({"record", "--source", macbook, "--store", store});
  EXPECT_EQ(second.exitStatus, 1);
  EXPECT_EQ(second.output, "");
  EXPECT_THAT(second.error, HasSubstr(", Slow, is being recorded by another program into " + store +
                                      ". 'quellin stop --store " + store + "' ends that session;"));
  // Nothing else is kept from its work.
  const FrontEnd::Words showJSON{"show", "last", "--json", "--store", store};
  EXPECT_LT(numberIn(frontEnd.run(showJSON).output, "sampleCount"), 200) << "the other played it to its end";
  EXPECT_THAT(frontEnd.run({"sessions", "--store", store}).output, HasSubstr("active"));
  EXPECT_EQ(frontEnd.run({"stop", "--store", store}).exitStatus, 0);
  EXPECT_EQ(recorder.finish().exitStatus, 0);
  EXPECT_FALSE(std::filesystem::exists(store + "-recorder"));
}

TEST_F(RecordingTest, ATraceDoesNotGoOnWithASessionThatBeganLater) {
  const std::string store = frontEnd.pathOf("later.store");
  {
    PowerSessionStore present{"0.9.4", store};
    present.start("Today", PowerSessionSource::cli, 1, instantAt(1900000000));
  }
  const ProgramResult refused =
      frontEnd.run({"record", "--source", macbook, "--title", "March", "--store", store});
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_EQ(refused.output, "");
  EXPECT_THAT(refused.error, AllOf(HasSubstr(", Today, is active in " + store +
                                             " and began at 2030-03-17T17:46:40Z, but the trace " + macbook +
                                             " is of 2025-03-04T09:40:00Z: they cannot be one session. "),
                                   HasSubstr("'quellin stop --store " + store + "' ends that session")));
  const std::string session = frontEnd.run({"show", "last", "--json", "--store", store}).output;
  EXPECT_THAT(session, AllOf(HasSubstr("\"title\" : \"Today\""), HasSubstr("\"status\" : \"active\"")));
  EXPECT_EQ(numberIn(session, "sampleCount"), 0);
}

TEST_F(RecordingTest, StoppedFromElsewhereItSumsUp) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 1));
  EXPECT_THAT(frontEnd.run({"stop"}).error,
              AllOf(StartsWith("quellin: stopped session"), HasSubstr(", Slow.")));
  const ProgramResult result = recorder.finish();
  EXPECT_EQ(result.exitStatus, 0) << result;
  EXPECT_THAT(result.error, HasSubstr("the session is no longer active"));
  EXPECT_THAT(result.output, HasSubstr("\nStatus            completed\n"));
  EXPECT_THAT(result.output, ContainsRegex("\nRecorder +[0-9.]+ s of CPU time, [1-9][0-9.]* [kM]B written"));
  const std::string session = frontEnd.run({"show", "last", "--json"}).output;
  EXPECT_LT(numberIn(session, "durationSeconds"), 1200) << "a trace's time is not this machine's";
  EXPECT_GT(numberIn(session, "bytesWritten"), 0);
}

TEST_F(RecordingTest, ASessionThatWasLeftBehindEndsWithItsLastSample) {
  const std::string store = frontEnd.pathOf("left.store");
  {
    PowerSessionStore dead{"0.9.4", store};
    const auto session = dead.start("Left", PowerSessionSource::cli, 1, instantAt(1000));
    dead.appendSample(session, testing_support::stateOnBattery(instantAt(1003)), {}, std::nullopt);
  }
  EXPECT_EQ(frontEnd.run({"stop", "--store", store}).exitStatus, 0);
  EXPECT_EQ(numberIn(frontEnd.run({"show", "last", "--json", "--store", store}).output, "durationSeconds"),
            3);
}

TEST_F(RecordingTest, InterruptedFromElsewhereItStaysInterrupted) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 1));
  EXPECT_EQ(frontEnd.run({"interrupt"}).exitStatus, 0);
  EXPECT_THAT(recorder.finish().output, HasSubstr("\nStatus            interrupted\n"));
}

TEST_F(RecordingTest, DeletedFromElsewhereItSaysSo) {
  RunningProgram recorder{frontEnd.start(slowly)};
  ASSERT_TRUE(reachesSamples(recorder, 1));
  const ProgramResult refused = frontEnd.run({"delete", "last"});
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_THAT(refused.error, HasSubstr("is still active. End it with 'quellin stop' first, or add --force"));
  EXPECT_EQ(frontEnd.run({"delete", "last", "--force"}).exitStatus, 0);
  const ProgramResult result = recorder.finish();
  EXPECT_EQ(result.exitStatus, 4) << result;
  EXPECT_THAT(result.error, HasSubstr("the session was deleted from elsewhere"));
  EXPECT_THAT(result.output, IsEmpty());
}

TEST_F(RecordingTest, ADamagedTraceEndsTheSessionWhereItIsDamaged) {
  const ProgramResult result =
      frontEnd.run({"record", "--title", "Damaged", "--source", frontEnd.damagedTrace(4)});
  EXPECT_EQ(result.exitStatus, 1) << result;
  EXPECT_THAT(result.error, HasSubstr(frontEnd.pathOf("damaged") + ", line 5: "));
  const std::string session = frontEnd.run({"show", "last", "--json"}).output;
  EXPECT_THAT(session, HasSubstr("\"status\" : \"completed\""));
  EXPECT_EQ(numberIn(session, "sampleCount"), 3);
}

TEST_F(RecordingTest, TelemetryOfAnotherMachineIsNotPretended) {
  const ProgramResult result = frontEnd.run({"record", "--source", macbook, "--for", "1s", "--telemetry"});
  EXPECT_EQ(result.exitStatus, 0) << result;
  EXPECT_THAT(result.error, HasSubstr("quellin: --telemetry has no effect: "));
}

struct RecordingOnATerminalTest : RecordingTest {
  // What the terminal showed of a recording that the user ended with Ctrl-C after some samples.
  [[nodiscard]] std::string recordUntilCtrlC(const FrontEnd::Words& environment) {
    const ProgramStart start = frontEnd.start(slowly, environment);
    TerminalProgram recorder{{.executable = start.executable,
                              .arguments = slowly,
                              .environment = start.environment,
                              .rows = 24,
                              .columns = 60,
                              .prepare = start.prepare}};
    EXPECT_TRUE(recorder.waitFor("1 sample"));
    EXPECT_TRUE(reachSamples(3));
    recorder.type("\x03");
    EXPECT_EQ(recorder.finish(), (TerminalEnd{.exitStatus = 0, .signal = 0, .isAsBefore = true}));
    return recorder.bytes();
  }
};

TEST_F(RecordingOnATerminalTest, OneLineChangesAndTheSummaryFollows) {
  const std::string shown = recordUntilCtrlC({"TERM=xterm"});
  EXPECT_THAT(shown, HasSubstr("\r0 s, 1 sample, Battery draw 12.49 W, battery unchanged\x1b[K"));
  EXPECT_THAT(shown, HasSubstr("\r5 s, 2 samples, "));
  EXPECT_THAT(shown, HasSubstr("\x1b[1mSlow\x1b[0m\r\n"));
  EXPECT_THAT(shown, HasSubstr("\r\nStatus            completed\r\n"));
}

TEST_F(RecordingOnATerminalTest, TheLineFitsIntoCOLUMNS) {
  const std::string shown = recordUntilCtrlC({"TERM=xterm", "COLUMNS=17"});
  EXPECT_THAT(shown, HasSubstr("\r0 s, 1 sample, B\x1b[K"));
  EXPECT_THAT(shown, HasSubstr("\r\n#  Source\r\n0  Battery draw\r\n"));
}

TEST_F(RecordingOnATerminalTest, NOCOLORTakesTheColoursAndNothingElse) {
  const std::string shown = recordUntilCtrlC({"TERM=xterm", "NO_COLOR=1"});
  EXPECT_THAT(shown, HasSubstr("\r0 s, 1 sample, "));
  EXPECT_THAT(shown, Not(HasSubstr("\x1b[1m")));
}

TEST_F(RecordingOnATerminalTest, ADumbTerminalGetsPlainLines) {
  const std::string shown = recordUntilCtrlC({"TERM=dumb"});
  EXPECT_THAT(shown, HasSubstr("quellin: 0 s, 1 sample, Battery draw 12.49 W"));
  EXPECT_THAT(shown, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace quellin::cli
