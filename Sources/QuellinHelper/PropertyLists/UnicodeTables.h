#pragma once

#include <span>

namespace quellin::detail {

/// The characters from `first` to `last`.
struct CharacterRange {
  char32_t first;
  char32_t last;
};

/// Every `step`-th character from `first` to `last` becomes lower case by adding `distance`.
struct LowerCaseRun {
  char32_t first;
  char32_t last;
  char32_t step;
  int distance;
};

/// The characters of the Unicode general categories L* and N*, ascending. The version is named in
/// UnicodeTables.cpp.
[[nodiscard]] std::span<const CharacterRange> lettersAndNumbers();

/// The characters that have another lower-case form, ascending by `first`; runs do not overlap.
[[nodiscard]] std::span<const LowerCaseRun> lowerCaseRuns();

}  // namespace quellin::detail
