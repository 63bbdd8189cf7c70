#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quellin::cli {

/// Where the text of a column stands.
enum class Alignment { left, right };

/// Rows of text in columns as wide as they need to be.
class Table {
 public:
  struct Column {
    std::string_view title;
    Alignment alignment = Alignment::left;
    bool givesWay = false;  ///< its texts are cut, if need be to twelve columns, so that others fit
  };

  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a row: one text for each column.
  void add(std::vector<std::string> row);

  /// Adds a line of one text that goes across all columns; for tables of more than one.
  void addHeading(std::string_view text);

  /// How wide the rows are when nothing is cut.
  [[nodiscard]] std::size_t width() const;

  /// All rows below their titles, lines cut to `width` columns. Columns of numbers, which stand on the right,
  /// are never cut: the first that does not fit is left out, with all behind it.
  [[nodiscard]] std::string text(std::optional<std::size_t> width) const;

 private:
  static constexpr std::size_t gap = 2;
  static constexpr std::size_t shortestName = 12;

  [[nodiscard]] std::vector<std::string> titles() const;
  [[nodiscard]] std::vector<std::size_t> columnWidths() const;
  [[nodiscard]] bool isHeading(const std::vector<std::string>& row) const;
  // Narrows the columns, and leaves out those that still do not fit.
  void fit(std::vector<std::size_t>& widths, std::size_t width) const;
  [[nodiscard]] std::string lineOf(const std::vector<std::string>& row,
                                   const std::vector<std::size_t>& widths) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace quellin::cli
