#include "QuellinCore/Support/SpawnAttributes.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quellin::detail {
namespace {

#if defined(__APPLE__)
constexpr int closeOthersFlag = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
constexpr int closeOthersFlag = 0;
#endif

int passStream(posix_spawn_file_actions_t& actions, int source, int stream) {
  if (source != LaunchRequest::inherited) return posix_spawn_file_actions_adddup2(&actions, source, stream);
#if defined(__APPLE__)
  // With close-on-exec as the default an inherited stream has to be named, and one that is closed must not
  // be.
  if (fcntl(stream, F_GETFD) != -1) return posix_spawn_file_actions_addinherit_np(&actions, stream);
#endif
  return 0;
}

int closeOthers(posix_spawn_file_actions_t& actions) {
#if defined(__APPLE__)
  static_cast<void>(actions);
  return 0;
#else
  return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#endif
}

int setSignals(posix_spawnattr_t& attributes, int extraFlags) {
  sigset_t every{};
  sigset_t none{};
  sigfillset(&every);
  sigemptyset(&none);
  if (const int error = posix_spawnattr_setsigdefault(&attributes, &every); error != 0) return error;
  if (const int error = posix_spawnattr_setsigmask(&attributes, &none); error != 0) return error;
  const int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | closeOthersFlag | extraFlags;
  return posix_spawnattr_setflags(&attributes, static_cast<short>(flags));
}

}  // namespace

SpawnAttributes::SpawnAttributes() : initialised_(posix_spawnattr_init(&attributes_)) {
  if (initialised_ != 0) return;
  initialised_ = posix_spawn_file_actions_init(&actions_);
  if (initialised_ != 0) posix_spawnattr_destroy(&attributes_);
}

SpawnAttributes::~SpawnAttributes() {
  if (initialised_ != 0) return;
  posix_spawn_file_actions_destroy(&actions_);
  posix_spawnattr_destroy(&attributes_);
}

std::expected<void, SystemError> SpawnAttributes::prepare(const LaunchRequest& request, int extraFlags) {
  int error = initialised_;
  if (error == 0) error = setSignals(attributes_, extraFlags);
  for (int stream = 0; error == 0 && stream <= STDERR_FILENO; ++stream) {
    error = passStream(actions_, request.streams.at(static_cast<std::size_t>(stream)), stream);
  }
  if (error == 0) error = closeOthers(actions_);
  if (error != 0) return std::unexpected(SystemError{error});
  return {};
}

int SpawnAttributes::spawn(pid_t& processID, const LaunchRequest& request) const {
  return posix_spawn(&processID, request.executable.c_str(), &actions_, &attributes_,
                     request.arguments.data(), request.environment.data());
}

}  // namespace quellin::detail
