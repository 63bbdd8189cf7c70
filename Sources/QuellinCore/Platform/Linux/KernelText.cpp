#include "QuellinCore/Platform/Linux/KernelText.h"

#include <algorithm>
#include <cstddef>

#include "QuellinCore/Support/Number.h"

namespace quellin {
namespace {

constexpr std::string_view space = " \t\n\v\f\r";
constexpr std::string_view digits = "0123456789";

bool startsWithDigit(std::string_view text) { return digits.contains(text.front()); }

// Takes one piece off the front of `text`: a run of digits without its leading zeros, or one other character.
std::string_view takePiece(std::string_view& text) {
  const std::size_t length =
      startsWithDigit(text) ? std::min(text.find_first_not_of(digits), text.size()) : 1;
  std::string_view piece = text.substr(0, length);
  text.remove_prefix(length);
  while (piece.size() > 1 && piece.front() == '0') piece.remove_prefix(1);
  return piece;
}

}  // namespace

std::string_view withoutSpaceAtEnds(std::string_view text) {
  const std::size_t first = text.find_first_not_of(space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(space) - first + 1);
}

std::optional<int> numberWithin(std::string_view name, std::string_view prefix, std::string_view suffix) {
  if (name.size() < prefix.size() + suffix.size() || !name.starts_with(prefix) || !name.ends_with(suffix)) {
    return std::nullopt;
  }
  name.remove_prefix(prefix.size());
  name.remove_suffix(suffix.size());
  const auto number = parseNumber<int>(name);
  return number && *number >= 0 ? number : std::nullopt;
}

bool naturallyLess(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    const bool bothNumbers = startsWithDigit(left) && startsWithDigit(right);
    const std::string_view leftPiece = takePiece(left);
    const std::string_view rightPiece = takePiece(right);
    if (bothNumbers && leftPiece.size() != rightPiece.size()) return leftPiece.size() < rightPiece.size();
    if (leftPiece != rightPiece) return leftPiece < rightPiece;
  }
  return left.empty() && !right.empty();
}

}  // namespace quellin
