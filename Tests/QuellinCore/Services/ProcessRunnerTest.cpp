#include <csignal>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/ProcessRunner.h"
#include "Support/ChildEnd.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::Each;
using testing_support::contentOf;
using testing_support::ManualMonotonicClock;
using testing_support::TemporaryFolder;

ProcessRunResult runShell(const std::string& script) {
  return runProcess("/bin/sh", {"-c", script}, Seconds{60}, systemMonotonicClock());
}

TEST(ProcessRunnerTest, KeepsBothStreamsAsBytesAndAsTrimmedText) {
  const ProcessRunResult result = runShell("printf ' out\\n\\n'; printf '\\t err \\n' >&2; exit 3");
  EXPECT_EQ(result.terminationStatus, 3);
  EXPECT_EQ(result.outputData, " out\n\n");
  EXPECT_EQ(result.errorData, "\t err \n");
  EXPECT_EQ(result.output, "out");
  EXPECT_EQ(result.error, "err");
}

TEST(ProcessRunnerTest, EmptyStreamsHaveNoBytesButAnEmptyText) {
  const ProcessRunResult result = runShell("exit 0");
  EXPECT_EQ(result.terminationStatus, 0);
  EXPECT_EQ(result.outputData, std::nullopt);
  EXPECT_EQ(result.errorData, std::nullopt);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.error, "");
}

TEST(ProcessRunnerTest, BytesThatAreNotUTF8HaveNoText) {
  const ProcessRunResult result = runShell("printf '\\377'; printf '\\300\\200' >&2");
  EXPECT_EQ(result.outputData, "\xFF");
  EXPECT_EQ(result.output, std::nullopt);
  EXPECT_EQ(result.errorData, "\xC0\x80");
  EXPECT_EQ(result.error, std::nullopt);
}

TEST(ProcessRunnerTest, AProgramThatCannotStartGivesTheSystemsDescription) {
  const ProcessRunResult result = runProcess("/nonexistent/tool", {}, Seconds{1}, systemMonotonicClock());
  EXPECT_EQ(result.terminationStatus, -1);
  EXPECT_EQ(result.outputData, std::nullopt);
  EXPECT_EQ(result.errorData, std::nullopt);
  EXPECT_EQ(result.output, std::nullopt);
  EXPECT_EQ(result.error, "No such file or directory");
}

TEST(ProcessRunnerTest, AChildThatHangsIsTerminatedAtTheDeadline) {
  ManualMonotonicClock clock;
  const ProcessRunResult result = runProcess("/bin/sleep", {"600"}, Seconds{2}, clock);
  EXPECT_EQ(result.terminationStatus, SIGTERM);
  EXPECT_EQ(result.error, "");
  EXPECT_THAT(clock.sleeps, Each(Seconds{0.05}));
  EXPECT_NEAR(clock.slept().count(), 2, 0.0501);
}

TEST(ProcessRunnerTest, AChildThatIsTerminatedLeavesWhatItWrote) {
  const TemporaryFolder folder;
  const std::string ready = folder.pathOf("ready");
  ManualMonotonicClock clock;
  clock.onSleep = [&](Seconds) {
    while (!std::filesystem::exists(ready)) std::this_thread::yield();
  };
  const std::string script = "trap 'printf partial; printf stopped >&2; exit 9' TERM; : >'" + ready +
                             "'; while :; do sleep 0.01; done";
  const ProcessRunResult result = runProcess("/bin/sh", {"-c", script}, Seconds{2}, clock);
  EXPECT_EQ(result.terminationStatus, 9);
  EXPECT_EQ(result.output, "partial");
  EXPECT_EQ(result.error, "stopped");
}

#if defined(__linux__)

/// Whether the process whose id stands in the file at `path` sleeps, or has ended.
bool isAtRest(const std::string& path) {
  const std::string id = std::filesystem::exists(path) ? contentOf(path) : "";
  if (!id.ends_with('\n')) return false;
  const std::string stat = contentOf("/proc/" + std::to_string(std::stoi(id)) + "/stat");
  const char state = stat.at(stat.rfind(')') + 2);
  return state == 'S' || state == 'Z';
}

TEST(ProcessRunnerTest, AChildThatFillsAPipeIsStalledUntilTheDeadline) {
  const TemporaryFolder folder;
  const std::string id = folder.pathOf("id");
  ManualMonotonicClock clock;
  clock.onSleep = [&](Seconds) {
    while (!isAtRest(id)) std::this_thread::yield();
  };
  const std::string script = "echo $$ >'" + id + "'; exec head -c 1000000 /dev/zero";
  const ProcessRunResult result = runProcess("/bin/sh", {"-c", script}, Seconds{2}, clock);
  EXPECT_EQ(result.terminationStatus, SIGTERM) << "its output was read while it ran";
  EXPECT_NEAR(clock.slept().count(), 2, 0.0501);
}

#endif

/// Ends the process whose id is all of `text`.
void endProcess(const std::string& text) {
  ASSERT_THAT(text, testing::MatchesRegex("[0-9]+"));
  EXPECT_EQ(kill(std::stoi(text), SIGKILL), 0);
}

TEST(ProcessRunnerTest, AProcessLeftBehindHoldsUpTheResultUntilTheDeadlineOnly) {
  ManualMonotonicClock clock;
  clock.onSleep = [](Seconds) { testing_support::awaitChildEnd(); };
  const ProcessRunResult result =
      runProcess("/bin/sh", {"-c", "sleep 600 & echo $!; exit 3"}, Seconds{2}, clock);
  EXPECT_EQ(result.terminationStatus, 3);
  EXPECT_EQ(result.error, "");
  EXPECT_NEAR(clock.slept().count(), 2, 0.0501);
  endProcess(result.output.value_or(""));
}

TEST(ProcessRunnerTest, AProcessLeftByATerminatedChildHoldsUpNothing) {
  ManualMonotonicClock clock;
  const TemporaryFolder folder;
  const std::string ready = folder.pathOf("ready");
  clock.onSleep = [&](Seconds) {
    while (!std::filesystem::exists(ready)) std::this_thread::yield();
  };
  const std::string script = "sleep 600 & echo $!; : >'" + ready + "'; wait";
  const ProcessRunResult result = runProcess("/bin/sh", {"-c", script}, Seconds{2}, clock);
  EXPECT_EQ(result.terminationStatus, SIGTERM);
  EXPECT_NEAR(clock.slept().count(), 2, 0.0501);
  endProcess(result.output.value_or(""));
}

}  // namespace
}  // namespace quellin
