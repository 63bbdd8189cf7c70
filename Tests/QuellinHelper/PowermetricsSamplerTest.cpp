#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/MeasuringScript.h"
#include "QuellinHelper/PowermetricsSampler.h"
#include "Support/ChildEnd.h"
#include "Support/Deaths.h"
#include "Support/EnvironmentVariable.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

namespace fs = std::filesystem;
using testing_support::awaitChildEnd;
using testing_support::contentOf;
using testing_support::endedByTrap;
using testing_support::EnvironmentVariable;
using testing_support::ManualMonotonicClock;
using testing_support::ManualWallClock;
using testing_support::outputOfArguments;
using testing_support::TemporaryFolder;

/// The content of a file as this process's standard input, while the object lives.
class StandardInput {
 public:
  explicit StandardInput(const std::string& path) : before_(dup(STDIN_FILENO)) {
    const FileDescriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    dup2(file.get(), STDIN_FILENO);
  }
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;
  StandardInput(StandardInput&&) = delete;
  StandardInput& operator=(StandardInput&&) = delete;
  ~StandardInput() { dup2(before_.get(), STDIN_FILENO); }

 private:
  FileDescriptor before_;
};

/// Stand-ins for the measuring tool are scripts. They see their output path as $output.
class PowermetricsSamplerTest : public testing::Test {
 protected:
  PowermetricsSamplerTest() : temporary_(folder_.pathOf("temporary")) { fs::create_directory(temporary_); }

  /// A measurement with a script in place of the tool; `onSleep` takes the place of time passing.
  ProTelemetrySnapshot sampleWith(
      const std::string& script, std::function<void()> onSleep = [] { awaitChildEnd(); }) {
    const std::string body = std::string{outputOfArguments} + script;
    return sampleFrom(folder_.writeScript("tool", body), std::move(onSleep));
  }

  ProTelemetrySnapshot sampleFrom(
      const std::string& executable, std::function<void()> onSleep = [] { awaitChildEnd(); }) {
    clock_.onSleep = [onSleep = std::move(onSleep)](Seconds) { onSleep(); };
    PowermetricsSampler sampler{executable, temporary_, wallClock_, clock_};
    ProTelemetrySnapshot snapshot = sampler.sample();
    interruption_ = sampler.interruption();
    expectNothingLeft();
    return snapshot;
  }

  void expectNothingLeft() const {
    EXPECT_TRUE(fs::is_empty(temporary_)) << "a file was left behind";
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left behind";
    EXPECT_EQ(errno, ECHILD);
  }

  void expectFailure(const ProTelemetrySnapshot& snapshot, const std::string& error) const {
    ProTelemetrySnapshot expected;
    expected.source = "powermetrics";
    expected.sampledAt = wallClock_.now();
    expected.sampleIntervalMilliseconds = 1000;
    expected.error = error;
    EXPECT_EQ(snapshot, expected) << snapshot.error.value_or("no error");
  }

