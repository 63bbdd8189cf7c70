// A command that is run and measured, as a user runs it.
#include <csignal>
#include <filesystem>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/Replay.h"
#include "Support/TerminalProgram.h"
#include "quellin/EndToEnd/FrontEnd.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing_support::contentOf;
using testing_support::FrontEnd;
using testing_support::macbook;
using testing_support::ProgramResult;
using testing_support::ProgramStart;
using testing_support::RunningProgram;
using testing_support::TerminalProgram;

struct RunTest : testing::Test {
  FrontEnd frontEnd;

  // Runs a script of the shell over the example trace.
  [[nodiscard]] ProgramResult run(const std::string& script, FrontEnd::Words options = {}) const {
    options.insert(options.begin(), {"run", "--source", macbook});
    options.insert(options.end(), {"--", "sh", "-c", script});
    return frontEnd.run(options);
  }
  [[nodiscard]] std::string sessions() const { return frontEnd.run({"sessions"}).output; }
};

TEST_F(RunTest, TheStreamsAreTheCommands) {
  const ProgramResult result = run("echo to output; echo to error >&2; cat");
  EXPECT_EQ(result.output, "to output\n");
  EXPECT_THAT(result.error, AllOf(HasSubstr("to error\n"), HasSubstr("Exit status       0\n")));
}

TEST_F(RunTest, TheResultGoesToAFileWhereOneIsNamed) {
  const std::string file = frontEnd.pathOf("result.json");
  const ProgramResult result = run("echo hello", {"--json", "-o", file});
  EXPECT_EQ(result.output, "hello\n");
  EXPECT_EQ(result.error, "");
  EXPECT_THAT(contentOf(file), AllOf(HasSubstr("\"command\" : ["), HasSubstr("\"exitStatus\" : 0")));
  const ProgramResult again = run("echo ran > " + frontEnd.pathOf("ran"), {"-o", file});
  EXPECT_EQ(again.exitStatus, 125);
  EXPECT_FALSE(std::filesystem::exists(frontEnd.pathOf("ran")));
  EXPECT_EQ(run("true", {"-o", file, "--force"}).exitStatus, 0);
  EXPECT_THAT(contentOf(file), HasSubstr("Exit status       0\n"));
}

TEST_F(RunTest, PassesOnHowTheCommandEnded) {
  EXPECT_EQ(run("exit 42").exitStatus, 42);
  EXPECT_EQ(run("kill -9 $$").exitStatus, 128 + SIGKILL);
}

TEST_F(RunTest, TheSessionOfACommandThatFailsIsInterruptedAndNoRepeat) {
  for (const char* title : {"Old", "New"}) {
    for (int turn = 0; turn < 2; ++turn) EXPECT_EQ(run("true", {"--title", title}).exitStatus, 0);
  }
  EXPECT_THAT(sessions(), Not(HasSubstr("interrupted")));
  EXPECT_EQ(run("exit 42", {"--title", "New"}).exitStatus, 42);
  EXPECT_THAT(sessions(), AllOf(HasSubstr("interrupted"), Not(HasSubstr("active"))));
  const ProgramResult compared = frontEnd.run({"compare", "Old", "New"});
  EXPECT_THAT(compared.output + compared.error, HasSubstr("is interrupted"));
}

TEST_F(RunTest, OneWholeRunIsNotSummedUp) {
  const std::string script = "test ! -e " + frontEnd.pathOf("once") + " && touch " + frontEnd.pathOf("once");
  const ProgramResult result = run(script, {"--repeat", "3", "--title", "Tries"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.error, AllOf(HasSubstr("Tries, 2 of 3\n"), Not(HasSubstr("Over the runs"))));
}

TEST_F(RunTest, ACommandThatCannotBeStartedLeavesNoSession) {
  const ProgramResult missing = frontEnd.run({"run", "--source", macbook, "no-such-command"});
  EXPECT_EQ(missing.exitStatus, 127);
  EXPECT_EQ(
      missing.error,
      "quellin: no-such-command cannot be run: No such file or directory. Check how it is spelled, or name "
      "it by its whole path.\n");
  EXPECT_THAT(frontEnd.run({"run", "--source", macbook, "--", ""}).error,
              testing::StartsWith("quellin: '' cannot be run: "));
  const ProgramResult folder = frontEnd.run({"run", "--source", macbook, "/"});
  EXPECT_EQ(folder.exitStatus, 126);
  EXPECT_THAT(folder.error,
              HasSubstr(". Name a program that you may execute and that is made for this machine."));
  EXPECT_THAT(frontEnd.run({"sessions", "--json"}).output, Not(HasSubstr("title")));
}

TEST_F(RunTest, DoesNotTouchASessionThatIsBeingRecorded) {
  RunningProgram recorder{
      frontEnd.start({"record", "--source", macbook, "--speed", "1", "--title", "Other"})};
  ASSERT_TRUE(recorder.waitFor("recording session"));
  const ProgramResult result = run("echo ran");
  EXPECT_EQ(result.exitStatus, 125);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.error, HasSubstr("Other, is being recorded; the command was not run"));
  recorder.send(SIGTERM);
  EXPECT_EQ(recorder.finish().exitStatus, 0);
}

