#include "Support/TerminalEmulator.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace quellin::testing_support {
namespace {

constexpr char escape = 0x1B;

bool isFinal(char byte) { return byte >= 0x40 && byte <= 0x7E; }

std::size_t lengthOfCharacter(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte < 0x80) return 1;
  if (byte >= 0xF0) return 4;
  return byte >= 0xE0 ? 3 : 2;
}

// The numbers between "ESC [" and the final byte; one that is left out is 0.
std::vector<int> parametersOf(const std::string& item) {
  std::vector<int> parameters{0};
  for (const char byte : std::string_view{item}.substr(2, item.size() - 3)) {
    if (byte == ';') parameters.push_back(0);
    if (byte >= '0' && byte <= '9') parameters.back() = parameters.back() * 10 + (byte - '0');
  }
  return parameters;
}

[[noreturn]] void unknownSequence(const std::string& item) {
  throw std::runtime_error("the terminal does not know ESC" + item.substr(1));
}

}  // namespace

TerminalEmulator::TerminalEmulator(int rows, int columns) : rows_(rows), columns_(columns) {
  resize(rows, columns);
}

void TerminalEmulator::feed(std::string_view bytes) {
  pending_ += bytes;
  while (!pending_.empty()) {
    const std::size_t length = lengthOfFirst();
    if (length == 0 || length > pending_.size()) return;
    const std::string item = pending_.substr(0, length);
    pending_.erase(0, length);
    obey(item);
  }
}

void TerminalEmulator::resize(int rows, int columns) {
  rows_ = rows;
  columns_ = columns;
  cells_.resize(static_cast<std::size_t>(rows));
  for (Row& row : cells_) row.resize(static_cast<std::size_t>(columns), " ");
  top_ = 0;
  bottom_ = rows - 1;
  moveTo(row_, column_);
}

std::string TerminalEmulator::row(int row) const {
  std::string text;
  for (const std::string& cell : cells_.at(static_cast<std::size_t>(row))) text += cell;
  return text.erase(text.find_last_not_of(' ') + 1);
}

std::string TerminalEmulator::text() const {
  std::string text;
  for (int index = 0; index < rows_; ++index) text += row(index) + "\n";
  return text;
}

// 0 when more bytes are needed to tell.
std::size_t TerminalEmulator::lengthOfFirst() const {
  if (pending_.front() != escape) return lengthOfCharacter(pending_.front());
  if (pending_.size() < 2) return 0;
  if (pending_[1] == '(' || pending_[1] == ')') return 3;
  if (pending_[1] != '[') return 2;
  const auto final = std::find_if(pending_.begin() + 2, pending_.end(), isFinal);
  return final == pending_.end() ? 0 : static_cast<std::size_t>(final - pending_.begin()) + 1;
}

void TerminalEmulator::obey(const std::string& item) {
  if (item.front() == escape) return obeySequence(item);
  if (static_cast<unsigned char>(item.front()) < 0x20) return obeyControl(item.front());
  put(item);
}

void TerminalEmulator::obeyControl(char control) {
  switch (control) {
    case '\r':
      return moveTo(row_, 0);
    case '\n':
      return lineFeed();
    case '\b':
      return moveTo(row_, column_ - 1);
    case '\t':
      return moveTo(row_, (column_ / 8 + 1) * 8);
    case '\x0E':
    case '\x0F':
    case '\a':
      return;
    default:
      throw std::runtime_error("the terminal does not know the control character " + std::to_string(control));
  }
}

void TerminalEmulator::obeySequence(const std::string& item) {
  if (item == "\x1bM") return row_ == top_ ? scrollDown(1) : moveTo(row_ - 1, column_);
  if (item[1] != '[') {
    if (std::string_view{"()=>78"}.find(item[1]) == std::string_view::npos) unknownSequence(item);
    return;
  }
  const std::vector<int> parameters = parametersOf(item);
  const int first = std::max(parameters.front(), 1);
  switch (item.back()) {
    case 'A':
      return moveTo(row_ - first, column_);
    case 'B':
      return moveTo(row_ + first, column_);
    case 'C':
      return moveTo(row_, column_ + first);
    case 'D':
      return moveTo(row_, column_ - first);
    case 'G':
      return moveTo(row_, first - 1);
    case 'd':
      return moveTo(first - 1, column_);
    case 'H':
      return moveTo(first - 1, std::max(parameters.back(), 1) - 1);
    case 'm':
      return noteColours(parameters);
    case 'h':
    case 'l':
      return obeyMode(item, item.back() == 'h');
    case 'r':
      return confine(parameters);
    case 't':
      return;
    default:
      return obeyEditing(item, parameters);
  }
}

