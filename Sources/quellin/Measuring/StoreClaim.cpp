#include "quellin/Measuring/StoreClaim.h"

#include <optional>
#include <string>
#include <utility>

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

std::string nameOf(const PowerSession& session) {
  return "session " + shortID(session) + ", " + printable(session.title()) + ",";
}

// A session over a trace began when the trace did, long before it was made.
bool isOverTrace(const PowerSession& session) {
  constexpr Seconds patience{60};
  const Seconds age = session.createdAt() - session.startedAt();
  return age > patience || age < -patience;
}

// Why what the host measures from now on cannot belong to the session, behind "and"; no value when it can.
std::optional<std::string> objection(const PowerSession& active, const Options& options,
                                     const MeasuredHost& host) {
  if (!host.player) {
    if (!isOverTrace(active)) return std::nullopt;
    return "was begun over a trace, but " + measuredName(options) + " is measured";
  }
  if (!isOverTrace(active)) return "was begun over no trace, as " + measuredName(options) + " is";
  const Instant now = host.wallClock->now();
  if (active.startedAt() <= now) return std::nullopt;
  return "began at " + formatISO8601(active.startedAt()) + ", but the trace " + measuredName(options) +
         " is of " + formatISO8601(now);
}

std::string remedy(const Options& options) {
  return ". " + hintAt("stop", options) + " ends that session; --store names another store.";
}

}  // namespace

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
    if (const auto reason = objection(*active, options, host)) {
      throw Failure{ExitStatus::failed, nameOf(*active) + " is active in " + place + " and " + *reason +
                                            ": they cannot be one session" + remedy(options)};
    }
  }
  return *std::move(lock);
}

}  // namespace quellin::cli
