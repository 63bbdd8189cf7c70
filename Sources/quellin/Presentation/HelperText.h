#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"

namespace quellin::cli {

/// What `status` means for the user, in sentences.
[[nodiscard]] std::string helperText(const HelperStatus& status);

/// Why the telemetry that was asked for is missing; no value when it is there, or still on its way.
/// `isNative` tells whether this machine is measured, `isInstalled` whether the tool is, `latest` is the
/// tool's last answer.
[[nodiscard]] std::optional<std::string> missingTelemetryText(
    bool isNative, bool isInstalled, const std::optional<ProTelemetrySnapshot>& latest);

}  // namespace quellin::cli
