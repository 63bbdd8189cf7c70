// The tool as a process with a stand-in for the measuring tool that it runs.

#include <filesystem>
#include <fstream>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinHelper/PowermetricsStandIn.h"
#include "Support/ProgramRun.h"

namespace quellin {
namespace {

using testing_support::becomeOrdinaryUser;
using testing_support::installProgram;
using testing_support::PowermetricsStandIn;
using testing_support::ProgramResult;
using testing_support::ProgramStart;
using testing_support::require;
using testing_support::RunningProgram;
using testing_support::runProgram;

/// The tool installed with the set-user-ID bit and run by an ordinary user.
ProgramStart startBy(const PowermetricsStandIn& standIn, const std::function<void()>& prepare = [] {}) {
  const std::string path = standIn.pathOf("QuellinHelper");
  installProgram(QUELLIN_HELPER, path, 0, 04755);
  return {.executable = path,
          .arguments = {"tool", "read-pro-telemetry-json"},
          .environment = {"PATH=/hostile", "TMPDIR=/hostile", "SECRET=1"},
          .prepare = [&standIn, prepare] {
            standIn.enter();
            becomeOrdinaryUser();
            prepare();
          }};
}

std::string errorIn(const ProgramResult& result) {
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.error, "");
  const auto snapshot = decodeJSON<ProTelemetrySnapshot>(result.output);
  if (!snapshot) return "no snapshot: " + result.output;
  return snapshot->error.value_or("no error");
}

TEST(HelperMeasurementNeedsRootTest, SnapshotOfWhatTheMeasuringToolWrote) {
  const PowermetricsStandIn standIn{R"(
cat > "$output" <<'STREAM'
<plist><dict><key>cpu_power</key><integer>4523</integer>
<key>tasks</key><array><dict><key>pid</key><integer>7</integer><key>name</key><string>a/b</string>
<key>energy_impact</key><real>1.5</real></dict></array></dict></plist>
STREAM
)"};
  const ProgramResult result = runProgram(startBy(standIn));
  const std::string before =
      R"({"isAvailable":true,"source":"powermetrics --show-process-energy","sampledAt":")";
  const std::string after =
      R"(Z","sampleIntervalMilliseconds":1000,"processes":[{"pid":7,"name":"a\/b","energyImpact":1.5}],)"
      R"("cpuPowerWatts":4.523,"rawSampleSummary":"Parsed 1 plist sample(s), 1 process energy row(s); )"
      R"(power keys: cpu=exact:cpu_power raw=4523 normalized=4.523W"})"
      "\n";
  ASSERT_EQ(result.output.size(), before.size() + std::string{"2025-03-01T09:30:12"}.size() + after.size())
      << result.output;
  EXPECT_TRUE(result.output.starts_with(before)) << result.output;
  EXPECT_TRUE(result.output.ends_with(after)) << result.output;
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.exitStatus, 0);
}

TEST(HelperMeasurementNeedsRootTest, FailedMeasurementIsAnAnswer) {
  const PowermetricsStandIn standIn{"exit 3"};
  EXPECT_EQ(errorIn(runProgram(startBy(standIn))), "powermetrics exited with status 3");
}

TEST(HelperMeasurementNeedsRootTest, MeasuringToolInheritsNothingOfTheCaller) {
  const PowermetricsStandIn standIn{R"script(
report=$(tr '\0' ' ' < /proc/$$/environ)
report="$report; $(pwd -P); $(umask); $(id -ru) $(id -u) $(id -rg) $(id -g) $(id -G);"
number=0
while [ $number -lt 100 ]; do
  descriptor=/proc/$$/fd/$number
  [ -e $descriptor ] && ! [ $descriptor -ef "$0" ] && report="$report $number"
  number=$((number + 1))
done
report="$report; $(grep -E '^Sig(Blk|Ign)' /proc/$$/status | tr -d '\n\t')"
echo "$report" >&2
exit 1
)script"};
  const ProgramStart start = startBy(standIn, [] {
    for (const int number : {3, 8, 60}) require(dup2(STDIN_FILENO, number) == number, "descriptor");
    sigset_t every{};
    sigfillset(&every);
    pthread_sigmask(SIG_SETMASK, &every, nullptr);
    require(signal(SIGTERM, SIG_IGN) != SIG_ERR && signal(SIGCHLD, SIG_IGN) != SIG_ERR, "ignore");
    require(chdir("/tmp") == 0, "folder");
    umask(0);
  });
  EXPECT_EQ(errorIn(runProgram(start)),
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin ; /; 0077; 0 0 0 0 0; 0 1 2; "
            "SigBlk:0000000000000000SigIgn:0000000000000000");
}

TEST(HelperMeasurementNeedsRootTest, OutputFileIsPrivateNewAndGoneAfterwards) {
  const PowermetricsStandIn standIn{R"(stat -c '%n %a %u %h %s %F' "$output" >&2; exit 1)"};
  const std::string error = errorIn(runProgram(startBy(standIn)));
  const std::size_t end = error.find(' ');
  EXPECT_EQ(error.substr(end), " 600 0 1 0 regular empty file");
  EXPECT_TRUE(error.starts_with("/tmp/quellin-powermetrics-")) << error;
  EXPECT_FALSE(std::filesystem::exists(error.substr(0, end)));
}

bool ordinaryUserSends(pid_t processID, int number) {
  const pid_t sender = fork();
  if (sender == 0) {
    becomeOrdinaryUser();
    _exit(kill(processID, number) == 0 ? 0 : 1);
  }
  int status = 1;
  return waitpid(sender, &status, 0) == sender && status == 0;
}

TEST(HelperMeasurementNeedsRootTest, TerminatingSignalOfTheCallerLeavesNeitherChildNorFile) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    const testing_support::TemporaryFolder meeting;
    const std::string started = meeting.pathOf("started");
    ASSERT_EQ(mkfifo(started.c_str(), 0600), 0);
    const PowermetricsStandIn standIn{"echo $$ \"$output\" > " + started + "; exec sleep 600"};

    RunningProgram tool{startBy(standIn)};
    pid_t measuring = 0;
    std::string output;
    std::ifstream{started} >> measuring >> output;
    ASSERT_TRUE(measuring > 0 && std::filesystem::exists(output)) << output;

    EXPECT_TRUE(ordinaryUserSends(tool.processID(), number));
    EXPECT_EQ(tool.finish(), (ProgramResult{.signal = number}));
    EXPECT_EQ(kill(measuring, 0), -1) << "the measuring tool still runs";
    EXPECT_FALSE(std::filesystem::exists(output));
  }
}

TEST(HelperMeasurementNeedsRootTest, MissingMeasuringToolGivesTheSystemsDescription) {
  const PowermetricsStandIn standIn{""};
  const ProgramStart start = startBy(standIn);
  const ProgramResult result = runProgram({.executable = start.executable,
                                           .arguments = start.arguments,
                                           .environment = {},
                                           .prepare = [&standIn] {
                                             standIn.enter();
                                             require(unlink("/usr/bin/powermetrics") == 0, "removal");
                                             becomeOrdinaryUser();
                                           }});
  EXPECT_EQ(errorIn(result), "No such file or directory");
}

}  // namespace
}  // namespace quellin
