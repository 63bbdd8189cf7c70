#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Services/HelperInstallation.h"

namespace quellin {

/// Temperatures through the privileged tool. A plain value; may be used from several threads.
class PrivilegedSMCHelperService {
 public:
  static constexpr std::string_view defaultHelperPath = installedHelperPath;  ///< where the tool is installed
  /// For the tool at an absolute path; whether it is there is asked at every call.
  explicit PrivilegedSMCHelperService(std::string helperPath = std::string{defaultHelperPath});

  [[nodiscard]] const std::string& helperPath() const { return helperPath_; }  ///< absolute, as given

  /// Whether the file at `helperPath` is executable by the current user.
  [[nodiscard]] bool isAvailable() const;

  /// The tool's temperature list in degrees Celsius; empty when it is missing, fails or answers with anything
  /// but such a list. Blocks until the tool has ended, without a limit.
  [[nodiscard]] std::vector<TemperatureSensor> readTemperatures() const;

 private:
  std::string helperPath_;
};

}  // namespace quellin
