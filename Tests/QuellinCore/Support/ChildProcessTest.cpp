#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Support/ChildProcess.h"
#include "Support/ChildEnd.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing_support::awaitChildEnd;
using testing_support::ManualMonotonicClock;

ChildProcessPlan shellPlan(std::string script) {
  return {.executable = "/bin/sh",
          .arguments = {"-c", std::move(script)},
          .standardOutput = ChildStream::pipe,
          .standardError = ChildStream::pipe};
}

ChildProcess startOrDie(const ChildProcessPlan& plan) {
  auto child = ChildProcess::start(plan);
  if (!child) throw std::runtime_error(child.error().description());
  return std::move(*child);
}

ChildProcess startSleeper() { return startOrDie({.executable = "/bin/sleep", .arguments = {"600"}}); }

std::string outputOf(const ChildProcessPlan& plan) {
  ChildProcess child = startOrDie(plan);
  std::string output = child.readStandardOutput();
  EXPECT_EQ(child.wait(), 0);
  return output;
}

bool exists(pid_t processID) { return ::kill(processID, 0) == 0; }

int openDescriptorCount() {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder{opendir("/dev/fd"), closedir};
  int count = 0;
  while (readdir(folder.get()) != nullptr) ++count;
  return count;
}

TEST(ChildProcessTest, HandsOverBothStreamsAndTheExitStatus) {
  ChildProcess child = startOrDie(shellPlan("printf out; printf err >&2; exit 3"));
  EXPECT_EQ(child.readStandardOutput(), "out");
  EXPECT_EQ(child.readStandardError(), "err");
  EXPECT_EQ(child.wait(), 3);
  EXPECT_FALSE(child.isRunning());
  EXPECT_EQ(child.wait(), 3);
  EXPECT_EQ(child.readStandardOutput(), "");
}

TEST(ChildProcessTest, ArgumentsReachTheProgramUntouched) {
  const ChildProcessPlan plan{.executable = "/bin/echo",
                              .arguments = {"$HOME", "a b", "'", "`id`", ""},
                              .standardOutput = ChildStream::pipe};
  EXPECT_EQ(outputOf(plan), "$HOME a b ' `id` \n");
}

TEST(ChildProcessTest, KeepsTheBytesUpToTheLimitOnly) {
  ChildProcess child = startOrDie(shellPlan("printf 0123456789; printf abcdef >&2"));
  EXPECT_EQ(child.readStandardOutput(4), "0123");
  EXPECT_EQ(child.readStandardError(0), "");
  EXPECT_EQ(child.wait(), 0);
}

TEST(ChildProcessTest, GivenEnvironmentIsTheWholeEnvironment) {
  const ChildProcessPlan plan{.executable = "/usr/bin/env",
                              .environment = {{"FIRST=1", "SECOND=two words"}},
                              .standardOutput = ChildStream::pipe};
  EXPECT_EQ(outputOf(plan), "FIRST=1\nSECOND=two words\n");
}

TEST(ChildProcessTest, AbsentEnvironmentIsTheParents) {
  setenv("QUELLIN_CHILD_PROCESS_TEST", "inherited", 1);
  const std::string output = outputOf(shellPlan("printf %s \"$QUELLIN_CHILD_PROCESS_TEST\""));
  unsetenv("QUELLIN_CHILD_PROCESS_TEST");
  EXPECT_EQ(output, "inherited");
}

TEST(ChildProcessTest, NullStreamsLeadNowhere) {
  ChildProcessPlan plan = shellPlan("cat; printf lost; printf lost >&2");
  plan.standardInput = ChildStream::null;
  plan.standardOutput = ChildStream::null;
  plan.standardError = ChildStream::null;
  ChildProcess child = startOrDie(plan);
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(child.readStandardOutput() + child.readStandardError(), "");
}

TEST(ChildProcessTest, InheritedStreamIsTheParents) {
  auto ends = Pipe::open();
  ASSERT_TRUE(ends);
  const FileDescriptor saved{dup(STDOUT_FILENO)};
  dup2(ends->writeEnd.get(), STDOUT_FILENO);
  auto child = ChildProcess::start({.executable = "/bin/echo", .arguments = {"through"}});
  dup2(saved.get(), STDOUT_FILENO);
  ASSERT_TRUE(child);
  EXPECT_EQ(child->wait(), 0);
  ends->writeEnd.reset();
  EXPECT_EQ(readToEnd(ends->readEnd.get()), "through\n");
}

