#include "quellin/Measuring/StoreClaim.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/JSON/ShortestDecimal.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

// Where no word tells: a session over a trace began when the trace did, which is mostly long before it was
// made. One that was captured just now passes for a machine.
bool isProbablyOverTrace(const PowerSession& session) {
  constexpr Seconds patience{60};
  const Seconds age = session.createdAt() - session.startedAt();
  return age > patience || age < -patience;
}

constexpr std::string_view machineWord = "machine";
constexpr std::string_view treeWord = "tree ";    // and where it is
constexpr std::string_view traceWord = "trace ";  // and when it was begun

// What is recorded, for a recorder that goes on when this one was killed.
std::string wordFor(const Options& options, const MeasuredHost& host) {
  if (host.isNative) return std::string{machineWord};
  if (host.player) {
    return std::string{traceWord}.append(ShortestDecimal{host.player->header().createdAt}.text());
  }
  std::error_code unknown;
  const std::filesystem::path place = std::filesystem::weakly_canonical(options.source, unknown);
  return std::string{treeWord} + (unknown ? options.source : place.string());
}

// Whether the session with which `word` was left is over a trace; no value when it does not tell.
std::optional<bool> tellsOfTrace(const std::optional<std::string>& word) {
  if (word && word->starts_with(traceWord)) return true;
  if (word && (word == machineWord || word->starts_with(treeWord))) return false;
  return std::nullopt;
}

// Why what the host measures from now on cannot belong to the session, behind "and"; no value when it can.
std::optional<std::string> objection(const PowerSession& active, const std::optional<std::string>& wordBefore,
                                     const Options& options, const MeasuredHost& host) {
  const std::string isMeasured = ", but " + measuredName(options) + " is measured";
  const bool isTrace = host.player != nullptr;
  const std::optional<bool> wasToldOfTrace = tellsOfTrace(wordBefore);
  const bool wasTrace = wasToldOfTrace.value_or(isProbablyOverTrace(active));
  if (wasTrace && !isTrace) return "was begun over a trace" + isMeasured;
  if (isTrace && !wasTrace) return "was begun over no trace, as " + measuredName(options) + " is";
  if (wasToldOfTrace && wordBefore != wordFor(options, host)) {
    return std::string{"was begun over another "} + (isTrace ? "trace" : "machine") + isMeasured;
  }
  const Instant now = host.wallClock->now();
  if (!isTrace || active.startedAt() <= now) return std::nullopt;
  return "began at " + formatISO8601(active.startedAt()) + ", but the trace " + measuredName(options) +
         " is of " + formatISO8601(now);
}

std::string remedy(const Options& options) {
  return ". " + hintAt("stop", options) + " ends that session; --store names another store.";
}

}  // namespace

Recorder recorderOf(const Options& options) {
  const RecorderLock::Sight sight = RecorderLock::look(storePath(options));
  return {.isAtWork = sight.isHeld, .isOverTrace = tellsOfTrace(sight.word)};
}

RecorderLock claimStore(PowerSessionStore& store, const Options& options, const MeasuredHost& host) {
  auto lock = RecorderLock::take(storePath(options));
  const auto active = store.activeSession();
  const std::string place = storePath(options).string();
  if (!lock) {
    const std::string what = active ? nameOf(*active) : std::string{"a session"};
    throw Failure{ExitStatus::failed,
                  what + " is being recorded by another program into " + place + remedy(options)};
  }
  if (active) {
    if (const auto reason = objection(*active, lock->wordBefore(), options, host)) {
      throw Failure{ExitStatus::failed, nameOf(*active) + " is active in " + place + " and " + *reason +
                                            ": they cannot be one session" + remedy(options)};
    }
  }
  lock->leaveWord(wordFor(options, host));
  return *std::move(lock);
}

void forgetClaim(RecorderLock& lock, const PowerSessionRecorder& recorder) {
  // What the recorder holds on to may have ended here, without that being stored.
  if (!recorder.activeSession() && !recorder.store()->activeSession()) lock.forgetWord();
}

}  // namespace quellin::cli
