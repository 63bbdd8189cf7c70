#pragma once

#include <memory>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// The session that the word of the options names: an identifier, the beginning of one that no other session
/// shares, or "last" for the one that was recorded last: over a trace a session may have started long before.
/// Throws `Failure`: noSession when there is none, usage when there are several.
[[nodiscard]] std::shared_ptr<PowerSession> findSession(PowerSessionStore& store, const Options& options);

/// Sessions to compare.
struct SessionSides {
  std::vector<std::shared_ptr<PowerSession>> a;
  std::vector<std::shared_ptr<PowerSession>> b;
};

/// The sessions that the two words of the options name, by title, too; see `chooseSides`. Throws `Failure` as
/// `findSession`, and usage when a session is named twice.
[[nodiscard]] SessionSides findSides(PowerSessionStore& store, const Options& options);

/// As much of a session's identifier as people need to see.
[[nodiscard]] std::string shortID(const UUID& id);

/// The same of a session.
[[nodiscard]] std::string shortID(const PowerSession& session);

/// What a session is called within a sentence that goes on behind it: "session 3F2A1B09, Build,".
[[nodiscard]] std::string nameOf(const PowerSession& session);

}  // namespace quellin::cli
