#include "quellin/Storage/SessionLookup.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

std::string upperCased(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
  return text;
}

}  // namespace

std::shared_ptr<PowerSession> findSession(PowerSessionStore& store, const Options& options) {
  const std::string& name = options.word;
  std::vector<std::shared_ptr<PowerSession>> found = store.sessions();
  if (found.empty())
    throw Failure{ExitStatus::noSession,
                  "there are no sessions yet. " + hintAt("record", options) + " makes one."};
  if (name == "last") return *std::ranges::max_element(found, {}, &PowerSession::createdAt);
  const std::string beginning = upperCased(name);
  // Every identifier begins with nothing, but nobody means one by it.
  std::erase_if(found, [&](const auto& session) {
    return beginning.empty() || !session->id().text().starts_with(beginning);
  });
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    throw Failure{ExitStatus::noSession,
                  "there is no session '" + name + "'. " + hintAt("sessions", options) + " lists them."};
  }
  throw Failure{ExitStatus::usage, "'" + name + "' is the beginning of " + std::to_string(found.size()) +
                                       " sessions. Give more of the identifier."};
}

std::string shortID(const PowerSession& session) { return session.id().text().substr(0, 8); }

}  // namespace quellin::cli
