#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Support/Record.h"

namespace quellin {

/// What is known of the privileged tool: its own report, or the findings of a check on disk.
struct HelperStatus {
  bool isInstalled = false;
  bool isExecutable = false;
  bool isSetuidRoot = false;
  std::int64_t ownerUserID = 0;
  std::int64_t groupID = 0;
  std::optional<std::string> installedVersion;
  bool supportsProTelemetry = false;
  std::string path;  ///< the tool as it was named when it ran
  std::optional<std::string> error;

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
