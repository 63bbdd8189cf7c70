#include "QuellinHelper/PropertyLists/DecimalNumber.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace quellin {
namespace {

constexpr std::array powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 53;
constexpr int mostDigitsCounted = 18;   // 10^18 - 1 fits in 64 bits
constexpr int largestExponent = 99999;  // far beyond every double; keeps the count from overflowing

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Reads the parts of a decimal number from the front of a text.
class DecimalScanner {
 public:
  explicit DecimalScanner(std::string_view text) : rest_(text) {}

  bool scan() {
    isNegative_ = take('-');
    if (!isNegative_) take('+');
    takeDigits(false);
    if (take('.')) takeDigits(true);
    if (!hasDigits_) return false;
    if ((take('e') || take('E')) && !takeExponent()) return false;
    return rest_.empty();
  }

  // Both operands are exact and IEEE division and multiplication round correctly, so this is the nearest
  // double.
  [[nodiscard]] std::optional<double> exactValue() const {
    const int exponent = exponent_ - fractionDigits_;
    const int limit = static_cast<int>(powersOfTen.size()) - 1;
    if (digitsCounted_ > mostDigitsCounted || digits_ > largestExactInteger) return std::nullopt;
    if (exponent < -limit || exponent > limit) return std::nullopt;
    const auto digits = static_cast<double>(digits_);
    const double value = exponent < 0 ? digits / powersOfTen[static_cast<std::size_t>(-exponent)]
                                      : digits * powersOfTen[static_cast<std::size_t>(exponent)];
    return isNegative_ ? -value : value;
  }

 private:
  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void takeDigits(bool isFraction) {
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1)) {
      hasDigits_ = true;
      if (digitsCounted_ > mostDigitsCounted) continue;
      const auto digit = static_cast<std::uint64_t>(rest_.front() - '0');
      if (digits_ != 0 || digit != 0) ++digitsCounted_;
      if (digitsCounted_ > mostDigitsCounted) continue;
      digits_ = digits_ * 10 + digit;
      fractionDigits_ += isFraction ? 1 : 0;
    }
  }

  bool takeExponent() {
    const bool isNegative = take('-');
    if (!isNegative) take('+');
    if (rest_.empty() || !isDigit(rest_.front())) return false;
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1)) {
      if (exponent_ < largestExponent) exponent_ = exponent_ * 10 + (rest_.front() - '0');
    }
    if (isNegative) exponent_ = -exponent_;
    return true;
  }

  std::string_view rest_;
  bool isNegative_ = false;
  bool hasDigits_ = false;
  std::uint64_t digits_ = 0;
  int digitsCounted_ = 0;  // leading zeros do not count
  int fractionDigits_ = 0;
  int exponent_ = 0;
};

}  // namespace

std::optional<double> parseDecimal(std::string_view text) {
  DecimalScanner scanner{text};
  if (!scanner.scan()) return std::nullopt;
  if (const auto value = scanner.exactValue()) return value;
  return std::strtod(std::string{text}.c_str(), nullptr);
}

}  // namespace quellin
