#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

/// An Objective-C run time with one class, NSProcessInfo, one instance of it, and autorelease pools.
class FakeObjectiveC {
 public:
  explicit FakeObjectiveC(Ledger& ledger) : ledger_(ledger) {}

  /// What the instance answers to each message; it responds to no other.
  std::map<std::string, long> answers{{"thermalState", 0}, {"isLowPowerModeEnabled", 0}};

  /// The run time's name of a message, the same for the same text.
  void* selector(const std::string& text);

  /// The class of that name; null when there is none.
  void* classNamed(const std::string& name);

  [[nodiscard]] bool respondsTo(const void* type, const void* selector) const;

  /// The answer to a message, a misuse unless the receiver responds to it and a pool is there.
  long answer(const void* receiver, const void* selector);

  void* pushPool();
  void popPool(const void* pool);

  /// The pools that were not popped.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  [[nodiscard]] static std::string textOf(const void* selector);

  Ledger& ledger_;
  std::set<std::string> selectors_;
  char class_ = 0;     // only the address counts
  char instance_ = 0;  // likewise
  std::vector<std::uintptr_t> pools_;
  std::uintptr_t lastPool_ = 0;
};

}  // namespace quellin::fake
