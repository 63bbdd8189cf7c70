#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "quellin/Terminal/Terminal.h"

namespace quellin::cli {

/// What a terminal can show.
enum class CharacterSet { ascii, unicode };

/// The size of a terminal in characters.
struct ViewSize {
  int rows = 24;
  int columns = 80;

  bool operator==(const ViewSize&) const = default;
};

/// One column of the view in one row.
struct Cell {
  char32_t character = U' ';  ///< 0 in the second column of a wide character
  Style style = Style::plain;
  std::u32string marks = {};  ///< what joins the character

  bool operator==(const Cell&) const = default;
};

/// A sheet of styled characters on which a view is drawn. What lies outside is not drawn; what the character
/// set cannot hold is replaced.
class Canvas {
 public:
  /// A blank sheet. A size below 0 counts as 0.
  Canvas(ViewSize size, CharacterSet characters);

  [[nodiscard]] ViewSize size() const { return size_; }
  [[nodiscard]] CharacterSet characters() const { return characters_; }

  /// Puts one character of one column. The rest of a wide character that it covers in part is blank then.
  void put(int row, int column, Cell cell);

  /// Writes `text` from `column` on, cut to `width` columns. Returns the column after the last one written.
  int write(int row, int column, std::string_view text, Style style, int width);
  /// As above, up to the right edge.
  int write(int row, int column, std::string_view text, Style style = Style::plain);

  /// Writes `text` so that it ends before the column `end`.
  void writeEndingAt(int row, int end, std::string_view text, Style style = Style::plain);

  /// A stretch of one row in one style.
  struct Run {
    int column = 0;
    std::string text;  ///< UTF-8
    Style style = Style::plain;

    bool operator==(const Run&) const = default;
  };

  /// A row, cut where the style changes.
  [[nodiscard]] std::vector<Run> runs(int row) const;

  /// All rows without styles and trailing blanks, each with a line feed.
  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] bool holds(int row, int column) const;
  [[nodiscard]] Cell& at(int row, int column);
  [[nodiscard]] const Cell& at(int row, int column) const;
  void putWide(int row, int column, const Cell& cell);

  ViewSize size_;
  CharacterSet characters_;
  std::vector<Cell> cells_;
};

/// How many columns `text` takes on a canvas of the character set.
[[nodiscard]] int columnsOn(CharacterSet characters, std::string_view text);

}  // namespace quellin::cli
