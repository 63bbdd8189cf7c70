#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/RefusedCalls.h"
#include "quellin/EndToEnd/FrontEnd.h"
#include "quellin/Support/CommaLocale.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using testing_support::contentOf;
using testing_support::FrontEnd;
using testing_support::macbook;
using testing_support::ProgramResult;
using testing_support::ProgramStart;
using testing_support::runProgram;

struct MannersTest : testing::Test {
  FrontEnd frontEnd;

  void record() const {
    ASSERT_EQ(frontEnd.run({"record", "--source", macbook, "--title", "March"}).exitStatus, 0);
  }

  // Runs the program with its standard output at `descriptor`.
  [[nodiscard]] ProgramResult runInto(int descriptor, const FrontEnd::Words& arguments) const {
    ProgramStart start = frontEnd.start(arguments);
    start.prepare = [descriptor, before = start.prepare] {
      before();
      testing_support::require(dup2(descriptor, STDOUT_FILENO) >= 0, "standard output");
    };
    return runProgram(start);
  }
};

TEST_F(MannersTest, AReaderThatLeavesIsNoFailure) {
  record();
  for (const FrontEnd::Words& arguments : std::vector<FrontEnd::Words>{
           {"export", "last"}, {"snapshot", "--source", macbook}, {"--help"}, {"manual"}}) {
    auto pipe = Pipe::open();
    ASSERT_TRUE(pipe);
    pipe->readEnd.reset();
    EXPECT_EQ(runInto(pipe->writeEnd.get(), arguments), (ProgramResult{.exitStatus = 0}))
        << arguments.front();
  }
}

TEST_F(MannersTest, AnOutputThatCannotBeWrittenIsAFailure) {
  const auto unwritable = openDescriptor(frontEnd.home().write("old", ""), O_RDONLY);
  ASSERT_TRUE(unwritable);
  for (const FrontEnd::Words& arguments :
       std::vector<FrontEnd::Words>{{"snapshot", "--source", macbook}, {"--help"}}) {
    const ProgramResult result = runInto(unwritable->get(), arguments);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.error,
                StartsWith("quellin: standard output cannot be written: Bad file descriptor. "));
  }
}

TEST_F(MannersTest, AnOutputThatCameClosedIsAFailureAndNoOtherFileGetsItsText) {
  for (const FrontEnd::Words& arguments : std::vector<FrontEnd::Words>{
           {"--help"}, {"budget", "--source", macbook, "--system", "1"}, {"record", "--source", macbook}}) {
    ProgramStart start = frontEnd.start(arguments);
    start.prepare = [before = start.prepare] {
      before();
      testing_support::require(close(STDOUT_FILENO) == 0, "standard output");
    };
    const ProgramResult result = runProgram(start);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(
        result.error,
        HasSubstr("quellin: standard output cannot be written: Bad file descriptor. It is closed; open "
                  "it for writing, for example with > FILE.\n"));
  }
}

#if defined(__linux__)

TEST_F(MannersTest, AClosedStreamThatCannotBeOccupiedEndsTheProgram) {
  ProgramStart start = frontEnd.start({"--help"});
  start.prepare = [before = start.prepare] {
    before();
    testing_support::require(close(STDIN_FILENO) == 0, "standard input");
    testing_support::refuseOpening(O_WRONLY);
  };
  const ProgramResult result = runProgram(start);
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.error, StartsWith("quellin: a closed standard stream cannot be occupied: "));
}

#endif

TEST_F(MannersTest, NumbersAreTheSameInEveryLocale) {
  const testing_support::CommaLocale comma;
  record();
  for (const FrontEnd::Words& arguments :
       std::vector<FrontEnd::Words>{{"snapshot", "--source", macbook},
                                    {"snapshot", "--source", macbook, "--json", "--processes"},
                                    {"budget", "--source", macbook, "--system", "47.5", "--json"},
                                    {"show", "last", "--json"}}) {
    const ProgramResult plain = frontEnd.run(arguments);
    EXPECT_THAT(plain.output, HasSubstr("."));
    EXPECT_EQ(frontEnd.run(arguments, comma.environment()), plain);
  }
}

TEST_F(MannersTest, ATitleThatWasNotGivenIsADateInTheUsersLocaleAndTimeZone) {
  const FrontEnd::Words german{"LC_ALL=de_DE.UTF-8", "TZ=Europe/Berlin"};
  ASSERT_EQ(frontEnd.run({"record", "--source", macbook}, german).exitStatus, 0);
  EXPECT_THAT(frontEnd.run({"sessions"}).output, HasSubstr("04.03.2025 um "));
}

