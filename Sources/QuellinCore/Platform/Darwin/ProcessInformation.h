#pragma once

#include <cstdint>
#include <optional>

namespace quellin::darwin {

/// The process's information object, asked through the C interface of the Objective-C run time. Lives within
/// one function: it holds an autorelease pool, which belongs to the thread and to the order of calls.
class ProcessInformation {
 public:
  ProcessInformation();
  ProcessInformation(const ProcessInformation&) = delete;
  ProcessInformation& operator=(const ProcessInformation&) = delete;
  ProcessInformation(ProcessInformation&&) = delete;
  ProcessInformation& operator=(ProcessInformation&&) = delete;
  ~ProcessInformation();

  /// 0 nominal to 3 critical, as the system says it. Absent where the system has no such information.
  [[nodiscard]] std::optional<std::int64_t> thermalState() const;

  /// Whether low-power mode is on. Absent where the system has no such information.
  [[nodiscard]] std::optional<bool> isLowPowerModeEnabled() const;

 private:
  template <class Result>
  std::optional<Result> ask(const char* question) const;

  void* pool_;
};

}  // namespace quellin::darwin
