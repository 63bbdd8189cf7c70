#include "QuellinHelper/PropertyLists/XMLPropertyListScalars.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <utility>

#include "QuellinCore/Support/LetterCase.h"
#include "QuellinCore/Support/Number.h"
#include "QuellinHelper/PropertyLists/DecimalNumber.h"

namespace quellin {
namespace {

std::string_view withoutLeadingWhiteSpace(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(xmlWhiteSpace), text.size()));
  return text;
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

/// Takes a run of digits from the front of `text`.
std::string_view takeDigits(std::string_view& text) {
  const auto count = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

std::optional<int> takeTwoDigits(std::string_view& text, std::string_view separator) {
  if (!takePrefix(text, separator)) return std::nullopt;
  const std::string_view digits = takeDigits(text);
  return digits.size() == 2 ? parseNumber<int>(digits) : std::nullopt;
}

constexpr std::uint8_t notBase64 = 64;

constexpr std::array<std::uint8_t, 256> base64Values = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(notBase64);
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t index = 0; index < alphabet.size(); ++index) {
    values[static_cast<unsigned char>(alphabet[index])] = static_cast<std::uint8_t>(index);
  }
  return values;
}();

}  // namespace

std::optional<PropertyListNode> parseXMLInteger(std::string_view text) {
  text = withoutLeadingWhiteSpace(text);
  const bool isNegative = takePrefix(text, "-");
  if (!isNegative) takePrefix(text, "+");
  const int base = takePrefix(text, "0x") || takePrefix(text, "0X") ? 16 : 10;
  const auto magnitude = parseNumber<std::uint64_t>(text, base);
  if (!magnitude) return std::nullopt;
  if (!isNegative) return PropertyListNode{*magnitude};
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (*magnitude > largest + 1) return std::nullopt;
  return PropertyListNode{static_cast<std::int64_t>(-*magnitude)};
}

std::optional<double> parseXMLReal(std::string_view text) {
  text = withoutLeadingWhiteSpace(text);
  if (const auto number = parseDecimal(text)) return number;
  if (equalIgnoringCase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
  const bool isNegative = takePrefix(text, "-");
  if (!isNegative) takePrefix(text, "+");
  if (!equalIgnoringCase(text, "inf") && !equalIgnoringCase(text, "infinity")) return std::nullopt;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return isNegative ? -infinity : infinity;
}

std::optional<Instant> parseXMLDate(std::string_view text) {
  const bool isNegative = takePrefix(text, "-");
  const auto year = parseNumber<int>(takeDigits(text));
  const auto month = takeTwoDigits(text, "-");
  const auto day = takeTwoDigits(text, "-");
  const auto hour = takeTwoDigits(text, "T");
  const auto minute = takeTwoDigits(text, ":");
  const auto second = takeTwoDigits(text, ":");
  if (!year || !month || !day || !hour || !minute || !second || text != "Z") return std::nullopt;
  if (*year > static_cast<int>(std::chrono::year::max()) || *hour > 23 || *minute > 59 || *second > 59) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year{isNegative ? -*year : *year},
                                         std::chrono::month{static_cast<unsigned>(*month)},
                                         std::chrono::day{static_cast<unsigned>(*day)}};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days{date} + std::chrono::hours{*hour} + std::chrono::minutes{*minute} +
         Seconds{static_cast<double>(*second)};
}

std::optional<std::string> decodeXMLData(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  int characters = 0;
  int padding = 0;
  for (const char character : text) {
    if (xmlWhiteSpace.contains(character)) continue;
    const std::uint8_t value = base64Values[static_cast<unsigned char>(character)];
    const bool isPadding = character == '=';
    if ((value == notBase64 && !isPadding) || (padding > 0 && (!isPadding || characters == 0)))
      return std::nullopt;
    padding += isPadding ? 1 : 0;
    group = group << 6 | (isPadding ? 0U : value);
    if (++characters < 4) continue;
    if (padding > 2) return std::nullopt;
    for (int byte = 0; byte < 3 - padding; ++byte)
      bytes.push_back(static_cast<char>(group >> (16 - 8 * byte) & 0xFF));
    group = 0;
    characters = 0;
  }
  if (characters != 0 || bytes.empty()) return std::nullopt;
  return bytes;
}

}  // namespace quellin
