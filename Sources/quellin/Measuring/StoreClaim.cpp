#include "quellin/Measuring/StoreClaim.h"

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

std::string remedy(const Options& options) {
  return ". " + hintAt("stop", options) + " ends that session; --store names another store.";
}

}  // namespace

RecorderLock claimStore(PowerSessionStore& store, const Options& options, const MeasuredHost& host) {
  auto lock = RecorderLock::take(storePath(options));
  const auto active = store.activeSession();
  if (!lock) {
    const std::string what = active ? nameOf(*active) : std::string{"a session"};
    throw Failure{ExitStatus::failed, what + " is being recorded by another program into " +
                                          storePath(options).string() + remedy(options)};
  }
  const Instant now = host.wallClock->now();
  if (active && host.player && active->startedAt() > now) {
    throw Failure{ExitStatus::failed,
                  nameOf(*active) + " is active in " + storePath(options).string() + " and began at " +
                      formatISO8601(active->startedAt()) + ", but the trace " + measuredName(options) +
                      " is of " + formatISO8601(now) + ": they cannot be one session" + remedy(options)};
  }
  return *std::move(lock);
}

}  // namespace quellin::cli
