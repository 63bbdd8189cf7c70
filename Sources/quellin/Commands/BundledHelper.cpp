#include "quellin/Commands/BundledHelper.h"

#include <string>
#include <system_error>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {

std::filesystem::path bundledHelper(const std::optional<std::filesystem::path>& self) {
  if (!self) {
    throw Failure{ExitStatus::failed,
                  "the system does not say where this program lies, and only the tool that came with it is "
                  "installed. Copy that by hand to " +
                      std::string{ProTelemetryService::defaultHelperPath} +
                      ", owned by root and with mode 4755."};
  }
  const std::filesystem::path folder = self->parent_path();
  std::filesystem::path installed =
      folder.parent_path() / "libexec/quellin" / ProTelemetryService::bundledHelperName;
  std::error_code error;
  if (std::filesystem::exists(installed, error)) return installed;
  std::filesystem::path built = folder / ProTelemetryService::bundledHelperName;
  if (std::filesystem::exists(built, error)) return built;
  throw Failure{ExitStatus::failed,
                built.string() + " is not there. Build it with ./dev build, or keep it beside quellin."};
}

AdministratorPrompt installationPrompt(unsigned userID) {
  AdministratorPrompt prompt = AdministratorPrompt::native();
  if (userID == 0 && prompt.kind == AdministratorPrompt::Kind::policyKit) prompt.executable = "/usr/bin/env";
  return prompt;
}

}  // namespace quellin::cli