TEST_F(RunTest, SaysOfASessionThatWasLeftBehindThatNobodyRecordsIt) {
  RunningProgram recorder{
      frontEnd.start({"record", "--source", macbook, "--speed", "1", "--title", "Other"})};
  ASSERT_TRUE(recorder.waitFor("recording session"));
  recorder.send(SIGKILL);
  EXPECT_EQ(recorder.finish().signal, SIGKILL);
  const ProgramResult result = run("echo ran");
  EXPECT_EQ(result.exitStatus, 125);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.error,
              HasSubstr(", Other, is active, and no quellin records it any more; the command was not run. "
                        "'quellin interrupt' ends it.\n"));
}

TEST_F(RunTest, AStoreThatCannotBeOpenedIsNoStatusOfTheCommand) {
  const ProgramResult result = run("echo ran", {"--store", "/nowhere/a.store"});
  EXPECT_EQ(result.exitStatus, 125);
  EXPECT_EQ(result.output, "");
}

TEST_F(RunTest, ASessionThatIsDeletedMeanwhileDoesNotDisturbTheCommand) {
  const std::string remove = std::string{QUELLIN_EXECUTABLE} + " delete last --force";
  const ProgramResult failing = run(remove + " && exit 6", {"--speed", "200"});
  EXPECT_EQ(failing.exitStatus, 6);
  EXPECT_THAT(failing.error, HasSubstr("deleted from elsewhere"));
  EXPECT_EQ(run(remove, {"--speed", "200"}).exitStatus, 125) << "nothing was measured";
}

TEST_F(RunTest, ASessionThatOthersEndMeanwhileIsNoRepeat) {
  const std::string stop = std::string{QUELLIN_EXECUTABLE} + " stop";
  const ProgramResult failing = run(stop + " && exit 6", {"--speed", "200"});
  EXPECT_EQ(failing.exitStatus, 6);
  EXPECT_THAT(failing.error, HasSubstr("the session was ended from elsewhere; only a part was measured.\n"));
  const ProgramResult measured = run(stop, {"--speed", "200", "--repeat", "3"});
  EXPECT_EQ(measured.exitStatus, 125);
  EXPECT_THAT(measured.error, AllOf(HasSubstr("1 of 3\n"), Not(HasSubstr("2 of 3\n"))));
  EXPECT_THAT(sessions(), AllOf(HasSubstr("interrupted"), Not(HasSubstr("completed"))));
}

TEST_F(RunTest, AStoreThatIsDamagedMeanwhileDoesNotDisturbTheCommand) {
  const std::string store = frontEnd.pathOf("a.store");
  const std::string go = frontEnd.pathOf("go");
  RunningProgram program{
      frontEnd.start({"run", "--source", macbook, "--speed", "1", "--store", store, "--", "sh", "-c",
                      "echo ready; until test -e " + go + "; do sleep 0.01; done; exit 6"})};
  ASSERT_TRUE(program.waitFor("ready"));
  Database(store, Database::Access::readWrite, {}).execute("DROP TABLE PowerSession");
  static_cast<void>(frontEnd.home().write("go", ""));
  const ProgramResult result = program.finish();
  EXPECT_EQ(result.exitStatus, 6) << result;
  EXPECT_THAT(result.error, AllOf(HasSubstr("quellin: "), HasSubstr(store)));
}

TEST_F(RunTest, ADamagedTraceLeavesInterruptedSessions) {
  const std::string damaged = frontEnd.damagedTrace(12);
  const ProgramResult measured = frontEnd.run({"run", "--source", damaged, "--", "echo", "ran"});
  EXPECT_EQ(measured.exitStatus, 125) << "nothing was measured";
  EXPECT_EQ(measured.output, "ran\n");
  EXPECT_THAT(measured.error, HasSubstr("line 13: "));
  const auto areInterrupted =
      AllOf(HasSubstr("interrupted"), Not(HasSubstr("completed")), Not(HasSubstr("active")));
  EXPECT_THAT(sessions(), areInterrupted);
  const ProgramResult idle =
      frontEnd.run({"run", "--source", damaged, "--baseline", "10m", "--", "echo", "ran"});
  EXPECT_EQ(idle.exitStatus, 125);
  EXPECT_EQ(idle.output, "") << "without the baseline that was asked for nothing is run";
  EXPECT_THAT(idle.error, HasSubstr("line 13: "));
  EXPECT_THAT(sessions(), AllOf(HasSubstr("idle"), areInterrupted));
  EXPECT_EQ(run("true").exitStatus, 0) << "the next run is not held up";
}

