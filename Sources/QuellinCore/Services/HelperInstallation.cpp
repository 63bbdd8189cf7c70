#include "QuellinCore/Services/HelperInstallation.h"

#include "QuellinCore/Support/Quoting.h"

namespace quellin {
namespace {

std::string_view folderOf(std::string_view path) {
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

std::string installCommand(std::string_view source, std::string_view destination, std::string_view group) {
  return "/usr/bin/install -d -m 755 " + shellQuoted(folderOf(destination)) +
         " && /usr/bin/install -o root -g " + std::string{group} + " -m 4755 " + shellQuoted(source) + " " +
         shellQuoted(destination);
}

std::vector<std::string> AdministratorPrompt::arguments(std::string_view command) const {
  if (kind == Kind::policyKit) return {"/bin/sh", "-c", std::string{command}};
  return {"-e", "do shell script \"" + appleScriptEscaped(command) + "\" with administrator privileges"};
}

std::string_view AdministratorPrompt::rootGroup() const {
  return kind == Kind::appleScript ? "wheel" : "root";
}

AdministratorPrompt AdministratorPrompt::native() {
#if defined(__APPLE__)
  return {Kind::appleScript, "/usr/bin/osascript"};
#else
  return {Kind::policyKit, "/usr/bin/pkexec"};
#endif
}

}  // namespace quellin