TEST_F(MannersTest, NothingIsColouredInAPipe) {
  record();
  for (const FrontEnd::Words& arguments : std::vector<FrontEnd::Words>{
           {"show", "last"}, {"doctor", "--source", macbook}, {"record", "--source", macbook}}) {
    const ProgramResult result = frontEnd.run(arguments, {"TERM=xterm-256color"});
    EXPECT_EQ((result.output + result.error).find('\x1b'), std::string::npos) << arguments.front();
  }
}

TEST_F(MannersTest, TheStoreLiesInTheHomeFolderUnlessNamed) {
  record();
  const std::string usual = "Library/Application Support/Quellin/QuellinSessions.store";
  EXPECT_TRUE(std::filesystem::exists(frontEnd.pathOf(usual)));
  EXPECT_EQ(frontEnd.run({"show", "last", "--store", frontEnd.pathOf("other.store")}).exitStatus, 4);
  EXPECT_EQ(frontEnd.run({"show", "last", "--store", frontEnd.pathOf(usual)}).exitStatus, 0);
}

TEST_F(MannersTest, ALongTitleGivesWayToWhatElseIsToldOfASession) {
  const std::string title = "sh -c 'make -j8 everything && ctest'";
  ASSERT_EQ(frontEnd.run({"record", "--source", macbook, "--title", title}).exitStatus, 0);
  EXPECT_THAT(frontEnd.run({"sessions"}, {"COLUMNS=80"}).output,
              AllOf(HasSubstr("  completed  sh -c 'make -j8 everyt..\n"), Not(HasSubstr("Not shown"))));
  EXPECT_THAT(frontEnd.run({"sessions"}, {"COLUMNS=40"}).output,
              HasSubstr("Not shown for want of width: Duration,\nStatus, Title.\n"));
}

TEST_F(MannersTest, LookingForSessionsMakesNoStore) {
  const std::string missing = frontEnd.pathOf("missing.store");
  for (const auto& [arguments, exitStatus] :
       std::vector<std::pair<FrontEnd::Words, int>>{{{"sessions"}, 0},
                                                    {{"stop"}, 3},
                                                    {{"interrupt"}, 3},
                                                    {{"show", "last"}, 4},
                                                    {{"export", "last"}, 4},
                                                    {{"delete", "last"}, 4}}) {
    FrontEnd::Words words = arguments;
    words.insert(words.end(), {"--store", missing});
    EXPECT_EQ(frontEnd.run(words).exitStatus, exitStatus) << arguments.front();
    EXPECT_FALSE(std::filesystem::exists(missing)) << arguments.front();
  }
  EXPECT_EQ(frontEnd.run({"sessions"}).exitStatus, 0);
  EXPECT_EQ(frontEnd.run({"doctor", "--source", macbook}).exitStatus, 0);
  EXPECT_TRUE(std::filesystem::is_empty(frontEnd.home().path())) << "not even the folder of the store";
  EXPECT_THAT(frontEnd.run({"sessions", "--store", missing}).error,
              HasSubstr("there are no sessions in " + missing + " yet."));
}

TEST_F(MannersTest, LookingForSessionsWritesNothingIntoAnEmptyFile) {
  const std::string empty = frontEnd.home().write("empty.store", "");
  for (const auto& [arguments, exitStatus] :
       std::vector<std::pair<FrontEnd::Words, int>>{{{"sessions"}, 0},
                                                    {{"show", "last"}, 4},
                                                    {{"delete", "last"}, 4},
                                                    {{"doctor", "--source", macbook}, 0}}) {
    FrontEnd::Words words = arguments;
    words.insert(words.end(), {"--store", empty});
    EXPECT_EQ(frontEnd.run(words).exitStatus, exitStatus) << arguments.front();
    EXPECT_EQ(contentOf(empty), "") << arguments.front();
  }
  EXPECT_THAT(frontEnd.run({"doctor", "--source", macbook, "--store", empty}).output,
              HasSubstr("Session store         not made yet\n"));
  EXPECT_EQ(frontEnd.run({"record", "--source", macbook, "--store", empty}).exitStatus, 0);
  EXPECT_EQ(frontEnd.run({"show", "last", "--store", empty}).exitStatus, 0) << "it is made a store then";
}

