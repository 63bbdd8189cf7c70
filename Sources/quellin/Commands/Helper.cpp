#include <filesystem>

#include "QuellinCore/Services/HelperInstallation.h"
#include "QuellinCore/Services/ProTelemetryService.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/Table.h"

namespace quellin::cli {
namespace {

// The tool lies beside this program where it is built, and in a folder for programs of programs where it is
// installed.
std::filesystem::path bundledHelper(const std::string& program) {
  std::error_code error;
  std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) self = std::filesystem::absolute(program);
  const std::filesystem::path folder = self.parent_path();
  const auto installed = folder.parent_path() / "libexec/quellin" / ProTelemetryService::bundledHelperName;
  return std::filesystem::exists(installed, error) ? installed
                                                   : folder / ProTelemetryService::bundledHelperName;
}

ExitStatus showStatus(const Invocation& invocation) {
  const HelperStatus status = ProTelemetryService{}.helperStatus();
  if (invocation.options.json) {
    writeJSON(invocation.out, status);
  } else {
    invocation.out.write(wrapped(printable(helperText(status)), "", invocation.outTerminal.width));
  }
  return status.isUsable() ? ExitStatus::ok : ExitStatus::negative;
}

ExitStatus install(const Invocation& invocation) {
  const std::string source = bundledHelper(invocation.program).string();
  if (!std::filesystem::exists(source)) {
    throw Failure{ExitStatus::failed,
                  source + " is not there. Build it with ./dev build, or keep it beside quellin."};
  }
  const std::string prompt = AdministratorPrompt::native().executable;
  if (!std::filesystem::exists(prompt)) {
    throw Failure{ExitStatus::failed, prompt +
                                          " is not there, which asks for an administrator's password. "
                                          "Install the package that brings it, and try again."};
  }
  invocation.talk.say("installing " + source + "; the system asks for an administrator's password.");
  const HelperInstallResult result = ProTelemetryService{}.installBundledHelper(source);
  invocation.talk.say(result.message);
  return result.succeeded ? ExitStatus::ok : ExitStatus::failed;
}

}  // namespace

ExitStatus helper(const Invocation& invocation) {
  return invocation.options.word == "install" ? install(invocation) : showStatus(invocation);
}

}  // namespace quellin::cli