void TerminalEmulator::obeyEditing(const std::string& item, const std::vector<int>& parameters) {
  const int count = std::max(parameters.front(), 1);
  Row& row = cells_.at(static_cast<std::size_t>(row_));
  switch (item.back()) {
    case 'J':
      return eraseScreen(parameters.front());
    case 'K':
      return eraseLine(parameters.front());
    case 'X':
      return erase(row_, column_, column_ + count);
    case 'b':
      for (int index = 0; index < count; ++index) put(last_);
      return;
    case 'S':
      return scrollUp(count);
    case 'T':
      return scrollDown(count);
    case 'P':
      row.erase(row.begin() + column_, row.begin() + std::min(column_ + count, columns_));
      return row.resize(static_cast<std::size_t>(columns_), " ");
    case '@':
      row.insert(row.begin() + column_, static_cast<std::size_t>(count), " ");
      return row.resize(static_cast<std::size_t>(columns_), " ");
    default:
      unknownSequence(item);
  }
}

void TerminalEmulator::obeyMode(const std::string& item, bool isOn) {
  if (item.starts_with("\x1b[?1049")) isFullScreen_ = isOn;
  if (item.starts_with("\x1b[?25")) isCursorVisible_ = isOn;
}

void TerminalEmulator::noteColours(const std::vector<int>& parameters) {
  // 39 and 49 ask for the terminal's own colours.
  hasShownColours_ = hasShownColours_ || std::ranges::any_of(parameters, [](int parameter) {
                       return (parameter >= 30 && parameter <= 38) || (parameter >= 40 && parameter <= 48) ||
                              parameter >= 90;
                     });
}

void TerminalEmulator::put(const std::string& character) {
  if (column_ == columns_) {
    moveTo(row_, 0);
    lineFeed();
  }
  cells_.at(static_cast<std::size_t>(row_)).at(static_cast<std::size_t>(column_)) = character;
  last_ = character;
  ++column_;
}

void TerminalEmulator::moveTo(int row, int column) {
  row_ = std::clamp(row, 0, rows_ - 1);
  column_ = std::clamp(column, 0, columns_ - 1);
}

void TerminalEmulator::lineFeed() {
  if (row_ == bottom_) return scrollUp(1);
  moveTo(row_ + 1, column_);
}

void TerminalEmulator::scrollUp(int count) {
  for (int step = 0; step < count; ++step) {
    std::rotate(cells_.begin() + top_, cells_.begin() + top_ + 1, cells_.begin() + bottom_ + 1);
    erase(bottom_, 0, columns_);
  }
}

void TerminalEmulator::scrollDown(int count) {
  for (int step = 0; step < count; ++step) {
    std::rotate(cells_.begin() + top_, cells_.begin() + bottom_, cells_.begin() + bottom_ + 1);
    erase(top_, 0, columns_);
  }
}

void TerminalEmulator::confine(const std::vector<int>& parameters) {
  top_ = std::clamp(parameters.front() - 1, 0, rows_ - 1);
  bottom_ = parameters.size() < 2 ? rows_ - 1 : std::clamp(parameters.back() - 1, top_, rows_ - 1);
  moveTo(0, 0);
}

void TerminalEmulator::eraseLine(int how) {
  erase(row_, how == 0 ? column_ : 0, how == 1 ? column_ + 1 : columns_);
}

void TerminalEmulator::eraseScreen(int how) {
  if (how != 1) {
    for (int row = how == 0 ? row_ + 1 : 0; row < rows_; ++row) erase(row, 0, columns_);
  }
  if (how == 1) {
    for (int row = 0; row < row_; ++row) erase(row, 0, columns_);
  }
  eraseLine(how);
}

void TerminalEmulator::erase(int row, int from, int to) {
  Row& cells = cells_.at(static_cast<std::size_t>(row));
  std::fill(cells.begin() + from, cells.begin() + std::min(to, columns_), " ");
}

}  // namespace quellin::testing_support
