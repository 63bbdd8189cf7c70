#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quellin {

/// Where the installed tool lives: the folder for privileged tools and the tool's reverse-DNS label.
inline constexpr std::string_view installedHelperPath = "/Library/PrivilegedHelperTools/org.quellin.helper";

/// The two commands that make the folder of `destination` and copy `source` there, owned by root and `group`
/// with the set-user-ID bit, joined for a POSIX shell.
[[nodiscard]] std::string installCommand(std::string_view source, std::string_view destination,
                                         std::string_view group);

/// A program that asks for an administrator's password and runs a shell command as root.
struct AdministratorPrompt {
  /// Which program.
  enum class Kind {
    appleScript,  ///< osascript, "do shell script … with administrator privileges"
    policyKit,    ///< pkexec with a POSIX shell
  };

  Kind kind = Kind::appleScript;  ///< which program, and so its arguments
  std::string executable;         ///< absolute path of the program

  /// The arguments that make the program run `command`.
  [[nodiscard]] std::vector<std::string> arguments(std::string_view command) const;

  /// The group that root's programs belong to where this program is found: "wheel" on macOS, "root"
  /// elsewhere.
  [[nodiscard]] std::string_view rootGroup() const;

  /// The one of this host: /usr/bin/osascript on macOS, /usr/bin/pkexec elsewhere.
  [[nodiscard]] static AdministratorPrompt native();
};

}  // namespace quellin
