#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

/// Stands between the code under test and this host's dynamic loader, which really opens and looks up: notes
/// each call, keeps count of open handles, and hides single symbols.
class FakeLoader {
 public:
  struct Opening {
    std::optional<std::string> path;  ///< absent for the process itself
    int mode = 0;

    bool operator==(const Opening&) const = default;
  };

  explicit FakeLoader(Ledger& ledger) : ledger_(ledger) {}

  std::string executable = "/usr/bin/true";  ///< the path that the process was started by

  /// Later look-ups of `symbol` find nothing.
  void hide(const std::string& symbol) { hidden_.insert(symbol); }

  /// Later look-ups of `symbol` find it again.
  void show(const std::string& symbol) { hidden_.erase(symbol); }

  void noteOpening(Opening opening) { openings_.push_back(std::move(opening)); }
  void noteOpened(void* library) { ++open_[library]; }
  void noteClosed(void* library);
  /// Notes a look-up, a misuse unless the library is open; says whether the symbol may be found.
  bool noteLookUp(void* library, const std::string& symbol);

  /// Everything that was tried to be opened, in order.
  [[nodiscard]] const std::vector<Opening>& openings() const { return openings_; }

  /// Everything that was looked up, in order.
  [[nodiscard]] const std::vector<std::string>& lookUps() const { return lookUps_; }

  /// The handles that were not closed.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  Ledger& ledger_;
  std::set<std::string> hidden_;
  std::vector<Opening> openings_;
  std::vector<std::string> lookUps_;
  std::map<void*, int> open_;
};

}  // namespace quellin::fake
