#include "quellin/Presentation/Table.h"

#include <algorithm>

#include "QuellinCore/Support/Text.h"

namespace quellin::cli {
namespace {

bool isControl(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
         codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// One column for each character: the names of sensors and processes that are wider are rare.
std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return !continuesCharacter(byte); }));
}

}  // namespace

std::string firstColumns(const std::string& text, std::size_t columns) {
  std::size_t end = 0;
  for (std::size_t seen = 0; end < text.size(); ++end) {
    if (!continuesCharacter(text[end]) && seen++ == columns) break;
  }
  return text.substr(0, end);
}

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    if (isControl(step.codePoint)) {
      result += '?';
    } else {
      appendUTF8(result, step.codePoint);
    }
    text.remove_prefix(step.length);
  }
  return result;
}

std::string wrapped(std::string_view text, std::string_view indent, std::optional<std::size_t> width) {
  std::string result;
  std::size_t column = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    if (word.empty()) continue;
    const bool fits = !width || column + 1 + columnsOf(word) <= *width;
    if (column == 0 || !fits) {
      result += column == 0 ? "" : "\n";
      result += indent;
      column = columnsOf(indent);
    } else {
      result += ' ';
      ++column;
    }
    result += word;
    column += columnsOf(word);
  }
  return result + "\n";
}

void Table::add(std::vector<std::string> row) {
  row.resize(columns_.size());
  for (std::string& text : row) text = printable(text);
  rows_.push_back(std::move(row));
}

std::string Table::text(std::optional<std::size_t> width) const {
  std::vector<std::string> titles;
  titles.reserve(columns_.size());
  for (const Column& column : columns_) titles.emplace_back(column.title);
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    std::size_t widest = columnsOf(titles[column]);
    for (const auto& row : rows_) widest = std::max(widest, columnsOf(row[column]));
    widths.push_back(widest);
  }
  if (width) widths.resize(columnsWithin(*width, widths));
  std::string result;
  const auto append = [&](const std::vector<std::string>& row) {
    const std::string line = lineOf(row, widths);
    result += width ? firstColumns(line, *width) : line;
    result += '\n';
  };
  append(titles);
  for (const auto& row : rows_) append(row);
  return result;
}

// A text that is cut can be read; a number that is cut is another number.
std::size_t Table::columnsWithin(std::size_t width, const std::vector<std::size_t>& widths) const {
  std::size_t end = 0;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    end += (column > 0 ? 2 : 0) + widths[column];
    if (columns_[column].alignment == Alignment::right && end > width) return column;
  }
  return widths.size();
}

std::string Table::lineOf(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) const {
  std::string line;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (column > 0) line += "  ";
    const std::string padding(widths[column] - columnsOf(row[column]), ' ');
    line += columns_[column].alignment == Alignment::right ? padding + row[column] : row[column] + padding;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace quellin::cli
