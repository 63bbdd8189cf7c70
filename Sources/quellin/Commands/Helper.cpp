#include <filesystem>

#include "QuellinCore/Platform/OwnExecutable.h"
#include "QuellinCore/Services/ProTelemetryService.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Commands/BundledHelper.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

ExitStatus showStatus(const Invocation& invocation) {
  const HelperStatus status = invocation.tool.helperStatus();
  if (invocation.options.json) {
    writeJSON(invocation.out, status);
  } else {
    invocation.out.write(wrapped(printable(helperText(status)), "", invocation.outTerminal.width));
  }
  return status.isUsable() ? ExitStatus::ok : ExitStatus::negative;
}

ExitStatus install(const Invocation& invocation) {
  const std::string source = bundledHelper(ownExecutablePath()).string();
  const std::string& prompt = invocation.tool.promptExecutable();
  if (!std::filesystem::exists(prompt)) {
    throw Failure{ExitStatus::failed, prompt +
                                          " is not there, which asks for an administrator's password. "
                                          "Install the package that brings it, or run this command as root."};
  }
  invocation.talk.say("installing " + source + "; the system may ask for an administrator's password.");
  const HelperInstallResult result = invocation.tool.installBundledHelper(source);
  invocation.talk.say(result.message);
  return result.succeeded ? ExitStatus::ok : ExitStatus::failed;
}

}  // namespace

ExitStatus helper(const Invocation& invocation) {
  return invocation.options.word == "install" ? install(invocation) : showStatus(invocation);
}

}  // namespace quellin::cli