TEST_F(MannersTest, AFileThatCannotBeMadeIsNamedWithAWayOut) {
  record();
  const std::string endless(300, 'x');
  for (const FrontEnd::Words& command :
       {FrontEnd::Words{"export", "last"}, {"report", "last"}, {"run", "--source", macbook}}) {
    FrontEnd::Words words = command;
    words.insert(words.end(), {"-o", endless});
    if (words.front() == "run") words.insert(words.end(), {"--", "true"});
    const ProgramResult result = frontEnd.run(words);
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_THAT(result.error, HasSubstr(endless + " cannot be written: File name too long. Name a file in "));
  }
  const ProgramResult captured = frontEnd.run({"capture", "--source", macbook, "-o", endless});
  EXPECT_EQ(captured.exitStatus, 1);
  EXPECT_THAT(captured.error, AllOf(HasSubstr("File name too long"), Not(HasSubstr("filesystem error"))));
}

TEST_F(MannersTest, DoctorTellsAWholeStoreFromADamagedOne) {
  record();
  const FrontEnd::Words doctor{"doctor", "--source", macbook, "--store"};
  const auto with = [&](const std::string& path) {
    FrontEnd::Words words = doctor;
    words.push_back(path);
    return frontEnd.run(words);
  };
  const ProgramResult whole = frontEnd.run({"doctor", "--source", macbook});
  EXPECT_EQ(whole.exitStatus, 0);
  EXPECT_THAT(whole.output,
              AllOf(HasSubstr("Session store         whole\n"), HasSubstr(", sessions: 1, samples: 216\n")));
  const std::string store =
      contentOf(frontEnd.pathOf("Library/Application Support/Quellin/QuellinSessions.store"));
  const ProgramResult damaged =
      with(frontEnd.home().write("damaged.store", store.substr(0, store.size() - 8192)));
  EXPECT_THAT(damaged.output, HasSubstr("Session store         damaged\n"));
  EXPECT_EQ(damaged.exitStatus, 3);
}

TEST_F(MannersTest, DoctorSaysWhatStandsInThePlaceOfAStore) {
  const std::string foreign = frontEnd.home().write("notes.txt", std::string(8192, 'x'));
  const std::string folder = frontEnd.home().path().string();
  for (const auto& [path, cause] : std::vector<std::pair<std::string, std::string>>{
           {foreign, ": file is not a database. "}, {folder, ": this is a folder. "}}) {
    const ProgramResult result = frontEnd.run({"doctor", "--source", macbook, "--store", path});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(
        result.output,
        AllOf(HasSubstr("Session store         something else\n    The session store " + path + cause),
              Not(HasSubstr("samples"))));
    EXPECT_THAT(frontEnd.run({"doctor", "--source", macbook, "--json", "--store", path}).output,
                HasSubstr("\"state\" : \"notAStore\""));
  }
}

TEST_F(MannersTest, AStoreThatCannotBeOpenedIsNamedWithAWayOut) {
  const std::string damaged = frontEnd.home().write("damaged.store", std::string(8192, 'x'));
  const ProgramResult result = frontEnd.run({"sessions", "--store", damaged});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.error, AllOf(StartsWith("quellin: "), HasSubstr(damaged)));
}

TEST_F(MannersTest, BashCompletesWhatMayStandThere) {
  static_cast<void>(frontEnd.home().write("day 1.jsonl", ""));
  const std::string script = R"(
    source <("$0" completions bash)
    complete_at() { COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _quellin; echo "${COMPREPLY[*]}"; }
    cd "$1"
    complete_at quellin sn
    complete_at quellin record --ti
    complete_at quellin helper in
    complete_at quellin --v
    complete_at quellin show la
    complete_at quellin record --source na
    complete_at quellin record --source day
    complete_at quellin export last -o day
    complete_at quellin record --speed ''
    complete_at quellin record --title ''
    complete_at quellin run -- bas
    complete_at quellin run --json -- cat --title day
    complete -p quellin
  )";
  ProgramStart start{.executable = "/bin/bash",
                     .arguments = {"bash", "--norc", "-c", script, QUELLIN_EXECUTABLE, frontEnd.pathOf("")},
                     .environment = {"PATH=/usr/bin:/bin"}};
  const ProgramResult result = runProgram(start);
  // Which commands begin with "bas" is the host's business; bash itself is one of them.
  const std::string commands = "(bas[^ \n]* )*bash( bas[^ \n]*)*\n";
  EXPECT_THAT(result.output, MatchesRegex("snapshot\n--title\ninstall\n--version\nlast\n"
                                          "native\nday 1\\.jsonl\nday 1\\.jsonl\nmax\n\n" +
                                          commands +
                                          "day 1\\.jsonl\n"
                                          "complete -F _quellin quellin\n"));
  EXPECT_THAT(result.error, IsEmpty());
}

}  // namespace
}  // namespace quellin::cli
