#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quellin::fake {

/// What the code under test did wrong with the platform's objects. The fixture fails a test that leaves an
/// entry.
class Ledger {
 public:
  /// Notes a misuse: an object released too often, used after its release, or used as what it is not.
  void violation(std::string what);

  /// The misuses so far; the ledger is empty of them afterwards.
  [[nodiscard]] std::vector<std::string> takeViolations() { return std::exchange(violations_, {}); }

 private:
  std::vector<std::string> violations_;
};

}  // namespace quellin::fake
