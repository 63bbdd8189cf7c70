#include <set>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "Support/CaseNames.h"
#include "quellin/CommandLine/CommandLine.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::namedBy;

struct CommandLineTest : testing::Test {
  Options options;

  // The name of the command that the arguments ask for; "" when they ask for none.
  std::string commandIn(const std::vector<std::string>& arguments) {
    const auto parsed = parse(arguments, options);
    if (const auto* remark = std::get_if<Remark>(&parsed)) {
      ADD_FAILURE() << remark->text;
      return "";
    }
    return std::string{std::get<const Command*>(parsed)->name};
  }

  // What is said instead of running a command.
  Remark remarkOn(const std::vector<std::string>& arguments) {
    const auto parsed = parse(arguments, options);
    if (const auto* remark = std::get_if<Remark>(&parsed)) return *remark;
    ADD_FAILURE() << "runs " << std::get<const Command*>(parsed)->name;
    return {};
  }
};

TEST_F(CommandLineTest, EveryOptionOfRecordReachesTheOptions) {
  EXPECT_EQ(commandIn({"record", "--title", "Video call", "--interval", "2s", "--for", "10m",
                       "--process-interval", "1.5m", "--telemetry", "--json", "--store", "a.store",
                       "--source", "day.jsonl", "--speed", "2"}),
            "record");
  EXPECT_EQ(options.title, "Video call");
  EXPECT_EQ(options.interval, Seconds{2});
  EXPECT_EQ(options.duration, Seconds{600});
  EXPECT_EQ(options.processInterval, Seconds{90});
  EXPECT_TRUE(options.telemetry);
  EXPECT_TRUE(options.json);
  EXPECT_EQ(options.store, "a.store");
  EXPECT_EQ(options.source, "day.jsonl");
  EXPECT_EQ(options.speed.shortened(Seconds{2}), Seconds{1});
}

TEST_F(CommandLineTest, NothingIsSetWithoutBeingAsked) {
  EXPECT_EQ(commandIn({"record"}), "record");
  EXPECT_EQ(options.source, "native");
  EXPECT_EQ(options.interval, Seconds{1});
  EXPECT_EQ(options.processInterval, std::nullopt);
  EXPECT_EQ(options.duration, std::nullopt);
  EXPECT_EQ(options.title, std::nullopt);
  EXPECT_EQ(options.store, std::nullopt);
  EXPECT_EQ(options.output, std::nullopt);
  EXPECT_FALSE(options.json || options.force || options.telemetry || options.processes || options.brief);
}

TEST_F(CommandLineTest, BudgetKeepsEachLimitApart) {
  EXPECT_EQ(commandIn({"budget", "--cpu", "1.5", "--gpu", "2", "--ane", "0.25", "--system", "20"}), "budget");
  EXPECT_EQ(options.budget.cpuThreshold, 1.5);
  EXPECT_EQ(options.budget.gpuThreshold, 2);
  EXPECT_EQ(options.budget.aneThreshold, 0.25);
  EXPECT_EQ(options.budget.systemThreshold, 20);
}

TEST_F(CommandLineTest, ArgumentsOfCommandsBecomeTheirWord) {
  EXPECT_EQ(commandIn({"export", "3F2A", "-o", "session.jsonl", "--force"}), "export");
  EXPECT_EQ(options.word, "3F2A");
  EXPECT_EQ(options.output, "session.jsonl");
  EXPECT_TRUE(options.force);
}

TEST_F(CommandLineTest, HelpOfEveryCommandShowsItsExamplesAndItsOptions) {
  for (const Command& command : commands()) {
    Options fresh;
    const auto parsed = parse({std::string{command.name}, "--help"}, fresh);
    ASSERT_TRUE(std::holds_alternative<Remark>(parsed)) << command.name;
    const Remark& remark = std::get<Remark>(parsed);
    EXPECT_EQ(remark.status, ExitStatus::ok);
    EXPECT_THAT(remark.text, AllOf(HasSubstr("Examples:"), HasSubstr("-h,--help"),
                                   HasSubstr(std::string{command.purpose})));
    ASSERT_FALSE(command.examples.empty()) << command.name;
    for (const auto example : command.examples) EXPECT_THAT(remark.text, HasSubstr(std::string{example}));
  }
}

TEST_F(CommandLineTest, HelpOfTheProgramListsEveryCommandAndTheExitStatuses) {
  const Remark remark = remarkOn({"--help"});
  EXPECT_EQ(remark.status, ExitStatus::ok);
  for (const Command& command : commands())
    EXPECT_THAT(remark.text, HasSubstr("\n  " + std::string{command.name}));
  EXPECT_THAT(remark.text, HasSubstr(exitStatusText));
}

TEST_F(CommandLineTest, NamesOfCommandsAreUnique) {
  std::set<std::string_view> names;
  for (const Command& command : commands()) EXPECT_TRUE(names.insert(command.name).second) << command.name;
}