TEST_F(RunTest, ABaselineThatUsesUpTheTraceLeavesNothingToMeasure) {
  const ProgramResult result = run("echo ran", {"--baseline", "1h"});
  EXPECT_EQ(result.exitStatus, 125);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.error, AllOf(HasSubstr("idle\n"), Not(HasSubstr("Exit status"))));
  EXPECT_THAT(
      result.error,
      testing::EndsWith("quellin: the trace ended within the baseline; the command was not run. Give a "
                        "shorter --baseline, or a longer trace.\n"));
  EXPECT_THAT(frontEnd.run({"sessions", "--json"}).output,
              AllOf(HasSubstr(", idle\""), Not(HasSubstr("echo ran\""))));
}

TEST_F(RunTest, AnEmptyTraceLeavesNothingToMeasure) {
  const std::string whole = contentOf(testing_support::exampleTrace());
  const std::string empty = frontEnd.home().write("empty", whole.substr(0, whole.find('\n') + 1));
  for (const FrontEnd::Words& baseline : {FrontEnd::Words{}, {"--baseline", "1s"}}) {
    FrontEnd::Words words{"run", "--source", empty};
    words.insert(words.end(), baseline.begin(), baseline.end());
    words.insert(words.end(), {"--", "echo", "ran"});
    const ProgramResult result = frontEnd.run(words);
    EXPECT_EQ(result.exitStatus, 125);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "quellin: the trace is empty; the command was not run.\n");
  }
  EXPECT_THAT(frontEnd.run({"sessions", "--json"}).output, Not(HasSubstr("title")));
}

TEST_F(RunTest, WhereThereAreNoReadingsItNamesWhoSaysWhy) {
  const std::string folder = frontEnd.pathOf("machine");
  std::filesystem::create_directories(folder + "/sys");
  const ProgramResult result = frontEnd.run({"run", "--source", folder, "--", "true"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.error,
              HasSubstr("Readings          none: nothing here gives watts. 'quellin doctor --source " +
                        folder + "' says why.\n"));
}

TEST_F(RunTest, WhatWasMeasuredIsToldThoughTheNextRunCannotBegin) {
  const std::string file = frontEnd.pathOf("result.json");
  for (const FrontEnd::Words& form : {FrontEnd::Words{"--json", "-o", file}, {"--json"}, {"-o", file}}) {
    const std::string script = frontEnd.home().write("once", "#!/bin/sh\nrm \"$0\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    FrontEnd::Words words{"run", "--source", macbook, "--repeat", "3", "--title", "Once", "--force"};
    words.insert(words.end(), form.begin(), form.end());
    words.insert(words.end(), {"--", script});
    const ProgramResult result = frontEnd.run(words);
    EXPECT_EQ(result.exitStatus, 127) << "as when the first one cannot begin";
    EXPECT_THAT(result.error, HasSubstr("once cannot be run: "));
    const std::string told = form.back() == file ? contentOf(file) : result.error;
    EXPECT_THAT(told, testing::AnyOf(HasSubstr("\"exitStatus\" : 0"), HasSubstr("Once, 1 of 3\n")));
    std::filesystem::remove(file);
  }
  EXPECT_EQ(frontEnd.run({"run", "--source", macbook, "-o", file, "no-such-command"}).exitStatus, 127);
  EXPECT_FALSE(std::filesystem::exists(file)) << "there is nothing to tell";
}

TEST_F(RunTest, ATraceIsPlayedAtItsPaceWhileTheCommandRuns) {
  // Twenty minutes at this speed are a fifth of a second.
  const std::string look = std::string{QUELLIN_EXECUTABLE} + " show last --json";
  const ProgramResult outlasted =
      run("until " + look + " | grep -q '\"sampleCount\" : 216,'; do sleep 0.01; done; echo done",
          {"--speed", "6000", "--title", "Outlasted"});
  EXPECT_EQ(outlasted.output, "done\n");
  EXPECT_THAT(outlasted.error, HasSubstr("(19 min 55 s)"));
  const ProgramResult cutShort = run("true", {"--speed", "1", "--title", "Cut short"});
  EXPECT_THAT(cutShort.error, ContainsRegex("Time              [0-9.]+ s\n"));
}

class PassedSignalTest : public RunTest, public testing::WithParamInterface<int> {};

TEST_P(PassedSignalTest, GoesToTheCommandWhichMayTakeItsTime) {
  ProgramStart start = frontEnd.start({"run", "--source", macbook, "--speed", "1", "--", "sh", "-c",
                                       "trap 'echo heard; exit 9' INT TERM HUP QUIT USR1 USR2; echo ready; "
                                       "while true; do sleep 0.01; done"});
  const auto prepare = start.prepare;
  start.prepare = [prepare] {
    prepare();
    setsid();  // what is typed on a terminal reaches the command by itself
  };
  RunningProgram program{start};
  ASSERT_TRUE(program.waitFor("ready"));
  program.send(GetParam());
  const ProgramResult result = program.finish();
  EXPECT_THAT(result.output, HasSubstr("heard\n"));
  EXPECT_EQ(result.exitStatus, 9);
  EXPECT_THAT(sessions(), AllOf(HasSubstr("interrupted"), Not(HasSubstr("active"))));
}

INSTANTIATE_TEST_SUITE_P(Signals, PassedSignalTest,
                         testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2));

TEST_F(RunTest, ACommandThatIsAskedToEndIsNotRepeated) {
  for (const bool isRepeated : {false, true}) {
    FrontEnd::Words words{"run",
                          "--source",
                          macbook,
                          "--speed",
                          "1",
                          "--repeat",
                          isRepeated ? "3" : "1",
                          "--",
                          "sh",
                          "-c",
                          "trap 'exit 0' TERM; echo ready; while true; do sleep 0.01; done"};
    RunningProgram program{frontEnd.start(words)};
    ASSERT_TRUE(program.waitFor("ready"));
    program.send(SIGTERM);
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.output, "ready\n");
    EXPECT_EQ(result.exitStatus, isRepeated ? 125 : 0)
        << "what serves until it is told to end has done its work";
    EXPECT_EQ(result.error.ends_with("quellin: asked to end with run 1 of 3.\n"), isRepeated) << result.error;
    const std::string last = frontEnd.run({"show", "last"}).output;
    EXPECT_THAT(last, HasSubstr(isRepeated ? "\nStatus            interrupted\n"
                                           : "\nStatus            completed\n"));
    EXPECT_EQ(frontEnd.run({"delete", "last"}).exitStatus, 0);
  }
}

