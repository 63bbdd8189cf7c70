#include "quellin/Presentation/Table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "quellin/Terminal/PlainText.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {

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
