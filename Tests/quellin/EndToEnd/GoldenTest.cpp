#include <string>

#include <gmock/gmock.h>

#include "quellin/CommandLine/Command.h"
#include "quellin/EndToEnd/FrontEnd.h"
#include "quellin/EndToEnd/Transcript.h"
#include "quellin/Support/Golden.h"

namespace quellin::cli {
namespace {

using testing_support::expectGolden;
using testing_support::FrontEnd;
using testing_support::macbook;
using testing_support::masked;
using testing_support::Transcript;

struct GoldenTest : testing::Test {
  FrontEnd frontEnd;
  Transcript transcript{frontEnd};
};

TEST_F(GoldenTest, HelpOfEveryCommand) {
  transcript.run({"--help"});
  for (const Command& command : commands()) transcript.run({std::string{command.name}, "--help"});
  transcript.expectGolden("help.txt");
}

TEST_F(GoldenTest, WordsThatAreNotUnderstood) {
  transcript.run({});
  transcript.run({"snapshoot"});
  transcript.run({"snapshot", "--jsn"});
  transcript.run({"record", "--interval", "fast"});
  transcript.run({"record", "--speed", "0"});
  transcript.run({"show"});
  transcript.run({"capture"});
  transcript.run({"budget"});
  transcript.run({"budget", "--system", "nan"});
  transcript.run({"helper", "remove"});
  transcript.expectGolden("misuse.txt");
}

TEST_F(GoldenTest, TheManualPage) {
  transcript.run({"manual"});
  transcript.expectGolden("manual.txt");
}

TEST_F(GoldenTest, TheCompletions) {
  for (const char* const shell : {"bash", "zsh", "fish"}) transcript.run({"completions", shell});
  transcript.expectGolden("completions.txt");
}

TEST_F(GoldenTest, ATrace) {
  for (const char* const command : {"doctor", "snapshot"}) {
    transcript.run({command, "--source", macbook});
    transcript.run({command, "--source", macbook, "--json"});
  }
  transcript.run({"doctor", "--brief", "--source", macbook});
  transcript.run({"snapshot", "--processes", "--source", macbook}, {"COLUMNS=80"});
  transcript.run({"snapshot", "--processes", "--source", macbook}, {"COLUMNS=60"});
  transcript.run({"snapshot", "--processes", "--json", "--source", macbook});
  transcript.expectGolden("trace.txt");
}

TEST_F(GoldenTest, CommandsThatAreRun) {
  const FrontEnd::Words words{"run", "--source", macbook};
  const auto with = [&](FrontEnd::Words more) {
    more.insert(more.begin(), words.begin(), words.end());
    return more;
  };
  transcript.run(with({"--title", "Nothing", "--", "true"}));
  transcript.run(with({"--json", "--title", "Nothing", "--", "true"}));
  transcript.run(with({"--baseline", "60s", "--", "sh", "-c", "echo done; exit 4"}));
  transcript.run(with({"--repeat", "2", "--title", "Twice", "--", "echo", "work"}));
  transcript.run(with({"--baseline", "60s", "--repeat", "2", "--title", "Alike", "--", "true"}));
  transcript.run(with({"--repeat", "2", "--title", "Not twice", "--", "false"}));
  transcript.run(with({"--", "there-is-no-such-command"}));
  transcript.run(with({"--", "/"}));
  transcript.run({"sessions"});
  transcript.expectGolden("run.txt");
}

TEST_F(GoldenTest, ASessionFromItsRecordingToItsDeletion) {
  transcript.run({"sessions"});
  transcript.run({"show", "last"});
  transcript.run({"stop"});
  transcript.run({"interrupt"});
  transcript.run({"record", "--source", macbook, "--title", "  Its beginning ", "--for", "10s", "--json"});
  transcript.run({"sessions"});
  transcript.run({"sessions", "--json"});
  transcript.run({"export", "last"});
  transcript.run({"export", "last", "-o", frontEnd.pathOf("last.jsonl")});
  transcript.run({"export", "last", "-o", frontEnd.pathOf("last.jsonl")});
  transcript.run({"export", "last", "-o", frontEnd.pathOf("last.jsonl"), "--force"});
  transcript.run({"export", "last", "-o", frontEnd.pathOf("absent/last.jsonl")});
  transcript.run({"delete", "last"});
  transcript.run({"record", "--source", macbook, "--title", "A day in March"});
  transcript.run({"show", "last"});
  transcript.run({"show", "last", "--json"});
  transcript.run({"delete", "zzz"});
  transcript.run({"sessions", "--json"});
  transcript.expectGolden("session.txt");
}

TEST_F(GoldenTest, WhatTheReadmeShows) {
  const auto expectPicture = [this](const std::string& name, const std::string& text) {
    expectGolden(QUELLIN_PROJECT "/docs/" + name, masked(text, frontEnd.home().path().string()));
  };
  expectPicture("record.txt",
                frontEnd.run({"record", "--source", macbook, "--title", "A day in March"}).output);
  expectPicture("run.txt", frontEnd.run({"run", "--source", macbook, "--title", "Build", "true"}).error);
}

TEST_F(GoldenTest, ACaptureAndWhatIsRefused) {
  const std::string path = frontEnd.pathOf("copy.jsonl");
  transcript.run({"capture", "--source", macbook, "--for", "20s", "-o", path});
  transcript.run({"capture", "--source", macbook, "--for", "20s", "-o", path});
  transcript.run({"capture", "--source", macbook, "--for", "10s", "-o", path, "--force"});
  transcript.run({"capture", "--source", macbook, "-o", frontEnd.pathOf("absent/copy.jsonl")});
  transcript.run({"capture", "--source", path, "-o", path, "--force"});
  transcript.run({"record", "--source", path, "--title", "The copy"});
  transcript.run({"snapshot", "--source", frontEnd.pathOf("absent.jsonl")});
  transcript.run({"snapshot", "--source", frontEnd.home().write("notes.txt", "no trace\n")});
  transcript.run({"snapshot", "--source", frontEnd.home().path().string()});
  transcript.expectGolden("capture.txt");
}

TEST_F(GoldenTest, ABudget) {
  transcript.run({"budget", "--source", macbook, "--system", "48.5"});
  transcript.run({"budget", "--source", macbook, "--cpu", "40", "--gpu", "30", "--json"});
  transcript.run({"budget", "--source", macbook, "--system", "500"});
  transcript.run({"budget", "--source", macbook, "--system", "20", "--for", "1m"});
  transcript.expectGolden("budget.txt");
}

}  // namespace
}  // namespace quellin::cli
