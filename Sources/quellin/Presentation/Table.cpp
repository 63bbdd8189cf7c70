#include "quellin/Presentation/Table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "quellin/Terminal/PlainText.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {
namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t shortestName = 12;

std::size_t lineWidth(const std::vector<std::size_t>& widths) {
  return std::accumulate(widths.begin(), widths.end(), gap * (widths.size() - 1));
}

}  // namespace

void Table::add(std::vector<std::string> row) {
  row.resize(columns_.size());
  for (std::string& text : row) text = printable(text);
  rows_.push_back(std::move(row));
}

void Table::addHeading(std::string_view text) { rows_.push_back({printable(text)}); }

std::size_t Table::width() const { return lineWidth(columnWidths()); }

std::string Table::text(std::optional<std::size_t> width) const {
  std::vector<std::size_t> widths = columnWidths();
  if (width) fit(widths, *width);
  std::string result = lineOf(titles(), widths) + '\n';
  for (const auto& row : rows_) {
    if (!isHeading(row)) {
      result += lineOf(row, widths);
    } else {
      result += width ? shortened(row.front(), *width) : row.front();
    }
    result += '\n';
  }
  return result + leftOutText(widths.size(), width);
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

std::size_t Table::leastWidth(std::size_t column, std::size_t widest) const {
  if (!columns_[column].givesWay) return widest;
  return std::min(widest, std::max(shortestName, columnsOf(columns_[column].title)));
}

std::size_t Table::columnsWithin(std::size_t width, const std::vector<std::size_t>& widths) const {
  std::size_t end = leastWidth(0, widths.front());
  std::size_t count = 1;
  while (count < widths.size()) {
    end += gap + leastWidth(count, widths[count]);
    if (end > width) break;
    ++count;
  }
  return count;
}

// A name that is cut can be read; a number that is cut is another number, and half a kind is no kind.
void Table::fit(std::vector<std::size_t>& widths, std::size_t width) const {
  widths.resize(columnsWithin(width, widths));
  for (std::size_t column = 0; column < widths.size(); ++column) {
    const std::size_t end = lineWidth(widths);
    if (end <= width) return;
    widths[column] -= std::min(end - width, widths[column] - leastWidth(column, widths[column]));
  }
  if (columns_.front().alignment == Alignment::left) widths.front() = std::min(widths.front(), width);
}

std::string Table::lineOf(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) const {
  std::string line;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (column > 0) line.append(gap, ' ');
    const std::string text = shortened(row[column], widths[column]);
    const std::string padding(widths[column] - columnsOf(text), ' ');
    line += columns_[column].alignment == Alignment::right ? padding + text : text + padding;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string Table::leftOutText(std::size_t shown, std::optional<std::size_t> width) const {
  std::string names;
  for (std::size_t column = shown; column < columns_.size(); ++column) {
    names += (names.empty() ? " " : ", ") + std::string{columns_[column].title};
  }
  return names.empty() ? names : wrapped("Not shown for want of width:" + names + ".", "", width);
}

}  // namespace quellin::cli
