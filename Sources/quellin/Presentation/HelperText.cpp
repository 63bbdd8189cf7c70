#include "quellin/Presentation/HelperText.h"

#include "QuellinCore/Services/HelperInstallation.h"

namespace quellin::cli {
namespace {

// A tool that fails silently gives an empty reason.
std::string reasonIn(const ProTelemetrySnapshot& snapshot) {
  const std::string given = snapshot.error.value_or("");
  return given.empty() ? "has none" : "answered \"" + given + "\"";
}

}  // namespace

std::string helperText(const HelperStatus& status) {
  std::string text = status.path + ": ";
  if (!status.isInstalled) {
    text +=
        "not installed. 'quellin helper install' installs it; it is needed only for what root alone may "
        "read.";
  } else if (!status.isUsable()) {
    text += "installed, but not usable";
    text += status.isSetuidRoot && status.ownerUserID == 0
                ? ""
                : ": it is not owned by root with the set-user-ID bit";
    text += ". 'quellin helper install' installs it anew.";
  } else {
    text += "version " + status.installedVersion.value_or("unknown") + ", usable.";
  }
  // The client's own text about a missing tool says the same once more.
  if (status.error && status.isInstalled) text += " " + *status.error;
  return text;
}

std::optional<std::string> missingTelemetryText(bool isNative, bool isInstalled,
                                                const std::optional<ProTelemetrySnapshot>& latest) {
  if (!isNative) return "--telemetry has no effect: the installed tool measures this machine only.";
  if (!latest || latest->isAvailable) return std::nullopt;
  if (!isInstalled) {
    return "no telemetry: there is no tool at " + std::string{installedHelperPath} +
           ". 'quellin helper install' installs it; the recording goes on without.";
  }
  return "no telemetry: the tool, which asks powermetrics of macOS, " + reasonIn(*latest) +
         ". 'quellin helper status' says more; the recording goes on without.";
}

}  // namespace quellin::cli
