#include "quellin/Watch/Canvas.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "QuellinCore/Support/Text.h"
#include "quellin/Terminal/PlainText.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {
namespace {

constexpr char32_t degreeSign = U'°';
constexpr char32_t substitute = U'?';
constexpr char32_t secondHalf = 0;  // of a wide character

// What stands for `character`; nothing for one that is better left out.
std::optional<char32_t> shown(char32_t character, CharacterSet characters) {
  if (characters == CharacterSet::unicode || character < 0x80) return character;
  return character == degreeSign || columnsOf(character) == 0 ? std::nullopt : std::optional{substitute};
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

bool Canvas::holds(int row, int column) const {
  return row >= 0 && row < size_.rows && column >= 0 && column < size_.columns;
}

void Canvas::put(int row, int column, Cell cell) {
  if (!holds(row, column)) return;
  if (at(row, column).character == secondHalf) at(row, column - 1).character = U' ';
  if (holds(row, column + 1) && at(row, column + 1).character == secondHalf) {
    at(row, column + 1).character = U' ';
  }
  at(row, column) = std::move(cell);
}

// A wide character that the edge would cut is not drawn.
void Canvas::putWide(int row, int column, const Cell& cell) {
  if (!holds(row, column) || !holds(row, column + 1)) return;
  put(row, column, cell);
  put(row, column + 1, {.character = U' ', .style = cell.style});
  at(row, column + 1).character = secondHalf;
}

int Canvas::write(int row, int column, std::string_view text, Style style, int width) {
  int last = -1;  // the column of the character that marks join
  for (const char32_t character : decoded(characters_, text)) {
    const int taken = static_cast<int>(columnsOf(character));
    if (taken == 0) {
      if (holds(row, last)) at(row, last).marks += character;
      continue;
    }
    if (taken > width) break;
    const Cell cell{.character = character, .style = style};
    taken == 1 ? put(row, column, cell) : putWide(row, column, cell);
    last = column;
    column += taken;
    width -= taken;
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
    if (cell.character == secondHalf) continue;
    appendUTF8(result.back().text, cell.character);
    for (const char32_t mark : cell.marks) appendUTF8(result.back().text, mark);
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

Cell& Canvas::at(int row, int column) {
  return cells_.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.columns) +
                   static_cast<std::size_t>(column));
}

const Cell& Canvas::at(int row, int column) const {
  return cells_.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.columns) +
                   static_cast<std::size_t>(column));
}

int columnsOn(CharacterSet characters, std::string_view text) {
  std::size_t columns = 0;
  for (const char32_t character : decoded(characters, text)) columns += columnsOf(character);
  return static_cast<int>(columns);
}

}  // namespace quellin::cli