  TemporaryFolder folder_;
  std::string temporary_;
  ManualWallClock wallClock_{instantAt(1'740'821'412.5)};
  ManualMonotonicClock clock_;
  std::optional<int> interruption_;
};

TEST_F(PowermetricsSamplerTest, ReportsWhatTheToolWrote) {
  const std::string stream =
      folder_.write("stream", R"(<plist><dict><key>cpu_power</key><integer>4523</integer>
<key>tasks</key><array><dict><key>pid</key><integer>7</integer><key>name</key><string>p</string>
<key>energy_impact</key><real>1.5</real></dict></array></dict></plist>)");
  const auto snapshot = sampleWith("cat '" + stream + "' > \"$output\"");
  EXPECT_EQ(snapshot,
            (ProTelemetrySnapshot{.isAvailable = true,
                                  .source = "powermetrics --show-process-energy",
                                  .sampledAt = wallClock_.now(),
                                  .sampleIntervalMilliseconds = 1000,
                                  .processes = {ProProcessEnergy{7, "p", 1.5, {}, {}, {}}},
                                  .cpuPowerWatts = 4.523,
                                  .gpuPowerWatts = {},
                                  .anePowerWatts = {},
                                  .rawSampleSummary =
                                      "Parsed 1 plist sample(s), 1 process energy row(s); power keys: "
                                      "cpu=exact:cpu_power raw=4523 normalized=4.523W",
                                  .error = {}}));
  EXPECT_EQ(interruption_, std::nullopt);
}

TEST_F(PowermetricsSamplerTest, PassesTheArgumentsInOrder) {
  const std::string seen = folder_.pathOf("seen");
  const std::string tool = folder_.writeScript("tool", "printf '%s\\n' \"$@\" > '" + seen + "'");
  static_cast<void>(sampleFrom(tool));
  EXPECT_THAT(contentOf(seen),
              testing::MatchesRegex("-n\n1\n-i\n1000\n--show-process-energy\n--samplers\n"
                                    "tasks,cpu_power,gpu_power,ane_power\n-f\nplist\n-o\n" +
                                    temporary_ + "/quellin-powermetrics-[0-9A-F-]{36}\\.pliststream\n"));
}

TEST_F(PowermetricsSamplerTest, TheToolSeesAMinimalEnvironmentAndAnEmptyInput) {
  const std::string seen = folder_.pathOf("seen");
  const EnvironmentVariable secret{"QUELLIN_TEST_SECRET", "1"};
  const StandardInput input{folder_.write("input", "not for the tool")};
  static_cast<void>(
      sampleWith("{ /usr/bin/env | /usr/bin/grep -v -e ^PWD= -e ^_= -e ^OLDPWD= -e ^SHLVL=; "
                 "/usr/bin/wc -c; } > '" +
                 seen + "'"));
  EXPECT_EQ(contentOf(seen), "PATH=/usr/bin:/bin:/usr/sbin:/sbin\n0\n");
}

TEST_F(PowermetricsSamplerTest, AToolThatCannotBeStartedGivesTheSystemsDescription) {
  expectFailure(sampleFrom(folder_.pathOf("none")), "No such file or directory");
  expectFailure(sampleFrom(folder_.write("data", "x")), "Permission denied");
}

TEST_F(PowermetricsSamplerTest, NoOutputFileMeansNoStart) {
  const std::string ran = folder_.pathOf("ran");
  const std::string tool = folder_.writeScript("tool", "touch '" + ran + "'");
  PowermetricsSampler sampler{tool, folder_.pathOf("missing"), wallClock_, clock_};
  expectFailure(sampler.sample(), "No such file or directory");
  EXPECT_FALSE(fs::exists(ran));
}

TEST_F(PowermetricsSamplerTest, ANonZeroExitGivesTheTrimmedErrorTextOrTheStatus) {
  expectFailure(sampleWith("echo x > \"$output\"; printf ' \\n\\tmust be the superuser \\n\\n' >&2; exit 1"),
                "must be the superuser");
  expectFailure(sampleWith("exit 3"), "powermetrics exited with status 3");
  expectFailure(sampleWith("printf ' \\n' >&2; exit 4"), "powermetrics exited with status 4");
  expectFailure(sampleWith("printf '\\377' >&2; exit 5"), "powermetrics exited with status 5");
  expectFailure(sampleWith("kill -KILL $$"), "powermetrics exited with status 9");
}

TEST_F(PowermetricsSamplerTest, AMissingOrEmptyOutputFileIsAFailureOfStatus0) {
  expectFailure(sampleWith("exit 0"), "powermetrics exited with status 0");
  expectFailure(sampleWith("rm \"$output\""), "powermetrics exited with status 0");
  expectFailure(sampleWith("echo unhappy >&2; : > \"$output\""), "unhappy");
}

TEST_F(PowermetricsSamplerTest, ErrorTextIsNoFailureWhenThereIsOutput) {
  const auto snapshot = sampleWith("echo noise >&2; echo '<dict/>' > \"$output\"");
  EXPECT_TRUE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.error, std::nullopt);
  EXPECT_EQ(snapshot.rawSampleSummary, "Parsed 1 plist sample(s), 0 process energy row(s); power keys: ");
}

TEST_F(PowermetricsSamplerTest, OutputWithoutAPropertyListIsShown) {
  const auto snapshot = sampleWith("printf 'no list' > \"$output\"");
  EXPECT_FALSE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.source, "powermetrics --show-process-energy");
  EXPECT_EQ(snapshot.error, "powermetrics returned no parseable plist samples");
  EXPECT_EQ(snapshot.rawSampleSummary, "no list");
  EXPECT_EQ(snapshot.sampledAt, wallClock_.now());
}

