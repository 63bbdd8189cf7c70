#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {

/// `text` without anything that a terminal would obey: control characters become "?", broken UTF-8 is
/// repaired.
[[nodiscard]] std::string printable(std::string_view text);

/// One line "name  value" of a record for people; the value is made printable.
[[nodiscard]] std::string namedLine(std::string name, std::string_view value);

/// `text` broken between words into lines of at most `width` columns, each behind `indent`; in one line
/// without a width.
[[nodiscard]] std::string wrapped(std::string_view text, std::string_view indent,
                                  std::optional<std::size_t> width);

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
