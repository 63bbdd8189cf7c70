#include "quellin/Terminal/TextColumns.h"

#include <algorithm>
#include <span>

#include "QuellinCore/Support/Text.h"
#include "quellin/Terminal/CharacterColumns.h"

namespace quellin::cli {
namespace {

bool contains(std::span<const CharacterRange> ranges, char32_t character) {
  const auto range = std::ranges::lower_bound(ranges, character, {}, &CharacterRange::last);
  return range != ranges.end() && range->first <= character;
}

}  // namespace

std::size_t columnsOf(char32_t character) {
  constexpr char32_t firstSpecial = 0x300;  // what comes before takes one, and is nearly all there is
  if (character < firstSpecial) return 1;
  if (contains(charactersWithoutColumn(), character)) return 0;
  return contains(charactersOfTwoColumns(), character) ? 2 : 1;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    columns += columnsOf(step.codePoint);
    text.remove_prefix(step.length);
  }
  return columns;
}

std::string firstColumns(std::string_view text, std::size_t columns) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const UTF8Step step = firstUTF8Step(rest);
    const std::size_t width = columnsOf(step.codePoint);
    if (width > columns) break;
    columns -= width;
    rest.remove_prefix(step.length);
  }
  return std::string{text.substr(0, text.size() - rest.size())};
}

std::string shortened(std::string_view text, std::size_t columns) {
  constexpr std::string_view mark = "..";
  if (columns <= mark.size() || columnsOf(text) <= columns) return firstColumns(text, columns);
  return firstColumns(text, columns - mark.size()).append(mark);
}

}  // namespace quellin::cli
