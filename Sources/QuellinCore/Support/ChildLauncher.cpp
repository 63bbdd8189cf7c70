#include "QuellinCore/Support/ChildLauncher.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/Signals.h"
#include "QuellinCore/Support/SpawnAttributes.h"

namespace quellin::detail {
namespace {

constexpr int startFailureStatus = 127;

// On macOS a posix_spawn with this flag replaces the calling process, as exec does, and closes what exec
// would not.
#if defined(__APPLE__)
constexpr int replaceProcessFlag = POSIX_SPAWN_SETEXEC;
#else
constexpr int replaceProcessFlag = 0;
#endif

// From here to the end of the namespace: runs in the forked child, so only calls that are safe after a fork
// and no memory is allocated. Each returns whether it succeeded and leaves the reason in errno.

// The groups first: once the user id is gone for good, nobody could change them.
bool becomeRoot() {
  const gid_t rootGroup = 0;
  if (setgroups(1, &rootGroup) != 0 || setgid(0) != 0 || setuid(0) != 0) return false;
  if (getuid() == 0 && geteuid() == 0 && getgid() == 0 && getegid() == 0) return true;
  // No call has failed, so none has left a reason.
  errno = EPERM;
  return false;
}

#if defined(__APPLE__)

void execute(const LaunchRequest& request, const SpawnAttributes& attributes, int) {
  pid_t unused = 0;
  errno = attributes.spawn(unused, request);
}

#else

bool takeStreams(const LaunchRequest& request) {
  for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
    const int source = request.streams[static_cast<std::size_t>(stream)];
    if (source != LaunchRequest::inherited && dup2(source, stream) < 0) return false;
  }
  return true;
}

// The report's own descriptor closes with the exec; it moves to 3 so that everything above it can go.
bool keepOnlyStreamsAnd(int& report) {
  constexpr int lowest = STDERR_FILENO + 1;
  if (report != lowest && dup3(report, lowest, O_CLOEXEC) < 0) return false;
  report = lowest;
  closefrom(lowest + 1);
  return true;
}

// SIGKILL, SIGSTOP and the C library's own signals refuse, and need nothing.
void resetSignals() {
  for (int number = 1; number < NSIG; ++number) static_cast<void>(std::signal(number, SIG_DFL));
  sigset_t none{};
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void execute(const LaunchRequest& request, const SpawnAttributes&, int& report) {
  if (!takeStreams(request) || !keepOnlyStreamsAnd(report)) return;
  resetSignals();
  execve(request.executable.c_str(), request.arguments.data(), request.environment.data());
}

#endif

[[noreturn]] void runChildAsRoot(const LaunchRequest& request, const SpawnAttributes& attributes,
                                 int report) {
  if (becomeRoot()) execute(request, attributes, report);
  const int reason = errno;
  // A parent that is no longer there to read the reason has no use for it.
  [[maybe_unused]] const ssize_t written = write(report, &reason, sizeof reason);
  _exit(startFailureStatus);
}

}  // namespace

std::expected<pid_t, SystemError> spawnChild(const LaunchRequest& request) {
  SpawnAttributes attributes;
  if (auto prepared = attributes.prepare(request); !prepared) return std::unexpected(prepared.error());
  pid_t processID = -1;
  if (const int error = attributes.spawn(processID, request); error != 0) {
    return std::unexpected(SystemError{error});
  }
  return processID;
}

std::expected<pid_t, SystemError> forkChildAsRoot(const LaunchRequest& request) {
  SpawnAttributes attributes;
  if (auto prepared = attributes.prepare(request, replaceProcessFlag); !prepared) {
    return std::unexpected(prepared.error());
  }
  auto report = Pipe::open();
  if (!report) return std::unexpected(report.error());

  pid_t processID = -1;
  {
    const AllSignalsBlocked blocked;
    processID = fork();
    if (processID == 0) runChildAsRoot(request, attributes, report->writeEnd.get());
  }
  if (processID < 0) return std::unexpected(SystemError::last());

  report->writeEnd.reset();
  const std::string reason = readToEnd(report->readEnd.get());
  SystemError error;
  if (reason.size() != sizeof error.code) return processID;
  std::memcpy(&error.code, reason.data(), sizeof error.code);
  while (waitpid(processID, nullptr, 0) < 0 && errno == EINTR) {
  }
  return std::unexpected(error);
}

}  // namespace quellin::detail
