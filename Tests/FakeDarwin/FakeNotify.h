#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

/// The notification states of the system, and the tokens that the code under test holds on them.
class FakeNotify {
 public:
  explicit FakeNotify(Ledger& ledger) : ledger_(ledger) {}

  /// A new token for a notification; the first is 0.
  int registerToken(const std::string& name);

  /// The state behind a token, 0 for a notification that has none; no value for a token that is not held.
  std::optional<std::uint64_t> state(int token);

  /// Gives a token back; says whether it was held.
  bool cancel(int token);

  /// The state of each notification.
  std::map<std::string, std::uint64_t> states;

  /// The tokens that were not cancelled.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  bool isHeld(int token);

  struct Token {
    std::string name;
    bool isHeld = true;
  };

  Ledger& ledger_;
  std::map<int, Token> tokens_;
};

}  // namespace quellin::fake
