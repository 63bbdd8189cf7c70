#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quellin::cli {

/// Looks up a variable of the environment; no value when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

/// The environment of this process.
[[nodiscard]] Environment processEnvironment();

/// The ways in which text can stand out.
enum class Style { plain, strong, good, warning, bad, faint };

/// What can be done where a descriptor leads.
struct Terminal {
  bool isTerminal = false;
  bool isDumb = false;      ///< it cannot do more than append
  bool hasColours = false;  ///< false with NO_COLOR, and where TERM is "dumb" or not set
  std::optional<std::size_t>
      width;  ///< columns: COLUMNS, else the terminal's own; absent in a pipe or a file
  std::optional<std::size_t> height =
      {};  ///< rows: LINES, else the terminal's own; absent in a pipe or a file

  /// Whose size counts; absent where COLUMNS says it, and in a pipe or a file.
  std::optional<int> sizedBy = {};

  /// The columns right now: a window may have been pulled since.
  [[nodiscard]] std::optional<std::size_t> presentWidth() const;

  /// The terminal, or what takes its place, behind `descriptor`.
  [[nodiscard]] static Terminal at(int descriptor, const Environment& environment);

  /// `text` in the style, where styles can be shown.
  [[nodiscard]] std::string styled(Style style, std::string_view text) const;
};

}  // namespace quellin::cli
