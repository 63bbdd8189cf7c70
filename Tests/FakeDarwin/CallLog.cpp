#include "FakeDarwin/CallLog.h"

namespace quellin::fake {

void CallLog::fail(const std::string& function, int code) {
  failures_[function] = {.code = code, .call = std::nullopt};
}

void CallLog::failNth(const std::string& function, int nth, int code) {
  failures_[function] = {.code = code, .call = count(function) + nth};
}

std::optional<int> CallLog::enter(const std::string& function) {
  const int call = ++counts_[function];
  const auto failure = failures_.find(function);
  if (failure == failures_.end()) return std::nullopt;
  const bool fails = !failure->second.call || *failure->second.call == call;
  return fails ? std::optional{failure->second.code} : std::nullopt;
}

int CallLog::count(const std::string& function) const {
  const auto found = counts_.find(function);
  return found == counts_.end() ? 0 : found->second;
}

}  // namespace quellin::fake
