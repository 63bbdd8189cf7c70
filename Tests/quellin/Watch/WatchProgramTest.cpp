#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"
#include "QuellinCore/Support/MainExecutor.h"
#include "Support/Replay.h"
#include "Support/TemporaryFolder.h"
#include "Support/TerminalProgram.h"

namespace quellin::testing_support {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr TerminalEnd ended{.exitStatus = 0, .signal = 0, .isAsBefore = true};

// The live view of the example trace, which moves on by a tick every twentieth of a second.
class WatchProgramTest : public testing::Test {
 protected:
  using Words = std::vector<std::string>;

  [[nodiscard]] TerminalStart start(const std::string& source = exampleTrace(),
                                    const Words& more = {}) const {
    Words arguments{"watch", "--source", source, "--store", store()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    if (std::ranges::find(more, "--interval") == more.end()) {
      arguments.insert(arguments.end(), {"--interval", "50ms"});
    }
    return {.executable = QUELLIN_EXECUTABLE, .arguments = arguments, .environment = environment()};
  }

  // What a variable is set to first counts.
  [[nodiscard]] Words environment(const Words& first = {}) const {
    Words all = first;
    all.insert(all.end(), {"TERM=xterm-256color", "LC_ALL=C.UTF-8", "HOME=" + folder_.path().string()});
    return all;
  }

  // As `start`, at the end within a second.
  [[nodiscard]] TerminalStart startFast() const { return start(exampleTrace(), {"--interval", "2ms"}); }

  [[nodiscard]] std::string store() const { return folder_.pathOf("watch.store"); }

  // The statuses and numbers of samples of all stored sessions, newest first.
  [[nodiscard]] std::vector<std::pair<std::string, bool>> storedSessions() const {
    PowerSessionStore opened{"test", store(), false, {.executor = std::make_shared<ThreadExecutor>()}};
    std::vector<std::pair<std::string, bool>> result;
    for (const auto& session : opened.sessions()) {
      result.emplace_back(session->statusRaw().value_or(""), !opened.samples(session).empty());
    }
    return result;
  }

  TemporaryFolder folder_;
};

TEST_F(WatchProgramTest, ShowsTheTraceUntilTheKeyToQuit) {
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("SmartBattery whole-system draw while unplugged")) << program.screen().text();
  EXPECT_TRUE(program.waitFor("PID  Process")) << program.screen().text();
  EXPECT_THAT(program.screen().row(0), HasSubstr("quellin  macbook.trace.jsonl"));
  EXPECT_THAT(program.screen().row(1), HasSubstr("confidence: batteryTerminal"));
  EXPECT_THAT(program.screen().row(23), HasSubstr("q quit  s start session"));
  EXPECT_TRUE(program.screen().isFullScreen());
  EXPECT_FALSE(program.screen().isCursorVisible());
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  EXPECT_FALSE(program.screen().isFullScreen());
  EXPECT_TRUE(program.screen().isCursorVisible());
}

TEST_F(WatchProgramTest, PlaysTheTraceToItsEnd) {
  TerminalProgram program{startFast()};
  EXPECT_TRUE(program.waitFor("end of the trace")) << program.screen().text();
  EXPECT_THAT(program.screen().row(0), HasSubstr("2025-03-04T09:59:"));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, PlaysTheTraceAtASpeed) {
  TerminalProgram program{start(exampleTrace(), {"--speed", "1000"})};
  EXPECT_TRUE(program.waitFor("end of the trace")) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, EndsOnTheKeysThatMeanSo) {
  for (const std::string key : {"Q", "\x1b", "\x03", "\x1c"}) {
    TerminalProgram program{start()};
    EXPECT_TRUE(program.waitFor("Battery draw"));
    program.type(key);
    EXPECT_EQ(program.finish(), ended) << "key " << static_cast<int>(key.front());
    EXPECT_FALSE(program.screen().isFullScreen());
  }
}

TEST_F(WatchProgramTest, GivesTheTerminalBackOnSignals) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    TerminalProgram program{start()};
    EXPECT_TRUE(program.waitFor("Battery draw"));
    program.sendSignal(signal);
    EXPECT_EQ(program.finish(), ended) << "signal " << signal;
    EXPECT_FALSE(program.screen().isFullScreen());
    EXPECT_TRUE(program.screen().isCursorVisible());
  }
}

TEST_F(WatchProgramTest, ASecondSignalGivesTheTerminalBackThoughTheViewIsHeldUp) {
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("Battery draw")) << program.screen().text();
  program.type("s");
  EXPECT_TRUE(program.waitFor(" samples,")) << program.screen().text();
  // Somebody else writes to the store and does not come to an end: the next sample waits for him, and if the
  // first signal comes before it, the end of the session does.
  PowerSessionStore other{"test", store(), false, {.executor = std::make_shared<ThreadExecutor>()}};
  const Transaction writing{other.container().database()};
  program.sendSignal(SIGINT);
  program.sendSignal(SIGTERM);
  EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 1, .signal = 0, .isAsBefore = true}));
  EXPECT_FALSE(program.screen().isFullScreen());
  EXPECT_TRUE(program.screen().isCursorVisible());
}

