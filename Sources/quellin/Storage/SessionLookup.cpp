#include "quellin/Storage/SessionLookup.h"

#include "QuellinCore/Sessions/Analysis/SessionChoice.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

using Sessions = std::vector<std::shared_ptr<PowerSession>>;

std::vector<SessionName> namesOf(const Sessions& sessions) {
  std::vector<SessionName> names;
  names.reserve(sessions.size());
  for (const auto& session : sessions) {
    names.push_back({.id = session->id(), .title = session->title(), .madeAt = session->createdAt()});
  }
  return names;
}

Failure failureOf(const SessionChoiceError& error, const Options& options) {
  switch (error.reason) {
    case SessionChoiceError::Reason::nothingRecorded:
      return {ExitStatus::noSession,
              "there are no sessions yet. " + hintAt("record", options) + " makes one."};
    case SessionChoiceError::Reason::unknown:
      return {ExitStatus::noSession, "there is no session '" + printable(error.word) + "'. " +
                                         hintAt("sessions", options) + " lists them."};
    case SessionChoiceError::Reason::ambiguous:
      return {ExitStatus::usage, "'" + printable(error.word) + "' is the beginning of " +
                                     std::to_string(error.matches) +
                                     " sessions. Give more of the identifier."};
    case SessionChoiceError::Reason::repeated:
      break;
  }
  return {ExitStatus::usage,
          "session " + error.word + " is named twice. A session is compared with others, and counts once."};
}

Sessions pick(const Sessions& sessions, const ChosenSessions& places) {
  Sessions picked;
  picked.reserve(places.size());
  for (const std::size_t place : places) picked.push_back(sessions.at(place));
  return picked;
}

}  // namespace

std::shared_ptr<PowerSession> findSession(PowerSessionStore& store, const Options& options) {
  const Sessions sessions = store.sessions();
  const auto chosen = chooseSession(namesOf(sessions), options.word);
  if (!chosen) throw failureOf(chosen.error(), options);
  return sessions.at(*chosen);
}

SessionSides findSides(PowerSessionStore& store, const Options& options) {
  const Sessions sessions = store.sessions();
  const auto chosen = chooseSides(namesOf(sessions), options.word, options.other);
  if (!chosen) throw failureOf(chosen.error(), options);
  return {.a = pick(sessions, chosen->a), .b = pick(sessions, chosen->b)};
}

std::string shortID(const UUID& id) { return id.text().substr(0, 8); }

std::string shortID(const PowerSession& session) { return shortID(session.id()); }

std::string nameOf(const PowerSession& session) {
  return "session " + shortID(session) + ", " + printable(session.title()) + ",";
}

}  // namespace quellin::cli
