#include "QuellinCore/Services/HelperInstallation.h"

namespace quellin {
namespace {

std::string_view folderOf(std::string_view path) {
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string replacing(std::string_view text, char character, std::string_view replacement) {
  std::string result;
  result.reserve(text.size());
  for (const char current : text) {
    if (current == character) {
      result += replacement;
    } else {
      result += current;
    }
  }
  return result;
}

}  // namespace

std::string shellQuoted(std::string_view text) { return "'" + replacing(text, '\'', R"('\'')") + "'"; }

std::string appleScriptEscaped(std::string_view text) {
  return replacing(replacing(text, '\\', R"(\\)"), '"', R"(\")");
}

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
