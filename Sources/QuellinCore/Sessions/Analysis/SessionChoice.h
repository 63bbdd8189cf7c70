#pragma once

#include <cstddef>
#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// What a session can be called by.
struct SessionName {
  UUID id;            ///< its beginning is enough
  std::string title;  ///< as stored
  Instant madeAt;     ///< when its record was made
};

/// Why words do not say which sessions are meant.
struct SessionChoiceError {
  /// What is wrong with them.
  enum class Reason {
    nothingRecorded,  ///< there are no sessions at all
    unknown,          ///< no session is called so
    ambiguous,        ///< the beginning of the identifiers of several
    repeated,         ///< one session is named twice, so that it would count as two
  };

  Reason reason{};      ///< what is wrong
  std::string word;     ///< the word in question; of a session that is named twice its identifier
  std::size_t matches;  ///< how many sessions it names

  bool operator==(const SessionChoiceError&) const = default;
};

/// Places in the list of sessions.
using ChosenSessions = std::vector<std::size_t>;

/// Two sets of sessions to compare.
struct ChosenSides {
  ChosenSessions a;  ///< those named first
  ChosenSessions b;  ///< those that they are compared with

  bool operator==(const ChosenSides&) const = default;
};

/// The one session that `word` names: an identifier in either case, the beginning of one that no other
/// session shares, or "last" for the one that was made last: over a trace a session may have started long
/// before.
[[nodiscard]] std::expected<std::size_t, SessionChoiceError> chooseSession(std::span<const SessionName> names,
                                                                           std::string_view word);

/// The sessions that `words` name: all that have this title, or else what stands between its commas, each a
/// title or a word for one session. Exact names come first: a whole identifier, "last", then titles, then
/// beginnings of identifiers.
[[nodiscard]] std::expected<ChosenSessions, SessionChoiceError> chooseSessions(
    std::span<const SessionName> names, std::string_view words);

/// The sessions of both sides, none of which is on both.
[[nodiscard]] std::expected<ChosenSides, SessionChoiceError> chooseSides(std::span<const SessionName> names,
                                                                         std::string_view a,
                                                                         std::string_view b);

}  // namespace quellin
