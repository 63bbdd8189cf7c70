#pragma once

#include <map>
#include <optional>
#include <string>

namespace quellin::fake {

/// Counts the calls of every faked C function, and says which of them fail.
class CallLog {
 public:
  /// Every later call of `function` fails; with `code` where the function returns one, else with its kind of
  /// "none".
  void fail(const std::string& function, int code = 1);

  /// As `fail`, for the `nth` call from now only, counting from 1.
  void failNth(const std::string& function, int nth, int code = 1);

  /// Later calls of `function` succeed again.
  void mend(const std::string& function) { failures_.erase(function); }

  /// Called by every faked function on entry: counts the call, and returns the code it has to fail with.
  std::optional<int> enter(const std::string& function);

  [[nodiscard]] int count(const std::string& function) const;

  /// How often each function was called so far.
  [[nodiscard]] const std::map<std::string, int>& counts() const { return counts_; }

 private:
  struct Failure {
    int code = 0;
    std::optional<int> call;
  };

  std::map<std::string, int> counts_;
  std::map<std::string, Failure> failures_;
};

}  // namespace quellin::fake
