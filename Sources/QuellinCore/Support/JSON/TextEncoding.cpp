#include "QuellinCore/Support/JSON/TextEncoding.h"

#include <cstddef>
#include <cstdint>

#include "QuellinCore/Support/Surrogates.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

using std::string_view_literals::operator""sv;

// How the code units of a document are stored.
struct Encoding {
  std::size_t unitSize = 1;
  bool isBigEndian = false;
  std::size_t markSize = 0;
};

// The mark of UTF-32 little-endian begins with that of UTF-16, so it is looked for first.
std::optional<Encoding> encodingByMark(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) return Encoding{1, false, 3};
  if (bytes.starts_with("\0\0\xFE\xFF"sv)) return Encoding{4, true, 4};
  if (bytes.starts_with("\xFF\xFE\0\0"sv)) return Encoding{4, false, 4};
  if (bytes.starts_with("\xFE\xFF"sv)) return Encoding{2, true, 2};
  if (bytes.starts_with("\xFF\xFE"sv)) return Encoding{2, false, 2};
  return std::nullopt;
}

// A JSON text begins with an ASCII character, and never with a NUL.
Encoding encodingByZeros(std::string_view bytes) {
  const auto isZero = [bytes](std::size_t index) { return bytes[index] == '\0'; };
  if (bytes.size() >= 4) {
    if (isZero(0) && isZero(1) && isZero(2)) return {4, true, 0};
    if (isZero(1) && isZero(2) && isZero(3)) return {4, false, 0};
  }
  if (bytes.size() >= 2) {
    if (isZero(0)) return {2, true, 0};
    if (isZero(1)) return {2, false, 0};
  }
  return {};
}

class UnitReader {
 public:
  UnitReader(std::string_view bytes, const Encoding& encoding) : rest_(bytes), encoding_(encoding) {}

  [[nodiscard]] bool isAtEnd() const { return rest_.size() < encoding_.unitSize; }

  char32_t next() {
    char32_t unit = 0;
    for (std::size_t index = 0; index < encoding_.unitSize; ++index) {
      const std::size_t at = encoding_.isBigEndian ? index : encoding_.unitSize - 1 - index;
      unit = (unit << 8) | static_cast<std::uint8_t>(rest_[at]);
    }
    rest_.remove_prefix(encoding_.unitSize);
    return unit;
  }

 private:
  std::string_view rest_;
  Encoding encoding_;
};

std::optional<char32_t> nextCodePoint(UnitReader& units, std::size_t unitSize) {
  const char32_t unit = units.next();
  if (unit > 0x10FFFF || isLowSurrogate(unit)) return std::nullopt;
  if (!isHighSurrogate(unit)) return unit;
  if (unitSize != 2 || units.isAtEnd()) return std::nullopt;
  const char32_t low = units.next();
  if (!isLowSurrogate(low)) return std::nullopt;
  return characterOfSurrogates(unit, low);
}

}  // namespace

std::optional<std::string_view> documentAsUTF8(std::string_view bytes, std::string& buffer) {
  const Encoding encoding = encodingByMark(bytes).value_or(encodingByZeros(bytes));
  bytes.remove_prefix(encoding.markSize);
  if (encoding.unitSize == 1) return bytes;
  if (bytes.size() % encoding.unitSize != 0) return std::nullopt;
  buffer.clear();
  UnitReader units{bytes, encoding};
  while (!units.isAtEnd()) {
    const std::optional<char32_t> codePoint = nextCodePoint(units, encoding.unitSize);
    if (!codePoint) return std::nullopt;
    appendUTF8(buffer, *codePoint);
  }
  return buffer;
}

}  // namespace quellin
