#include "QuellinCore/Support/ChildProcess.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QuellinCore/Support/ChildLauncher.h"
#include "QuellinCore/Support/OwnEnvironment.h"

namespace quellin {
namespace {

using detail::CStringVector;
using detail::LaunchRequest;

constexpr SystemError invalidArgument{EINVAL};

// A NUL inside a text would silently cut it short.
bool holdsNUL(const std::string& text) { return text.find('\0') != std::string::npos; }

void append(CStringVector& pointers, std::vector<std::string>& texts) {
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
}

CStringVector argumentsOf(ChildProcessPlan& plan) {
  CStringVector pointers{plan.executable.data()};
  append(pointers, plan.arguments);
  return pointers;
}

CStringVector environmentOf(ChildProcessPlan& plan) {
  CStringVector entries;
  if (plan.environment) {
    append(entries, *plan.environment);
    return entries;
  }
  for (char** entry = ownEnvironment(); entry != nullptr && *entry != nullptr; ++entry) {
    entries.push_back(*entry);
  }
  entries.push_back(nullptr);
  return entries;
}

bool isWellFormed(const ChildProcessPlan& plan) {
  return plan.executable.starts_with('/') && !holdsNUL(plan.executable) &&
         plan.standardInput != ChildStream::pipe && std::ranges::none_of(plan.arguments, holdsNUL) &&
         (!plan.environment || std::ranges::none_of(*plan.environment, holdsNUL));
}

/// One stream of the child: the end it gets, and the end that stays here.
struct StreamEnds {
  FileDescriptor child;
  FileDescriptor parent;

  [[nodiscard]] static std::expected<StreamEnds, SystemError> open(ChildStream stream) {
    if (stream == ChildStream::inherit) return StreamEnds{};
    if (stream == ChildStream::null) {
      auto null = openDescriptor("/dev/null", O_RDWR);
      if (!null) return std::unexpected(null.error());
      return StreamEnds{.child = std::move(*null), .parent = FileDescriptor{}};
    }
    auto pipe = Pipe::open();
    if (!pipe) return std::unexpected(pipe.error());
    return StreamEnds{.child = std::move(pipe->writeEnd), .parent = std::move(pipe->readEnd)};
  }
};

// What is there already is read even when the time is over, but of a writer who never pauses only `limit`
// bytes.
std::string readUntil(const FileDescriptor& stream, Seconds deadline, MonotonicClock& clock,
                      std::size_t limit, const std::function<bool()>& isInterrupted) {
  std::string bytes;
  if (!stream || fcntl(stream.get(), F_SETFL, O_NONBLOCK) != 0) return bytes;
  for (;;) {
    const ReadStep step = readOnce(stream.get(), bytes, limit);
    const bool isIdle = step == ReadStep::nothingYet;
    const bool isOver = clock.now() >= deadline || (isInterrupted && isInterrupted());
    if (step == ReadStep::end || (isOver && (isIdle || bytes.size() >= limit))) return bytes;
    if (isIdle) clock.sleep(ChildProcess::pollInterval);
  }
}

std::int32_t statusOf(int waitStatus) {
  return WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace

std::expected<ChildProcess, SystemError> ChildProcess::start(ChildProcessPlan plan) {
  if (!isWellFormed(plan)) return std::unexpected(invalidArgument);
  auto input = StreamEnds::open(plan.standardInput);
  if (!input) return std::unexpected(input.error());
  auto output = StreamEnds::open(plan.standardOutput);
  if (!output) return std::unexpected(output.error());
  auto error = StreamEnds::open(plan.standardError);
  if (!error) return std::unexpected(error.error());

  const LaunchRequest request{.executable = plan.executable,
                              .arguments = argumentsOf(plan),
                              .environment = environmentOf(plan),
                              .streams = {input->child.get(), output->child.get(), error->child.get()}};
  const auto processID = plan.identity == ChildIdentity::realRoot ? detail::forkChildAsRoot(request)
                                                                  : detail::spawnChild(request);
  if (!processID) return std::unexpected(processID.error());
  return ChildProcess{*processID, std::move(output->parent), std::move(error->parent)};
}

ChildProcess::ChildProcess(pid_t processID, FileDescriptor standardOutput, FileDescriptor standardError)
    : processID_(processID),
      standardOutput_(std::move(standardOutput)),
      standardError_(std::move(standardError)) {}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : processID_(std::exchange(other.processID_, -1)),
      terminationStatus_(other.terminationStatus_),
      standardOutput_(std::move(other.standardOutput_)),
      standardError_(std::move(other.standardError_)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  std::swap(processID_, other.processID_);
  std::swap(terminationStatus_, other.terminationStatus_);
  std::swap(standardOutput_, other.standardOutput_);
  std::swap(standardError_, other.standardError_);
  return *this;
}

ChildProcess::~ChildProcess() {
  kill();
  if (processID_ > 0) wait();
}

bool ChildProcess::isRunning() { return !collect(WNOHANG); }

void ChildProcess::terminate() { signal(SIGTERM); }

void ChildProcess::kill() { signal(SIGKILL); }

std::int32_t ChildProcess::wait() {
  collect(0);
  return terminationStatus_.value_or(unknownStatus);
}

bool ChildProcess::waitUntil(Seconds deadline, MonotonicClock& clock,
                             const std::function<bool()>& isInterrupted) {
  while (isRunning() && clock.now() < deadline && !(isInterrupted && isInterrupted())) {
    clock.sleep(pollInterval);
  }
  return !isRunning();
}

std::string ChildProcess::readStandardOutput(std::size_t limit) {
  const FileDescriptor stream = std::move(standardOutput_);
  return stream ? readToEnd(stream.get(), limit) : std::string{};
}

std::string ChildProcess::readStandardError(std::size_t limit) {
  const FileDescriptor stream = std::move(standardError_);
  return stream ? readToEnd(stream.get(), limit) : std::string{};
}

std::string ChildProcess::readStandardOutputUntil(Seconds deadline, MonotonicClock& clock, std::size_t limit,
                                                  const std::function<bool()>& isInterrupted) {
  return readUntil(FileDescriptor{std::move(standardOutput_)}, deadline, clock, limit, isInterrupted);
}

std::string ChildProcess::readStandardErrorUntil(Seconds deadline, MonotonicClock& clock, std::size_t limit,
                                                 const std::function<bool()>& isInterrupted) {
  return readUntil(FileDescriptor{std::move(standardError_)}, deadline, clock, limit, isInterrupted);
}

// Returns whether the child has ended. Its process id stays taken until then, so a signal cannot hit a
// stranger.
bool ChildProcess::collect(int options) {
  if (terminationStatus_ || processID_ <= 0) return true;
  int waitStatus = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(processID_, &waitStatus, options);
  } while (ended < 0 && errno == EINTR);
  if (ended == 0) return false;
  terminationStatus_ = ended == processID_ ? statusOf(waitStatus) : unknownStatus;
  return true;
}

void ChildProcess::signal(int number) {
  if (isRunning()) ::kill(processID_, number);
}

}  // namespace quellin