TEST(ChildProcessTest, PipesWorkWhenTheParentHasNoStandardStreams) {
  const FileDescriptor savedOutput{fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10)};
  const FileDescriptor savedError{fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 10)};
  close(STDOUT_FILENO);
  close(STDERR_FILENO);
  auto child = ChildProcess::start(shellPlan("printf out; printf err >&2"));
  dup2(savedOutput.get(), STDOUT_FILENO);
  dup2(savedError.get(), STDERR_FILENO);
  ASSERT_TRUE(child);
  EXPECT_EQ(child->readStandardOutput(), "out");
  EXPECT_EQ(child->readStandardError(), "err");
}

TEST(ChildProcessTest, NoOtherDescriptorReachesTheChild) {
  const FileDescriptor inheritable{fcntl(STDERR_FILENO, F_DUPFD, 57)};
  ASSERT_EQ(fcntl(inheritable.get(), F_GETFD), 0);
  // The shell itself answers, so that nothing else opens a descriptor meanwhile.
  EXPECT_EQ(
      outputOf(shellPlan("for n in 3 4 5 6 7 8 9 57; do [ -e /dev/fd/$n ] && printf '%s ' $n; done; :")), "");
}

TEST(ChildProcessTest, ChildStartsWithDefaultDispositionsAndNothingBlocked) {
  sigset_t blocked{};
  sigset_t previous{};
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &previous);
  const auto previousHandler = std::signal(SIGTERM, SIG_IGN);
  ChildProcess child = startSleeper();
  std::signal(SIGTERM, previousHandler);
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);

  child.terminate();
  EXPECT_EQ(child.wait(), SIGTERM);
}

TEST(ChildProcessTest, TerminateAndKillReportTheSignalsNumber) {
  ChildProcess terminated = startSleeper();
  EXPECT_TRUE(terminated.isRunning());
  terminated.terminate();
  EXPECT_EQ(terminated.wait(), SIGTERM);
  terminated.terminate();

  ChildProcess killed = startSleeper();
  killed.kill();
  EXPECT_EQ(killed.wait(), SIGKILL);
}

TEST(ChildProcessTest, StartErrorsCarryTheSystemsDescription) {
  struct Case {
    std::string executable;
    int code;
    std::string description;
  };
  for (const Case& c :
       {Case{.executable = "/nonexistent/tool", .code = ENOENT, .description = "No such file or directory"},
        Case{.executable = "/dev/null", .code = EACCES, .description = "Permission denied"},
        Case{.executable = "relative/tool", .code = EINVAL, .description = "Invalid argument"}}) {
    const auto child = ChildProcess::start({.executable = c.executable});
    ASSERT_FALSE(child) << c.executable;
    EXPECT_EQ(child.error().code, c.code);
    EXPECT_EQ(child.error().description(), c.description);
  }
}

TEST(ChildProcessTest, TextsWithNULAndInputPipesAreRefused) {
  const std::string cut{"a\0b", 3};
  EXPECT_EQ(ChildProcess::start({.executable = "/bin/echo" + cut}).error(), SystemError{EINVAL});
  EXPECT_EQ(ChildProcess::start({.executable = "/bin/echo", .arguments = {cut}}).error(),
            SystemError{EINVAL});
  EXPECT_EQ(ChildProcess::start({.executable = "/bin/echo", .environment = {{cut}}}).error(),
            SystemError{EINVAL});
  EXPECT_EQ(ChildProcess::start({.executable = "/bin/echo", .standardInput = ChildStream::pipe}).error(),
            SystemError{EINVAL});
}

