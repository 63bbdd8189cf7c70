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
    bool givesWay =
        false;  ///< its texts are cut, if need be to twelve columns or its title, so that others fit
  };

  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a row: one text for each column.
  void add(std::vector<std::string> row);

  /// Adds a line of one text that goes across all columns; for tables of more than one.
  void addHeading(std::string_view text);

  /// How wide the rows are when nothing is cut.
  [[nodiscard]] std::size_t width() const;

  /// All rows below their titles, in at most `width` columns: first the columns that give way are cut, then
  /// the first column that does not fit is left out whole, with all behind it. A line below names those left
  /// out. The very first always stands.
  [[nodiscard]] std::string text(std::optional<std::size_t> width) const;

 private:
  [[nodiscard]] std::vector<std::string> titles() const;
  [[nodiscard]] std::vector<std::size_t> columnWidths() const;
  [[nodiscard]] bool isHeading(const std::vector<std::string>& row) const;
  [[nodiscard]] std::size_t leastWidth(std::size_t column, std::size_t widest) const;
  // How many columns fit when those that give way are as narrow as can be.
  [[nodiscard]] std::size_t columnsWithin(std::size_t width, const std::vector<std::size_t>& widths) const;
  // Leaves out what does not fit, and narrows what gives way no more than need be.
  void fit(std::vector<std::size_t>& widths, std::size_t width) const;
  [[nodiscard]] std::string lineOf(const std::vector<std::string>& row,
                                   const std::vector<std::size_t>& widths) const;
  // Names the columns from `shown` on; nothing where there are none.
  [[nodiscard]] std::string leftOutText(std::size_t shown, std::optional<std::size_t> width) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace quellin::cli
