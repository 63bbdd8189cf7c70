#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quellin::testing_support {

/// A terminal of the kind xterm-256color: what a person would see after a program has sent its bytes. Knows
/// the sequences that full-screen programs of that kind use, and throws std::runtime_error on any other.
class TerminalEmulator {
 public:
  TerminalEmulator(int rows, int columns);

  /// Takes in what the program sent; sequences may be cut anywhere.
  void feed(std::string_view bytes);

  /// Gives the screen another size; what stood on it stays at the top left.
  void resize(int rows, int columns);

  /// One row without trailing blanks.
  [[nodiscard]] std::string row(int row) const;
  /// All rows, each with a line feed.
  [[nodiscard]] std::string text() const;

  [[nodiscard]] bool isFullScreen() const { return isFullScreen_; }
  [[nodiscard]] bool isCursorVisible() const { return isCursorVisible_; }
  /// Whether any colour was asked for so far.
  [[nodiscard]] bool hasShownColours() const { return hasShownColours_; }

 private:
  using Row = std::vector<std::string>;

  [[nodiscard]] std::size_t lengthOfFirst() const;
  void obey(const std::string& item);
  void obeyControl(char control);
  void obeySequence(const std::string& item);
  void obeyEditing(const std::string& item, const std::vector<int>& parameters);
  void obeyMode(const std::string& item, bool isOn);
  void noteColours(const std::vector<int>& parameters);
  void put(const std::string& character);
  void moveTo(int row, int column);
  void lineFeed();
  void scrollUp(int count);
  void scrollDown(int count);
  void confine(const std::vector<int>& parameters);
  void eraseLine(int how);
  void eraseScreen(int how);
  void erase(int row, int from, int to);

  int rows_;
  int columns_;
  std::vector<Row> cells_;
  int top_ = 0;     // first and
  int bottom_ = 0;  // last row of what scrolls
  int row_ = 0;
  int column_ = 0;  // equal to `columns_` when the next character wraps
  std::string last_ = " ";
  std::string pending_;
  bool isFullScreen_ = false;
  bool isCursorVisible_ = true;
  bool hasShownColours_ = false;
};

}  // namespace quellin::testing_support
