#include "QuellinCore/Sessions/Analysis/SessionChoice.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

using Reason = SessionChoiceError::Reason;

std::unexpected<SessionChoiceError> refused(Reason reason, std::string_view word, std::size_t matches = 0) {
  return std::unexpected(SessionChoiceError{.reason = reason, .word = std::string(word), .matches = matches});
}

// Not by the locale: identifiers have no letters but these.
std::string upperCased(std::string_view word) {
  std::string text(word);
  std::ranges::transform(text, text.begin(), [](char character) {
    return 'a' <= character && character <= 'f' ? static_cast<char>(character - 'a' + 'A') : character;
  });
  return text;
}

template <class Rule>
ChosenSessions allThat(std::span<const SessionName> names, const Rule& rule) {
  ChosenSessions found;
  for (std::size_t place = 0; place < names.size(); ++place) {
    if (rule(names[place])) found.push_back(place);
  }
  return found;
}

ChosenSessions titled(std::span<const SessionName> names, std::string_view title) {
  return allThat(names, [&](const SessionName& name) { return !title.empty() && name.title == title; });
}

bool isExact(std::string_view word) { return word == "last" || UUID::fromText(word).has_value(); }

// What one word names.
std::expected<ChosenSessions, SessionChoiceError> chooseByWord(std::span<const SessionName> names,
                                                               std::string_view word) {
  if (!isExact(word)) {
    if (auto found = titled(names, word); !found.empty()) return found;
  }
  const auto place = chooseSession(names, word);
  if (!place) return std::unexpected(place.error());
  return ChosenSessions{*place};
}

// The first session that is there twice.
std::expected<void, SessionChoiceError> refuseRepeated(std::span<const SessionName> names,
                                                       ChosenSessions chosen) {
  std::ranges::sort(chosen);
  const auto twice = std::ranges::adjacent_find(chosen);
  if (twice == chosen.end()) return {};
  return refused(Reason::repeated, names[*twice].id.text(), 1);
}

}  // namespace

std::expected<std::size_t, SessionChoiceError> chooseSession(std::span<const SessionName> names,
                                                             std::string_view word) {
  if (names.empty()) return refused(Reason::nothingRecorded, word);
  if (word == "last")
    return static_cast<std::size_t>(std::ranges::max_element(names, {}, &SessionName::madeAt) -
                                    names.begin());
  const std::string beginning = upperCased(word);
  // Every identifier begins with nothing, but nobody means one by it.
  const ChosenSessions found = allThat(names, [&](const SessionName& name) {
    return !beginning.empty() && name.id.text().starts_with(beginning);
  });
  if (found.empty()) return refused(Reason::unknown, word);
  if (found.size() > 1) return refused(Reason::ambiguous, word, found.size());
  return found.front();
}

std::expected<ChosenSessions, SessionChoiceError> chooseSessions(std::span<const SessionName> names,
                                                                 std::string_view words) {
  if (auto found = titled(names, words); !found.empty() && !isExact(words)) return found;
  ChosenSessions chosen;
  for (std::size_t begin = 0; begin <= words.size();) {
    const std::size_t end = std::min(words.find(',', begin), words.size());
    const auto found = chooseByWord(names, trimmed(words.substr(begin, end - begin)));
    if (!found) return found;
    chosen.insert(chosen.end(), found->begin(), found->end());
    begin = end + 1;
  }
  if (auto once = refuseRepeated(names, chosen); !once) return std::unexpected(std::move(once).error());
  return chosen;
}

std::expected<ChosenSides, SessionChoiceError> chooseSides(std::span<const SessionName> names,
                                                           std::string_view a, std::string_view b) {
  auto chosenA = chooseSessions(names, a);
  if (!chosenA) return std::unexpected(std::move(chosenA).error());
  auto chosenB = chooseSessions(names, b);
  if (!chosenB) return std::unexpected(std::move(chosenB).error());
  ChosenSessions both = *chosenA;
  both.insert(both.end(), chosenB->begin(), chosenB->end());
  if (auto once = refuseRepeated(names, both); !once) return std::unexpected(std::move(once).error());
  return ChosenSides{.a = *std::move(chosenA), .b = *std::move(chosenB)};
}

}  // namespace quellin
