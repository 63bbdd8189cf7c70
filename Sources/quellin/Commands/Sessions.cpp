#include <algorithm>

#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Support/ISO8601.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

using Ending = void (PowerSessionStore::*)(const std::shared_ptr<PowerSession>&, Instant);

// Nothing was measured behind the last sample of a session that its recorder left behind, and the time of a
// trace is not that of this machine.
Instant endOf(PowerSessionStore& store, const PowerSession& session, const Options& options) {
  const Recorder recorder = recorderOf(options);
  if (recorder.isAtWork && !recorder.isOverTrace.value_or(false)) return systemWallClock().now();
  Instant last = session.startedAt();
  try {
    for (auto samples = store.scan(session, SampleCursor::OnDamage::skip); samples && samples->next();)
      last = std::max(last, samples->columns().timestamp);
  } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch)
    // A session of which not all can be read must be ended, too.
  }
  return last;
}

ExitStatus endActive(const Invocation& invocation, Ending ending, const std::string& word) {
  SlowWork work{invocation, "ending the session"};
  const auto store = openRecordedStore(invocation.options);
  const auto session = store->activeSession();
  if (!session) {
    work.end();
    invocation.talk.say("nothing is being recorded. " + hintAt("record", invocation.options) +
                        " begins a session.");
    return ExitStatus::negative;
  }
  ((*store).*ending)(session, endOf(*store, *session, invocation.options));
  work.end();
  invocation.talk.say(word + " session " + shortID(*session) + ", " + printable(session->title()) + ".");
  return ExitStatus::ok;
}

}  // namespace

ExitStatus listSessions(const Invocation& invocation) {
  SlowWork work{invocation, "reading the store"};
  const auto store = openRecordedStore(invocation.options);
  const auto sessions = store->sessions();
  work.end();
  if (invocation.options.json) {
    std::vector<PowerSessionMetadataDTO> records;
    records.reserve(sessions.size());
    for (const auto& session : sessions) records.emplace_back(*session);
    writeJSON(invocation.out, records);
    return ExitStatus::ok;
  }
  if (sessions.empty()) {
    invocation.talk.say("there are no sessions in " + storePath(invocation.options).string() + " yet. " +
                        hintAt("record", invocation.options) + " makes one.");
    return ExitStatus::ok;
  }
  Table table{
      {{"ID"}, {"Started"}, {"Duration", Alignment::right}, {"Status"}, {"Title", Alignment::left, true}}};
  for (const auto& session : sessions) {
    const auto end = session->endedAt();
    table.add({shortID(*session), formatISO8601(session->startedAt()),
               end ? durationText(*end - session->startedAt()) : "-",
               std::string{rawValue(session->status())}, session->title()});
  }
  invocation.out.write(table.text(invocation.outTerminal.width));
  return ExitStatus::ok;
}

ExitStatus stopSession(const Invocation& invocation) {
  return endActive(invocation, &PowerSessionStore::stop, "stopped");
}

ExitStatus interruptSession(const Invocation& invocation) {
  return endActive(invocation, &PowerSessionStore::interrupt, "interrupted");
}

ExitStatus deleteSession(const Invocation& invocation) {
  SlowWork work{invocation, "deleting the session"};
  const auto store = openRecordedStore(invocation.options);
  const auto session = findSession(*store, invocation.options);
  if (session->status() == PowerSessionStatus::active && !invocation.options.force) {
    throw Failure{ExitStatus::failed, "session " + shortID(*session) + " is still active. End it with " +
                                          hintAt("stop", invocation.options) +
                                          " first, or add --force to delete it as it is."};
  }
  const std::string name = shortID(*session) + ", " + printable(session->title());
  store->remove(session);
  work.end();
  invocation.talk.say("deleted session " + name + ".");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
