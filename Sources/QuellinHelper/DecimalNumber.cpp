#include "QuellinHelper/DecimalNumber.h"

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
  explicit DecimalScanner(std::string_view text) : _rest(text) {}

  bool scan() {
    _isNegative = take('-');
    if (!_isNegative) take('+');
    takeDigits(false);
    if (take('.')) takeDigits(true);
    if (!_hasDigits) return false;
    if ((take('e') || take('E')) && !takeExponent()) return false;
    return _rest.empty();
  }

  // Both operands are exact and IEEE division and multiplication round correctly, so this is the nearest
  // double.
  [[nodiscard]] std::optional<double> exactValue() const {
    const int exponent = _exponent - _fractionDigits;
    const int limit = static_cast<int>(powersOfTen.size()) - 1;
    if (_digitsCounted > mostDigitsCounted || _digits > largestExactInteger) return std::nullopt;
    if (exponent < -limit || exponent > limit) return std::nullopt;
    const auto digits = static_cast<double>(_digits);
    const double value = exponent < 0 ? digits / powersOfTen[static_cast<std::size_t>(-exponent)]
                                      : digits * powersOfTen[static_cast<std::size_t>(exponent)];
    return _isNegative ? -value : value;
  }

 private:
  bool take(char expected) {
    if (_rest.empty() || _rest.front() != expected) return false;
    _rest.remove_prefix(1);
    return true;
  }

  void takeDigits(bool isFraction) {
    for (; !_rest.empty() && isDigit(_rest.front()); _rest.remove_prefix(1)) {
      _hasDigits = true;
      if (_digitsCounted > mostDigitsCounted) continue;
      const auto digit = static_cast<std::uint64_t>(_rest.front() - '0');
      if (_digits != 0 || digit != 0) ++_digitsCounted;
      if (_digitsCounted > mostDigitsCounted) continue;
      _digits = _digits * 10 + digit;
      _fractionDigits += isFraction ? 1 : 0;
    }
  }

  bool takeExponent() {
    const bool isNegative = take('-');
    if (!isNegative) take('+');
    if (_rest.empty() || !isDigit(_rest.front())) return false;
    for (; !_rest.empty() && isDigit(_rest.front()); _rest.remove_prefix(1)) {
      if (_exponent < largestExponent) _exponent = _exponent * 10 + (_rest.front() - '0');
    }
    if (isNegative) _exponent = -_exponent;
    return true;
  }

  std::string_view _rest;
  bool _isNegative = false;
  bool _hasDigits = false;
  std::uint64_t _digits = 0;
  int _digitsCounted = 0;  // leading zeros do not count
  int _fractionDigits = 0;
  int _exponent = 0;
};

}  // namespace

std::optional<double> parseDecimal(std::string_view text) {
  DecimalScanner scanner{text};
  if (!scanner.scan()) return std::nullopt;
  if (const auto value = scanner.exactValue()) return value;
  return std::strtod(std::string{text}.c_str(), nullptr);
}

}  // namespace quellin
