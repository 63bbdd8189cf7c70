#include "quellin/Storage/StoreHealth.h"

#include <system_error>

#include "quellin/CommandLine/Hint.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {
namespace {

std::int64_t sizeOf(const std::filesystem::path& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

StoreState stateAfter(StoreError::Kind kind) {
  switch (kind) {
    case StoreError::Kind::damaged:
      return StoreState::damaged;
    case StoreError::Kind::notAStore:
      return StoreState::notAStore;
    case StoreError::Kind::tooNew:
      return StoreState::tooNew;
    case StoreError::Kind::locked:
      return StoreState::locked;
    default:
      return StoreState::unusable;
  }
}

void examineSessions(StoreHealth& health, const Options& options, Examination examination,
                     const std::function<void(std::int64_t, std::int64_t)>& progress) {
  const auto store = openStore(options);
  const auto sessions = store->sessions();
  health.state = StoreState::whole;
  health.sessions = static_cast<std::int64_t>(sessions.size());
  if (examination == Examination::brief) return;
  std::int64_t read = 0;
  std::int64_t damaged = 0;
  for (const auto& session : sessions) {
    progress(read++, health.sessions);
    const SessionCheck check = store->check(*session);
    health.samples += check.sampleCount;
    if (!check.isWhole()) ++damaged;
  }
  if (damaged == 0) return;
  health.state = StoreState::damaged;
  health.isWhole = false;
  health.problem = std::to_string(damaged) +
                   " of the sessions are damaged in part. Export what can be read with " +
                   hintAt("export ID", options) + ".";
}

}  // namespace

StoreHealth examineStore(const Options& options, Examination examination,
                         const std::function<void(std::int64_t, std::int64_t)>& progress) {
  StoreHealth health{.path = storePath(options).string(), .problem = std::nullopt};
  std::error_code error;
  health.exists = std::filesystem::exists(health.path, error);
  if (!health.exists || isStoreToBeMade(health.path)) return health;
  for (const char* const suffix : {"", "-wal", "-shm"}) health.bytes += sizeOf(health.path + suffix);
  try {
    examineSessions(health, options, examination, progress);
  } catch (const StoreError& failure) {
    health.state = stateAfter(failure.kind());
    health.isWhole = false;
    health.problem = failure.what();
  }
  return health;
}

}  // namespace quellin::cli