TEST_F(WatchProgramTest, WatchingAloneMakesNoFolderForTheStore) {
  TerminalStart usual = start();
  usual.arguments = {"watch", "--source", exampleTrace(), "--interval", "50ms"};
  TerminalProgram program{usual};
  EXPECT_TRUE(program.waitFor("No session is being recorded"));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(WatchProgramTest, GivesTheTerminalBackBeforeItTellsWhatIsWrong) {
  std::string trace = contentOf(exampleTrace());
  std::size_t thirdTick = 0;
  for (int line = 0; line < 4; ++line) thirdTick = trace.find('\n', thirdTick) + 1;
  const std::string damaged = folder_.write(
      "damaged.jsonl", trace.substr(0, thirdTick) + "{\"kind\":\"tick\"}\n" + trace.substr(thirdTick));
  TerminalProgram program{start(damaged)};
  EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 1, .signal = 0, .isAsBefore = true}));
  EXPECT_FALSE(program.screen().isFullScreen());
  const std::size_t left = program.bytes().rfind("\x1b[?1049l");
  ASSERT_NE(left, std::string::npos);
  EXPECT_THAT(program.bytes().substr(left), HasSubstr("damaged.jsonl"));
}

TEST_F(WatchProgramTest, FollowsTheSizeOfTheTerminal) {
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("Battery draw"));
  program.resize(40, 120);
  EXPECT_TRUE(program.waitUntil([](const TerminalEmulator& screen) {
    return screen.row(39).starts_with("q quit") && screen.row(1).ends_with("batteryTerminal") &&
           screen.row(1).size() == 120;
  })) << program.screen().text();
  program.resize(10, 40);
  EXPECT_TRUE(program.waitUntil([](const TerminalEmulator& screen) {
    return screen.row(9).starts_with("q quit");
  })) << program.screen().text();
  program.resize(1, 1);
  program.resize(24, 80);
  EXPECT_TRUE(program.waitUntil([](const TerminalEmulator& screen) {
    return screen.row(23).starts_with("q quit") && screen.row(0).starts_with("quellin  macbook");
  })) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, HonoursTheColumnsOfTheEnvironment) {
  TerminalStart narrow = start();
  narrow.environment = environment({"COLUMNS=60"});
  TerminalProgram program{narrow};
  EXPECT_TRUE(program.waitUntil([](const TerminalEmulator& screen) {
    return screen.row(1).ends_with("batteryTerminal") && screen.row(1).size() == 60;
  })) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, UsesColoursUnlessTheyAreRefused) {
  TerminalProgram coloured{start()};
  EXPECT_TRUE(coloured.waitFor("Battery draw"));
  coloured.type("q");
  EXPECT_EQ(coloured.finish(), ended);
  EXPECT_TRUE(coloured.screen().hasShownColours());

  TerminalStart plain = startFast();
  plain.environment = environment({"NO_COLOR=1"});
  TerminalProgram program{plain};
  EXPECT_TRUE(program.waitFor("end of the trace"));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  EXPECT_FALSE(program.screen().hasShownColours());
}

TEST_F(WatchProgramTest, LeavesTheBackgroundToTheTerminal) {
  TerminalProgram program{startFast()};
  EXPECT_TRUE(program.waitFor("end of the trace"));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  // Colours 0 and 7 would vanish on a dark or a light background, and any background on the other.
  EXPECT_FALSE(std::regex_search(program.bytes(),
                                 std::regex{"\x1b\\[([0-9;]*;)?(3[07]|4[0-8]|38|48|9[0-7]|10[0-7])[;m]"}));
}

TEST_F(WatchProgramTest, SendsNothingButASCIIWithoutUTF8) {
  TerminalStart plain = startFast();
  plain.environment = environment({"LC_ALL=C"});
  TerminalProgram program{plain};
  EXPECT_TRUE(program.waitFor("end of the trace"));
  EXPECT_THAT(program.screen().text(), HasSubstr("Silicon Avg, C "));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  EXPECT_TRUE(std::ranges::all_of(program.bytes(),
                                  [](char byte) { return static_cast<unsigned char>(byte) < 0x80; }));
}

TEST_F(WatchProgramTest, ShowsUTF8AlsoWhenTheLocaleOfTheUserIsNotInstalled) {
  TerminalStart foreign = start();
  foreign.environment = environment({"LC_ALL=xx_YY.UTF-8"});
  TerminalProgram program{foreign};
  EXPECT_TRUE(program.waitFor("Silicon Avg, °C")) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, RecordsASessionBetweenTwoKeys) {
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("No session is being recorded"));
  EXPECT_FALSE(std::filesystem::exists(store())) << "watching alone makes no store";
  program.type("s");
  EXPECT_TRUE(program.waitFor("Recording ")) << program.screen().text();
  EXPECT_TRUE(program.waitFor(" samples,")) << program.screen().text();
  EXPECT_THAT(storedSessions(), testing::ElementsAre(std::pair{"active", true}));
  program.type("s");
  EXPECT_TRUE(program.waitFor(" is over")) << program.screen().text();
  EXPECT_THAT(storedSessions(), testing::ElementsAre(std::pair{"completed", true}));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
  EXPECT_THAT(program.bytes(), HasSubstr("quellin: recorded session "));
}