TEST(ChildProcessTest, DescriptorsAreGoneAfterSuccessAndFailure) {
  const int before = openDescriptorCount();
  for (int round = 0; round < 5; ++round) {
    outputOf(shellPlan("exit 0"));
    ChildProcessPlan missing = shellPlan("");
    missing.executable = "/nonexistent/tool";
    EXPECT_FALSE(ChildProcess::start(missing));
    missing.identity = ChildIdentity::realRoot;
    EXPECT_FALSE(ChildProcess::start(missing));
    const ChildProcess abandoned = startOrDie(shellPlan("exec /bin/sleep 600"));
  }
  EXPECT_EQ(openDescriptorCount(), before);
}

TEST(ChildProcessTest, DestructionLeavesNeitherProcessNorZombie) {
  pid_t processID = -1;
  {
    ChildProcess first = startSleeper();
    processID = first.processID();
    const ChildProcess second{std::move(first)};
    EXPECT_TRUE(exists(processID));
  }
  EXPECT_FALSE(exists(processID));
  EXPECT_EQ(waitpid(processID, nullptr, WNOHANG), -1);
}

TEST(ChildProcessTest, AssignmentHandsTheOldChildOver) {
  ChildProcess child = startSleeper();
  const pid_t old = child.processID();
  child = startSleeper();
  EXPECT_FALSE(exists(old));
  EXPECT_TRUE(child.isRunning());
}

TEST(ChildProcessTest, WaitingWorksWhereTheEndOfChildrenIsIgnored) {
  const auto previous = std::signal(SIGCHLD, SIG_IGN);
  ChildProcess child = startOrDie(shellPlan("exit 5"));
  const std::int32_t status = child.wait();
  const bool running = child.isRunning();
  std::signal(SIGCHLD, previous);
  EXPECT_EQ(status, ChildProcess::unknownStatus);
  EXPECT_FALSE(running);
}

TEST(ChildProcessTest, DeadlineEndsTheWaitOfARunningChild) {
  ManualMonotonicClock clock;
  ChildProcess child = startSleeper();
  EXPECT_FALSE(child.waitUntil(clock.now() + Seconds{0.12}, clock));
  EXPECT_THAT(clock.sleeps, ElementsAre(Seconds{0.05}, Seconds{0.05}, Seconds{0.05}));
  EXPECT_TRUE(child.isRunning());
}

TEST(ChildProcessTest, DeadlineAlreadyReachedMeansNoPause) {
  ManualMonotonicClock clock;
  ChildProcess child = startSleeper();
  EXPECT_FALSE(child.waitUntil(clock.now(), clock));
  EXPECT_TRUE(clock.sleeps.empty());
}

TEST(ChildProcessTest, EndedChildMeansNoPauseEvenBeforeTheDeadline) {
  ManualMonotonicClock clock;
  ChildProcess child = startOrDie(shellPlan("exit 0"));
  awaitChildEnd(child.processID());
  EXPECT_TRUE(child.waitUntil(clock.now() + Seconds{10}, clock));
  EXPECT_TRUE(clock.sleeps.empty());
}

TEST(ChildProcessTest, WaitStopsAfterThePauseInWhichTheChildEnded) {
  ManualMonotonicClock clock;
  ChildProcess child = startSleeper();
  clock.onSleep = [&](Seconds) {
    if (clock.sleeps.size() < 3) return;
    ::kill(child.processID(), SIGTERM);
    awaitChildEnd(child.processID());
  };
  EXPECT_TRUE(child.waitUntil(clock.now() + Seconds{10}, clock));
  EXPECT_EQ(clock.sleeps.size(), 3U);
  EXPECT_EQ(child.wait(), SIGTERM);
}

TEST(ChildProcessTest, InterruptionEndsTheWaitBeforeTheNextPause) {
  ManualMonotonicClock clock;
  ChildProcess child = startSleeper();
  EXPECT_FALSE(child.waitUntil(clock.now() + Seconds{10}, clock, [&] { return clock.sleeps.size() == 2; }));
  EXPECT_EQ(clock.sleeps.size(), 2U);
  EXPECT_TRUE(child.isRunning());
}

