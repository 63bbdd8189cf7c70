#include "quellin/Presentation/Table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "QuellinCore/Support/Text.h"

namespace quellin::cli {
namespace {

bool isControl(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
         codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

}  // namespace

std::string namedLine(std::string name, std::string_view value) {
  name.resize(18, ' ');
  return name + printable(value) + "\n";
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

void Table::addHeading(std::string_view text) { rows_.push_back({printable(text)}); }

std::size_t Table::width() const {
  const std::vector<std::size_t> widths = columnWidths();
  return std::accumulate(widths.begin(), widths.end(), gap * (widths.size() - 1));
}

std::string Table::text(std::optional<std::size_t> width) const {
  std::vector<std::size_t> widths = columnWidths();
  if (width) fit(widths, *width);
  std::string result;
  const auto append = [&](const std::string& line) {
    result += width ? firstColumns(line, *width) : line;
    result += '\n';
  };
  append(lineOf(titles(), widths));
  for (const auto& row : rows_) append(isHeading(row) ? row.front() : lineOf(row, widths));
  return result;
}

std::vector<std::string> Table::titles() const {
  std::vector<std::string> titles;
  titles.reserve(columns_.size());
  for (const Column& column : columns_) titles.emplace_back(column.title);
  return titles;
}

std::vector<std::size_t> Table::columnWidths() const {
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    std::size_t widest = columnsOf(columns_[column].title);
    for (const auto& row : rows_) {
      if (!isHeading(row)) widest = std::max(widest, columnsOf(row[column]));
    }
    widths.push_back(widest);
  }
  return widths;
}

bool Table::isHeading(const std::vector<std::string>& row) const { return row.size() < columns_.size(); }

// A text that is cut can be read; a number that is cut is another number.
void Table::fit(std::vector<std::size_t>& widths, std::size_t width) const {
  std::size_t end = 0;
  for (const std::size_t column : widths) end += column + gap;
  end -= gap;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (!columns_[column].givesWay || end <= width) continue;
    const std::size_t least = std::min(widths[column], shortestName);
    const std::size_t given = std::min(end - width, widths[column] - least);
    widths[column] -= given;
    end -= given;
  }
  end = 0;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    end += widths[column];
    if (columns_[column].alignment == Alignment::right && end > width) return widths.resize(column);
    end += gap;
  }
}

std::string Table::lineOf(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) const {
  std::string line;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (column > 0) line.append(gap, ' ');
    const std::string text = firstColumns(row[column], widths[column]);
    const std::string padding(widths[column] - columnsOf(text), ' ');
    line += columns_[column].alignment == Alignment::right ? padding + text : text + padding;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace quellin::cli