TEST_F(RunTest, WithABlankTitleTheCommandIsTheTitle) {
  EXPECT_THAT(run("true", {"--title", " "}).error, testing::StartsWith("sh -c true\n"));
  EXPECT_THAT(sessions(), HasSubstr("sh -c true"));
}

TEST_F(RunTest, WhatIsTypedReachesTheCommandOnce) {
  const std::string script =
      "n=0; trap 'n=$((n+1)); echo interrupted' INT; trap 'echo heard $n; exit 3' USR1; echo ready; "
      "while true; do sleep 0.01; done";
  const ProgramStart start =
      frontEnd.start({"run", "--source", macbook, "--speed", "1", "--", "sh", "-c", script});
  TerminalProgram program{{.executable = start.executable,
                           .arguments = {start.arguments.begin() + 1, start.arguments.end()},
                           .environment = start.environment,
                           .prepare = start.prepare}};
  ASSERT_TRUE(program.waitFor("ready"));
  program.type("\x03");
  ASSERT_TRUE(program.waitFor("interrupted"));
  program.sendSignal(SIGUSR1);  // passed on behind whatever else is
  EXPECT_TRUE(program.waitFor("heard 1"));
  EXPECT_EQ(program.finish().exitStatus, 3);
}

TEST_F(RunTest, WhatIsIgnoredTheCommandIgnoresToo) {
  ProgramStart start =
      frontEnd.start({"run", "--source", macbook, "--baseline", "10s", "--", "sh", "-c",
                      "for s in INT TERM HUP QUIT USR1 USR2; do kill -$s $$; done; echo on"});
  const auto prepare = start.prepare;
  start.prepare = [prepare] {
    prepare();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2})
      std::signal(signal, SIG_IGN);
  };
  const ProgramResult result = testing_support::runProgram(start);
  EXPECT_EQ(result.exitStatus, 0) << result;
  EXPECT_EQ(result.output, "on\n");
}

TEST_F(RunTest, BeingAskedToEndDuringTheBaselineRunsNothing) {
  RunningProgram program{
      frontEnd.start({"run", "--source", macbook, "--speed", "1", "--baseline", "10m", "--", "echo", "ran"})};
  ASSERT_TRUE(program.waitFor("measuring the idle machine"));
  program.send(SIGINT);
  const ProgramResult result = program.finish();
  EXPECT_EQ(result.exitStatus, 125);
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_THAT(result.error, testing::EndsWith("quellin: asked to end; the command was not run.\n"));
  EXPECT_THAT(sessions(), AllOf(HasSubstr("idle"), HasSubstr("interrupted"), Not(HasSubstr("completed"))));
}

}  // namespace
}  // namespace quellin::cli