/// A child that has ended and left a process of the given script behind, which holds both its streams; that
/// process is killed at the end.
class ChildWithHeir {
 public:
  explicit ChildWithHeir(const std::string& script)
      : child(startOrDie(shellPlan("{ " + script + "; } & echo $!; exit 0"))) {
    child.wait();
  }
  ChildWithHeir(const ChildWithHeir&) = delete;
  ChildWithHeir& operator=(const ChildWithHeir&) = delete;
  ChildWithHeir(ChildWithHeir&&) = delete;
  ChildWithHeir& operator=(ChildWithHeir&&) = delete;
  ~ChildWithHeir() {
    if (heir_ > 0) {
      EXPECT_EQ(::kill(heir_, SIGKILL), 0);
    }
  }

  /// Keeps the id of the heir, which comes first in `output`, and returns the rest.
  std::string afterHeirIn(const std::string& output) {
    std::size_t length = 0;
    heir_ = std::stoi(output, &length);
    return output.substr(length + 1);
  }

  ChildProcess child;

 private:
  pid_t heir_ = -1;
};

/// Time that stands still, and counts how often it is asked for.
class CountingClock final : public MonotonicClock {
 public:
  mutable int looks = 0;
  [[nodiscard]] Seconds now() const override {
    ++looks;
    return Seconds{0};
  }
  void sleep(Seconds) override { FAIL() << "nobody has to wait"; }
};

constexpr std::size_t mebibyte = std::size_t{1} << 20;

TEST(ChildProcessTest, AnHeirOfTheStreamsIsWaitedForUntilTheDeadlineOnly) {
  ManualMonotonicClock clock;
  ChildWithHeir family{"exec sleep 600"};
  const Seconds deadline = clock.now() + Seconds{0.12};
  EXPECT_EQ(family.afterHeirIn(family.child.readStandardOutputUntil(deadline, clock, mebibyte)), "");
  EXPECT_THAT(clock.sleeps, ElementsAre(Seconds{0.05}, Seconds{0.05}, Seconds{0.05}));
  EXPECT_EQ(family.child.readStandardErrorUntil(deadline, clock, mebibyte), "");
  EXPECT_EQ(clock.sleeps.size(), 3U);
}

TEST(ChildProcessTest, WhatAnHeirWritesInTimeIsReadToTheEnd) {
  ManualMonotonicClock clock;
  ChildProcess child = startOrDie(shellPlan("{ sleep 0.01; printf late; printf error >&2; } & exit 0"));
  child.wait();
  clock.onSleep = [](Seconds) { std::this_thread::yield(); };
  EXPECT_EQ(child.readStandardOutputUntil(clock.now() + Seconds{1e9}, clock, mebibyte), "late");
  EXPECT_EQ(child.readStandardErrorUntil(clock.now() + Seconds{1e9}, clock, mebibyte), "error");
}

TEST(ChildProcessTest, AfterTheDeadlineAWriterWhoNeverPausesIsReadUpToTheLimitOnly) {
  CountingClock clock;
  ChildProcess child = startOrDie(shellPlan("head -c 60000 /dev/zero"));
  child.wait();
  EXPECT_EQ(child.readStandardOutputUntil(Seconds{0}, clock, 10).size(), 10U);
  EXPECT_EQ(clock.looks, 1) << "it was read on";
}

TEST(ChildProcessTest, AnInterruptionEndsTheReadingBeforeTheNextPause) {
  ManualMonotonicClock clock;
  ChildWithHeir family{"exec sleep 600"};
  const std::string output = family.child.readStandardOutputUntil(clock.now() + Seconds{10}, clock, mebibyte,
                                                                  [&] { return clock.sleeps.size() == 2; });
  EXPECT_EQ(family.afterHeirIn(output), "");
  EXPECT_EQ(clock.sleeps.size(), 2U);
}

TEST(ChildProcessTest, WhatTheChildWroteIsReadAlsoAfterTheDeadline) {
  ManualMonotonicClock clock;
  ChildProcess child = startOrDie(shellPlan("head -c 60000 /dev/zero; printf err >&2"));
  child.wait();
  EXPECT_EQ(child.readStandardOutputUntil(clock.now() - Seconds{1}, clock, mebibyte).size(), 60000U);
  EXPECT_EQ(child.readStandardErrorUntil(clock.now() - Seconds{1}, clock, 2), "er");
  EXPECT_EQ(child.readStandardErrorUntil(clock.now(), clock, mebibyte), "");
  EXPECT_TRUE(clock.sleeps.empty());
}