TEST_F(PowermetricsSamplerTest, AnotherFileInTheOutputsPlaceIsNotReadAndIsRemoved) {
  const std::string other = folder_.write("other", "<dict/>");
  expectFailure(sampleWith("ln -sf '" + other + "' \"$output\""), "powermetrics exited with status 0");
  expectFailure(sampleWith("cp '" + other + "' \"$output.new\"; mv \"$output.new\" \"$output\""),
                "powermetrics exited with status 0");
  EXPECT_EQ(contentOf(other), "<dict/>");
}

TEST_F(PowermetricsSamplerTest, OutputBeyondTheLimitIsNotRead) {
  expectFailure(sampleWith("truncate -s " + std::to_string(SampleFile::sizeLimit + 1) + " \"$output\""),
                "powermetrics exited with status 0");
}

TEST_F(PowermetricsSamplerTest, AHangingToolIsEndedAfter15Seconds) {
  const Seconds start = clock_.now();
  // Time passes by itself up to the limit; after that the tool is awaited.
  expectFailure(sampleWith("exec sleep 600",
                           [this, start] {
                             if (clock_.now() - start > Seconds{15.5}) awaitChildEnd();
                           }),
                "powermetrics timed out");
  // The tool is given a moment to end once it has been asked.
  EXPECT_GE(clock_.now() - start, Seconds{15});
  EXPECT_LE(clock_.now() - start, Seconds{15.6});
  EXPECT_THAT(clock_.sleeps, testing::Each(Seconds{0.05}));
}

TEST_F(PowermetricsSamplerTest, AHangingToolIsAskedBeforeItIsKilled) {
  const std::string ready = folder_.pathOf("ready");
  ASSERT_EQ(mkfifo(ready.c_str(), 0600), 0);
  const Seconds start = clock_.now();
  bool isReady = false;
  const std::string script =
      "sleep 600 & sleeper=$!\n"
      "trap 'kill $sleeper; echo asked > \"" +
      folder_.pathOf("asked") +
      "\"; exit 0' TERM\n"
      "echo > '" +
      ready + "'; wait";
  expectFailure(sampleWith(script,
                           [&] {
                             if (!isReady) isReady = !contentOf(ready).empty();
                             if (clock_.now() - start > Seconds{15.5}) awaitChildEnd();
                           }),
                "powermetrics timed out");
  EXPECT_EQ(contentOf(folder_.pathOf("asked")), "asked\n");
}

TEST_F(PowermetricsSamplerTest, AToolThatDoesNotHeedIsKilled2SecondsAfterThe15) {
  const std::string ready = folder_.pathOf("ready");
  ASSERT_EQ(mkfifo(ready.c_str(), 0600), 0);
  const Seconds start = clock_.now();
  bool isReady = false;
  expectFailure(sampleWith("trap '' TERM; echo > '" + ready + "'; exec sleep 600",
                           [&] {
                             if (!isReady) isReady = !contentOf(ready).empty();
                           }),
                "powermetrics timed out");
  // No look at the child comes later than one pause after its time.
  EXPECT_GE(clock_.now() - start, Seconds{17});
  EXPECT_LE(clock_.now() - start, Seconds{17.11});
}

TEST_F(PowermetricsSamplerTest, AProcessThatTheToolLeavesBehindHoldsUpTheAnswerUntilTheLimitOnly) {
  const Seconds start = clock_.now();
  const auto snapshot = sampleWith("sleep 600 & echo $! >&2; exit 3");
  EXPECT_NEAR((clock_.now() - start).count(), 15, 0.051);
  EXPECT_EQ(kill(std::stoi(snapshot.error.value_or("")), SIGKILL), 0);
}

