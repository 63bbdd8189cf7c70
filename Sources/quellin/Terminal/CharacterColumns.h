#pragma once

#include <span>

namespace quellin::cli {

/// The characters from `first` to `last`.
struct CharacterRange {
  char32_t first;
  char32_t last;
};

/// The characters that a terminal shows in no column of their own, ascending: they join the one before, or
/// are not seen. The version of Unicode is named in CharacterColumns.cpp.
[[nodiscard]] std::span<const CharacterRange> charactersWithoutColumn();

/// The characters that a terminal shows in two columns, ascending: those of East Asia and most emoji.
[[nodiscard]] std::span<const CharacterRange> charactersOfTwoColumns();

}  // namespace quellin::cli
