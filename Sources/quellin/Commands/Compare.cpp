#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>  // join, since version 11

#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/ComparisonReport.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

std::vector<ComparedSession> readSessions(PowerSessionStore& store,
                                          const std::vector<std::shared_ptr<PowerSession>>& sessions) {
  std::vector<ComparedSession> read;
  read.reserve(sessions.size());
  for (const auto& session : sessions) read.push_back(comparedSession(store, session));
  return read;
}

std::string hintAtReadings(const Options& options) {
  return hintAt("show ID", options) + " says which readings a session has.";
}

SessionComparison compareNamed(const Options& options) {
  const auto store = openRecordedStore(options);
  const SessionSides sides = findSides(*store, options);
  auto comparison =
      compareSessions(readSessions(*store, sides.a), readSessions(*store, sides.b), options.thresholdPercent);
  if (!comparison) {
    throw Failure{ExitStatus::failed, comparison.error() + ". " + hintAtReadings(options)};
  }
  return *std::move(comparison);
}

// What would let the threshold be applied: repeats, where one side is of a single session.
std::string remedy(const SessionComparison& comparison, const Options& options) {
  const bool areRepeats = comparison.a.size() > 1 && comparison.b.size() > 1;
  const bool wantsRepeats = !areRepeats && std::ranges::any_of(comparison.kinds, [](const auto& kind) {
    return isUse(kind.sourceKind) && !kind.exceedsThreshold;
  });
  if (!wantsRepeats) return hintAtReadings(options);
  return hintAt("run --repeat 5 -- COMMAND", options) + " makes repeats to compare.";
}

// A threshold that could not be applied must not pass for one that was kept.
ExitStatus judge(const Invocation& invocation, const SessionComparison& comparison) {
  if (!comparison.thresholdPercent) return ExitStatus::ok;
  if (comparison.exceedsThreshold)
    return *comparison.exceedsThreshold ? ExitStatus::negative : ExitStatus::ok;
  invocation.out.flush();
  const std::string uses = fmt::format("{}", fmt::join(unjudgedUses(comparison), ", "));
  invocation.talk.say("the threshold of " + fmt::format("{}", *comparison.thresholdPercent) +
                      " % cannot be applied to " +
                      (uses.empty() ? "any figure of what the machine uses" : printable(uses)) + ". " +
                      remedy(comparison, invocation.options));
  return ExitStatus::failed;
}

}  // namespace

ExitStatus compareRuns(const Invocation& invocation) {
  SlowWork work{invocation, "comparing the sessions"};
  const SessionComparison comparison = compareNamed(invocation.options);
  work.end();
  if (invocation.options.json) {
    writeJSON(invocation.out, comparison);
  } else {
    invocation.out.write(comparisonText(comparison, invocation.outTerminal.width));
  }
  return judge(invocation, comparison);
}

}  // namespace quellin::cli
