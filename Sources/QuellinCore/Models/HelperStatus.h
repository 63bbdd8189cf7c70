#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What is known of the privileged tool: its own report, or the findings of a check on disk.
struct HelperStatus {
  bool isInstalled = false;      ///< a file is there
  bool isExecutable = false;     ///< by the user who asks
  bool isSetuidRoot = false;     ///< owned by user 0, with the set-user-ID bit
  std::int64_t ownerUserID = 0;  ///< of the file, -1 when not known; of the running tool by its own report
  std::int64_t groupID = 0;      ///< likewise
  std::optional<std::string> installedVersion;  ///< as the tool answered; absent when it did not
  bool supportsProTelemetry = false;            ///< as the tool answered; false when it did not
  std::string path;                             ///< the tool as it was named when it ran
  std::optional<std::string> error;             ///< why the tool could not be asked

  /// True when the tool can be run with root rights and supplies telemetry.
  [[nodiscard]] bool isUsable() const {
    return isInstalled && isExecutable && isSetuidRoot && ownerUserID == 0 && supportsProTelemetry;
  }

  static constexpr auto fields() {
    return std::tuple{Field{"isInstalled", &HelperStatus::isInstalled},
                      Field{"isExecutable", &HelperStatus::isExecutable},
                      Field{"isSetuidRoot", &HelperStatus::isSetuidRoot},
                      Field{"ownerUserID", &HelperStatus::ownerUserID},
                      Field{"groupID", &HelperStatus::groupID},
                      Field{"installedVersion", &HelperStatus::installedVersion},
                      Field{"supportsProTelemetry", &HelperStatus::supportsProTelemetry},
                      Field{"path", &HelperStatus::path},
                      Field{"error", &HelperStatus::error}};
  }

  bool operator==(const HelperStatus&) const = default;
};

}  // namespace quellin