TEST_F(CommandLineTest, TheVersionIsPrintedOnDemand) {
  const Remark remark = remarkOn({"--version"});
  EXPECT_EQ(remark.status, ExitStatus::ok);
  EXPECT_THAT(remark.text, testing::MatchesRegex("quellin [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

struct Misuse {
  std::vector<std::string> arguments;
  std::string message;
};

std::string words(const Misuse& misuse) {
  std::string text;
  for (const std::string& argument : misuse.arguments) text += (text.empty() ? "" : " ") + argument;
  return text;
}

class MisuseTest : public testing::TestWithParam<Misuse> {};

TEST_P(MisuseTest, SaysWhatIsWrongAndWhereHelpIs) {
  Options options;
  const auto parsed = parse(GetParam().arguments, options);
  ASSERT_TRUE(std::holds_alternative<Remark>(parsed));
  const Remark& remark = std::get<Remark>(parsed);
  EXPECT_EQ(remark.status, ExitStatus::usage);
  EXPECT_THAT(remark.text, StartsWith("quellin"));
  EXPECT_THAT(remark.text, HasSubstr(GetParam().message));
  EXPECT_THAT(remark.text, HasSubstr("--help'"));
  EXPECT_TRUE(remark.text.ends_with(".\n")) << remark.text;
  EXPECT_EQ(remark.text.find(".."), std::string::npos) << remark.text;
}

INSTANTIATE_TEST_SUITE_P(
    CommandLineTest, MisuseTest,
    testing::Values(
        Misuse{{}, "A subcommand is required"}, Misuse{{"snapshoot"}, "there is no command 'snapshoot'"},
        Misuse{{"--jsn"}, "there is no option '--jsn'"},
        Misuse{{"snapshot", "--source", ""}, "--source: the name is empty"},
        Misuse{{"sessions", "--store", ""}, "--store: the name is empty"},
        Misuse{{"export", "last", "-o", ""}, "--output: the name is empty"},
        Misuse{{"report", "last", "-o", "-"}, "'-' is not standard output here"},
        Misuse{{"export", "last", "-o", "-"}, "a file of that name is './-'"},
        Misuse{{"capture", "--output=-"}, "'-' is not standard output here"},
        Misuse{{"snapshot", "--jsn"}, "--jsn"}, Misuse{{"snapshot", "surplus"}, "surplus"},
        Misuse{{"record", "--interval", "fast"}, "'fast' is no length of time such as 500ms, 90, 5m or 1.5h"},
        Misuse{{"record", "--for", "0"}, "'0' is no length of time"}, Misuse{{"record", "--for"}, "--for"},
        Misuse{{"record", "--speed", "-1"}, "'-1' is neither max nor a number above 0"},
        Misuse{{"show"}, "ID is required"}, Misuse{{"capture"}, "--output is required"},
        Misuse{{"budget", "--cpu", "nan"}, "'nan' is no number of watts such as 20 or 7.5"},
        Misuse{{"budget", "--cpu", "-3"}, "'-3' is no number of watts"},
        Misuse{{"helper", "remove"}, "remove"}, Misuse{{"completions", "tcsh"}, "tcsh"}),
    namedBy(words));

TEST_F(CommandLineTest, WordsThatAreNotExpectedAreListedAsTheyWereTyped) {
  EXPECT_THAT(remarkOn({"run", "--bogus", "--", "make"}).text,
              HasSubstr("argument was not expected: --bogus. The command"));
  EXPECT_THAT(remarkOn({"run", "--bogus", "--more", "--", "make"}).text,
              HasSubstr("arguments were not expected: --bogus --more. The command"));
  EXPECT_THAT(remarkOn({"snapshot", "--bogus", "a", "b"}).text,
              HasSubstr("arguments were not expected: --bogus a b. Try"));
  EXPECT_THAT(remarkOn({"--bogus", "--more", "snapshot"}).text,
              HasSubstr("arguments were not expected: --bogus --more. Try"));
}

TEST_F(CommandLineTest, WhatStandsBehindTheMarkBelongsToTheProgramThatIsRun) {
  EXPECT_EQ(commandIn({"run", "--repeat", "3", "--baseline", "30s", "-o", "a.json", "--", "make", "-j8", "--",
                       "--json", "[a,b]"}),
            "run");
  EXPECT_EQ(options.word, "make");
  EXPECT_THAT(options.arguments, testing::ElementsAre("-j8", "--", "--json", "[a,b]"));
  EXPECT_EQ(options.repeat, 3);
  EXPECT_EQ(options.baseline, Seconds{30});
  EXPECT_EQ(options.output, "a.json");
  EXPECT_FALSE(options.json);
}

TEST_F(CommandLineTest, AProgramMayLookLikeAnOption) {
  EXPECT_EQ(commandIn({"run", "--", "--json"}), "run");
  EXPECT_EQ(options.word, "--json");
  EXPECT_FALSE(options.json);
}

TEST_F(CommandLineTest, AProgramWithoutArgumentsNeedsNoMark) {
  EXPECT_EQ(commandIn({"run", "true"}), "run");
  EXPECT_EQ(options.word, "true");
  EXPECT_TRUE(options.arguments.empty());
}

TEST_F(CommandLineTest, AProgramIsNeededAndItsWordsStandBehindTheMark) {
  EXPECT_EQ(remarkOn({"run"}).status, ExitStatus::usage);
  EXPECT_EQ(remarkOn({"run", "--"}).status, ExitStatus::usage);
  EXPECT_EQ(remarkOn({"run", "--repeat", "0", "--", "true"}).status, ExitStatus::usage);
  EXPECT_THAT(remarkOn({"run", "make", "all"}).text, HasSubstr("go behind --"));
}

}  // namespace
}  // namespace quellin::cli