/// What `report` prints when run by a process whose real user is an ordinary one and whose effective user is
/// root.
std::string printedUnderOrdinaryRealUser(const std::function<std::string()>& report) {
  constexpr id_t nobody = 65534;
  auto ends = Pipe::open();
  if (!ends) return ends.error().description();
  const pid_t processID = fork();
  if (processID == 0) {
    const gid_t group = nobody;
    const bool changed =
        setgroups(1, &group) == 0 && setregid(nobody, nobody) == 0 && setreuid(nobody, 0) == 0;
    const std::string text = changed ? report() : "the ids could not be changed";
    _exit(write(ends->writeEnd.get(), text.data(), text.size()) < 0 ? 1 : 0);
  }
  ends->writeEnd.reset();
  std::string printed = readToEnd(ends->readEnd.get());
  waitpid(processID, nullptr, 0);
  return printed;
}

std::string idsOfChild(ChildIdentity identity) {
  std::string ids;
  for (const std::string option : {"-ru", "-u", "-rg", "-g", "-G"}) {
    ids += outputOf({.executable = "/usr/bin/id",
                     .arguments = {option},
                     .standardOutput = ChildStream::pipe,
                     .identity = identity});
  }
  return ids;
}

TEST(ChildProcessNeedsRootTest, ChildIsRootThroughAndThroughAndTheParentKeepsItsIds) {
  const std::string printed = printedUnderOrdinaryRealUser([] {
    return idsOfChild(ChildIdentity::realRoot) + "parent " + std::to_string(getuid()) + " " +
           std::to_string(geteuid()) + " " + std::to_string(getgid());
  });
  EXPECT_EQ(printed, "0\n0\n0\n0\n0\nparent 65534 0 65534");
}

TEST(ChildProcessNeedsRootTest, InheritedIdentityIsLeftAlone) {
  const std::string printed = printedUnderOrdinaryRealUser([] { return idsOfChild(ChildIdentity::inherit); });
  EXPECT_EQ(printed, "65534\n0\n65534\n65534\n65534\n");
}

TEST(ChildProcessNeedsRootTest, RootChildGetsTheSameStreamsDescriptorsSignalsAndEnvironment) {
  const FileDescriptor inheritable{fcntl(STDERR_FILENO, F_DUPFD, 57)};
  const auto previousHandler = std::signal(SIGTERM, SIG_IGN);
  ChildProcessPlan plan = shellPlan(
      "for n in 3 4 5 6 7 8 9 57; do [ -e /dev/fd/$n ] && printf '%s ' $n; done; "
      "printf %s \"$ONLY$HOME\"; kill -TERM $$; exit 9");
  plan.environment = {"ONLY=this"};
  plan.identity = ChildIdentity::realRoot;
  ChildProcess child = startOrDie(plan);
  std::signal(SIGTERM, previousHandler);
  EXPECT_EQ(child.readStandardOutput(), "this");
  EXPECT_EQ(child.readStandardError(), "");
  EXPECT_EQ(child.wait(), SIGTERM);
}

TEST(ChildProcessNeedsRootTest, StartErrorsAfterTheForkComeBack) {
  ChildProcessPlan plan = shellPlan("");
  plan.identity = ChildIdentity::realRoot;
  plan.executable = "/nonexistent/tool";
  EXPECT_EQ(ChildProcess::start(plan).error(), SystemError{ENOENT});
  plan.executable = "/dev/null";
  EXPECT_EQ(ChildProcess::start(plan).error(), SystemError{EACCES});
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a failed child was left behind";
}

TEST(ChildProcessNeedsRootTest, OrdinaryUserCannotStartARootChild) {
  const std::string printed = printedUnderOrdinaryRealUser([] {
    if (setuid(65534) != 0) return std::string{"still root"};
    const auto child = ChildProcess::start({.executable = "/bin/true", .identity = ChildIdentity::realRoot});
    return child ? std::string{"started"} : child.error().description();
  });
  EXPECT_EQ(printed, "Operation not permitted");
}

}  // namespace
}  // namespace quellin
