#include "quellin/Watch/Canvas.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "QuellinCore/Support/Text.h"
#include "quellin/Presentation/Table.h"

namespace quellin::cli {
namespace {

constexpr char32_t degreeSign = U'°';
constexpr char32_t substitute = U'?';

// Characters that take no column or two would push all that follows out of place. Blocks of Unicode, by their
// first and last code point.
constexpr std::array<std::pair<char32_t, char32_t>, 16> notOneColumn{{{0x300, 0x36F},
                                                                      {0x1100, 0x115F},
                                                                      {0x200B, 0x200F},
                                                                      {0x20D0, 0x20FF},
                                                                      {0x231A, 0x231B},
                                                                      {0x2E80, 0xA4CF},
                                                                      {0xA960, 0xA97F},
                                                                      {0xAC00, 0xD7FF},
                                                                      {0xF900, 0xFAFF},
                                                                      {0xFE00, 0xFE0F},
                                                                      {0xFE20, 0xFE6F},
                                                                      {0xFEFF, 0xFEFF},
                                                                      {0xFF00, 0xFF60},
                                                                      {0xFFE0, 0xFFE6},
                                                                      {0x1F000, 0x1FAFF},
                                                                      {0x20000, 0x10FFFF}}};

bool takesOneColumn(char32_t character) {
  return std::ranges::none_of(notOneColumn, [character](const auto& block) {
    return block.first <= character && character <= block.second;
  });
}

// What stands for `character`; nothing for one that is better left out.
std::optional<char32_t> shown(char32_t character, CharacterSet characters) {
  if (!takesOneColumn(character)) return substitute;
  if (characters == CharacterSet::unicode || character < 0x80) return character;
  return character == degreeSign ? std::nullopt : std::optional{substitute};
}

std::u32string decoded(CharacterSet characters, std::string_view text) {
  std::u32string result;
  const std::string clean = printable(text);
  for (std::string_view rest = clean; !rest.empty();) {
    const UTF8Step step = firstUTF8Step(rest);
    if (const auto character = shown(step.codePoint, characters)) result += *character;
    rest.remove_prefix(step.length);
  }
  return result;
}

}  // namespace

Canvas::Canvas(ViewSize size, CharacterSet characters)
    : size_{.rows = std::max(size.rows, 0), .columns = std::max(size.columns, 0)},
      characters_(characters),
      cells_(static_cast<std::size_t>(size_.rows) * static_cast<std::size_t>(size_.columns)) {}

void Canvas::put(int row, int column, Cell cell) {
  if (row < 0 || row >= size_.rows || column < 0 || column >= size_.columns) return;
  cells_.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.columns) +
            static_cast<std::size_t>(column)) = cell;
}

int Canvas::write(int row, int column, std::string_view text, Style style, int width) {
  for (const char32_t character : decoded(characters_, text)) {
    if (width-- <= 0) break;
    put(row, column++, {.character = character, .style = style});
  }
  return column;
}

int Canvas::write(int row, int column, std::string_view text, Style style) {
  return write(row, column, text, style, std::numeric_limits<int>::max());
}

void Canvas::writeEndingAt(int row, int end, std::string_view text, Style style) {
  write(row, end - columnsOn(characters_, text), text, style);
}

std::vector<Canvas::Run> Canvas::runs(int row) const {
  std::vector<Run> result;
  for (int column = 0; column < size_.columns; ++column) {
    const Cell& cell = at(row, column);
    if (result.empty() || result.back().style != cell.style) {
      result.push_back({.column = column, .text = "", .style = cell.style});
    }
    appendUTF8(result.back().text, cell.character);
  }
  return result;
}

std::string Canvas::text() const {
  std::string result;
  for (int row = 0; row < size_.rows; ++row) {
    std::string line;
    for (const Run& run : runs(row)) line += run.text;
    line.erase(line.find_last_not_of(' ') + 1);
    result += line + "\n";
  }
  return result;
}

const Cell& Canvas::at(int row, int column) const {
  return cells_.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.columns) +
                   static_cast<std::size_t>(column));
}

int columnsOn(CharacterSet characters, std::string_view text) {
  return static_cast<int>(decoded(characters, text).size());
}

}  // namespace quellin::cli
