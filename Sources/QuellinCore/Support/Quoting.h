#pragma once

#include <string>
#include <string_view>

namespace quellin {

/// `text` as one word of a POSIX shell: in single quotes, each single quote in it closed, escaped, reopened.
[[nodiscard]] std::string shellQuoted(std::string_view text);

/// `text` escaped for the inside of an AppleScript string literal: backslashes, then double quotes.
[[nodiscard]] std::string appleScriptEscaped(std::string_view text);

}  // namespace quellin