TEST_F(WatchProgramTest, CompletesTheSessionWhenItEnds) {
  for (const int signal : {SIGTERM, SIGHUP}) {
    TerminalProgram program{start()};
    EXPECT_TRUE(program.waitFor("Battery draw"));
    program.type("s");
    EXPECT_TRUE(program.waitFor(" samples,")) << program.screen().text();
    program.sendSignal(signal);
    EXPECT_EQ(program.finish(), ended);
  }
  EXPECT_THAT(storedSessions(),
              testing::ElementsAre(std::pair{"completed", true}, std::pair{"completed", true}));
}

TEST_F(WatchProgramTest, ShowsASessionThatIsNotRecordedHereAndGoesOnWithItWhenAsked) {
  const auto executor = std::make_shared<ThreadExecutor>();
  {
    PowerSessionStore other{"test", store(), false, {.executor = executor}};
    other.start("Night run", PowerSessionSource::cli, 1, instantAt(1741081100));
  }
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("Night run, is active but not recorded here")) << program.screen().text();
  EXPECT_THAT(storedSessions(), testing::ElementsAre(std::pair{"active", false}));
  program.type("s");
  EXPECT_TRUE(program.waitFor(" samples,")) << program.screen().text();
  EXPECT_THAT(storedSessions(), testing::ElementsAre(std::pair{"active", true}));
  TerminalStart stop = start();
  stop.arguments = {"stop", "--store", store()};
  EXPECT_EQ(TerminalProgram{stop}.finish(), ended);
  EXPECT_TRUE(program.waitFor(" is over")) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, ShowsThatTheStoreIsUnusableButFailsOnlyWhenASessionWasAskedFor) {
  folder_.write("watch.store", "this is no store");
  for (const std::string key : {"", "s"}) {
    TerminalProgram program{start()};
    EXPECT_TRUE(program.waitFor("PID  Process")) << program.screen().text();
    EXPECT_TRUE(program.waitFor("watch.store")) << program.screen().text();
    program.type(key + "q");
    EXPECT_EQ(program.finish(),
              (TerminalEnd{.exitStatus = key.empty() ? 0 : 1, .signal = 0, .isAsBefore = true}));
  }
}

TEST_F(WatchProgramTest, ChangesTheInterval) {
  TerminalProgram program{start(exampleTrace(), {"--interval", "20s"})};
  EXPECT_TRUE(program.waitFor("every 20 s"));
  program.type("+");
  EXPECT_TRUE(program.waitFor("every 30 s"));
  program.type("--");
  EXPECT_TRUE(program.waitFor("every 10 s"));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, HidesTheProcessesAndShowsTheHelp) {
  const auto shows = [](const std::string& text) {
    return [text](const TerminalEmulator& screen) { return screen.text().contains(text); };
  };
  TerminalProgram program{start()};
  EXPECT_TRUE(program.waitFor("PID  Process"));
  program.type("p");
  EXPECT_TRUE(program.waitUntil([&](const auto& screen) { return !shows("PID")(screen); }));
  program.type("?");
  EXPECT_TRUE(program.waitFor("What is shown"));
  program.type("?p");
  EXPECT_TRUE(program.waitFor("PID  Process"));
  EXPECT_FALSE(shows("What is shown")(program.screen()));
  program.type("q");
  EXPECT_EQ(program.finish(), ended);
}

TEST_F(WatchProgramTest, RefusesATerminalThatCanOnlyAppend) {
  TerminalStart dumb = start();
  for (const std::string kind : {"dumb", ""}) {
    dumb.environment = environment({"TERM=" + kind});
    TerminalProgram program{dumb};
    EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 2, .signal = 0, .isAsBefore = true}));
    EXPECT_THAT(program.bytes(), HasSubstr("'quellin snapshot' measures once and 'quellin record' goes on"));
    EXPECT_THAT(program.bytes(), Not(HasSubstr("\x1b")));
  }
}

TEST_F(WatchProgramTest, RefusesATerminalOfAnUnknownKind) {
  TerminalStart unknown = start();
  unknown.environment = environment({"TERM=no-such-terminal"});
  TerminalProgram program{unknown};
  EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 1, .signal = 0, .isAsBefore = true}));
  EXPECT_THAT(program.bytes(), HasSubstr("Set TERM to one that is"));
}

TEST_F(WatchProgramTest, RefusesWhatIsNoTerminal) {
  for (const std::string redirection : {"> /dev/null", "< /dev/null"}) {
    TerminalStart shell = start();
    shell.arguments.insert(shell.arguments.begin(), {"-c", "\"$0\" \"$@\" " + redirection, shell.executable});
    shell.executable = "/bin/sh";
    TerminalProgram program{shell};
    EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 2, .signal = 0, .isAsBefore = true}))
        << redirection;
    EXPECT_THAT(program.bytes(), HasSubstr("'quellin snapshot' measures once and 'quellin record' goes on"));
  }
}

}  // namespace
}  // namespace quellin::testing_support
