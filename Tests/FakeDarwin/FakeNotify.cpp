#include "FakeDarwin/FakeNotify.h"

namespace quellin::fake {

int FakeNotify::registerToken(const std::string& name) {
  const int token = static_cast<int>(tokens_.size());
  tokens_.emplace(token, Token{.name = name});
  return token;
}

std::optional<std::uint64_t> FakeNotify::state(int token) {
  if (!isHeld(token)) return std::nullopt;
  return states[tokens_.at(token).name];
}

bool FakeNotify::cancel(int token) {
  if (!isHeld(token)) return false;
  tokens_.at(token).isHeld = false;
  return true;
}

std::vector<std::string> FakeNotify::leaks() const {
  std::vector<std::string> leaked;
  for (const auto& [number, token] : tokens_) {
    if (token.isHeld) leaked.push_back("token not cancelled: " + token.name);
  }
  return leaked;
}

bool FakeNotify::isHeld(int token) {
  const auto found = tokens_.find(token);
  const bool held = found != tokens_.end() && found->second.isHeld;
  if (!held) ledger_.violation("a token that is not registered");
  return held;
}

}  // namespace quellin::fake