TEST_F(PowermetricsSamplerTest, ASignalEndsTheWaitForAProcessThatTheToolLeftBehind) {
  const Seconds start = clock_.now();
  const auto snapshot = sampleWith("sleep 600 & echo $! >&2; exit 3", [this, start] {
    awaitChildEnd();
    if (clock_.now() - start > Seconds{1}) kill(getpid(), SIGTERM);
  });
  EXPECT_LT((clock_.now() - start).count(), 1.2);
  EXPECT_EQ(interruption_, SIGTERM);
  EXPECT_EQ(kill(std::stoi(snapshot.error.value_or("")), SIGKILL), 0);
}

TEST_F(PowermetricsSamplerTest, ASignalEndsTheWaitAndIsReported) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
    const Seconds start = clock_.now();
    bool isSent = false;
    expectFailure(sampleWith("exec sleep 600",
                             [&isSent, number] {
                               if (isSent) return awaitChildEnd();
                               isSent = kill(getpid(), number) == 0;
                             }),
                  "powermetrics was interrupted");
    EXPECT_EQ(interruption_, number);
    EXPECT_LT((clock_.now() - start).count(), 0.2);
  }
}

TEST_F(PowermetricsSamplerTest, ASignalDuringASuccessfulRunIsReportedToo) {
  const std::string go = folder_.pathOf("go");
  ASSERT_EQ(mkfifo(go.c_str(), 0600), 0);
  const auto snapshot = sampleWith("read line < '" + go + "'; echo '<dict/>' > \"$output\"", [this] {
    kill(getpid(), SIGTERM);
    folder_.write("go", "on\n");
    awaitChildEnd();
  });
  EXPECT_TRUE(snapshot.isAvailable);
  EXPECT_EQ(interruption_, SIGTERM);
}

TEST_F(PowermetricsSamplerTest, AnInterruptionIsForgottenByTheNextMeasurement) {
  clock_.onSleep = [](Seconds) { awaitChildEnd(); };
  const std::string tool = folder_.writeScript("tool", "exit 0");
  PowermetricsSampler sampler{tool, temporary_, wallClock_, clock_};
  // Held back by nobody yet, the signal is blocked here by hand so that it waits for the sampler.
  BlockedSignals signals;
  kill(getpid(), SIGHUP);
  static_cast<void>(sampler.sample());
  EXPECT_EQ(sampler.interruption(), SIGHUP);
  static_cast<void>(sampler.sample());
  EXPECT_EQ(sampler.interruption(), std::nullopt);
}

TEST_F(PowermetricsSamplerTest, AnExceptionLeavesNeitherChildNorFileNorHeldBackSignals) {
  EXPECT_THROW(static_cast<void>(sampleWith("exec sleep 600", [] { throw std::bad_alloc{}; })),
               std::bad_alloc);
  expectNothingLeft();
  sigset_t mask{};
  pthread_sigmask(SIG_BLOCK, nullptr, &mask);
  EXPECT_EQ(sigismember(&mask, SIGTERM), 0);
}

#if defined(__linux__)  // elsewhere no file tells the mask

TEST_F(PowermetricsSamplerTest, TheToolStartsWithNoSignalHeldBack) {
  const std::string seen = folder_.pathOf("seen");
  static_cast<void>(sampleWith("/usr/bin/grep SigBlk /proc/self/status > '" + seen + "'"));
  EXPECT_THAT(contentOf(seen), testing::MatchesRegex("SigBlk:\t0+\n"));
}

#endif

TEST(PowermetricsSamplerDeathTest, AnImpossibleIdentifierEndsTheProcessWithNoFileLeft) {
  const TemporaryFolder folder;
  const std::string temporary = folder.pathOf("temporary");
  fs::create_directory(temporary);
  const std::string tool = folder.writeScript(
      "tool", std::string{outputOfArguments} +
                  "echo '<dict><key>pid</key><integer>4294967296</integer></dict>' > \"$output\"");
  EXPECT_EXIT(
      {
        PowermetricsSampler sampler(tool, temporary);
        static_cast<void>(sampler.sample());
      },
      endedByTrap, "");
  EXPECT_TRUE(fs::is_empty(temporary));
}

}  // namespace
}  // namespace quellin
