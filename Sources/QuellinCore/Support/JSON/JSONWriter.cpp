#include "QuellinCore/Support/JSON/JSONWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "QuellinCore/Support/HexDigits.h"
#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/JSON/ShortestDecimal.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// A sign and 19 digits, or 20 digits.
constexpr std::size_t integerRoom = 20;

// True when the eight bytes go into a JSON string as they are: ASCII without controls, quote, slash and
// backslash.
bool areEightPlain(const char* bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highBits = 0x8080808080808080;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  const auto hasZeroByte = [](std::uint64_t value) { return (value - ones) & ~value; };
  const std::uint64_t controls = word - ones * 0x20;
  const std::uint64_t special =
      hasZeroByte(word ^ (ones * '"')) | hasZeroByte(word ^ (ones * '\\')) | hasZeroByte(word ^ (ones * '/'));
  return ((word | controls | special) & highBits) == 0;
}

constexpr std::array<bool, 256> plainCharacters = [] {
  std::array<bool, 256> plain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = true;
  plain['"'] = plain['\\'] = plain['/'] = false;
  return plain;
}();

std::size_t plainPrefix(std::string_view text) {
  std::size_t length = 0;
  while (length + 8 <= text.size() && areEightPlain(text.data() + length)) length += 8;
  while (length < text.size() && plainCharacters[static_cast<unsigned char>(text[length])]) ++length;
  return length;
}

// The letter after the backslash where a short escape exists.
constexpr char shortEscape(char character) {
  switch (character) {
    case '"':
    case '\\':
    case '/':
      return character;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return '\0';
  }
}

}  // namespace

JSONWriter::JSONWriter(std::string& text, JSONLayout layout)
    : text_(text),
      originalSize_(text.size()),
      layout_(layout),
      cursor_(text.data() + text.size()),
      limit_(cursor_) {}

JSONWriter::~JSONWriter() { text_.resize(failed_ ? originalSize_ : offset()); }

void JSONWriter::grow(std::size_t count) {
  const std::size_t used = offset();
  const std::size_t size = std::max({text_.capacity(), used + count, text_.size() * 2});
  text_.resize_and_overwrite(size, [](char*, std::size_t length) { return length; });
  cursor_ = text_.data() + used;
  limit_ = text_.data() + size;
}

void JSONWriter::put(char character) {
  reserve(1);
  *cursor_++ = character;
}

void JSONWriter::put(std::string_view characters) {
  reserve(characters.size());
  std::memcpy(cursor_, characters.data(), characters.size());
  cursor_ += characters.size();
}

void JSONWriter::newline() {
  const std::size_t indent = depth_ * 2;
  reserve(indent + 1);
  *cursor_++ = '\n';
  std::memset(cursor_, ' ', indent);
  cursor_ += indent;
}

std::size_t JSONWriter::open() {
  if (++depth_ >= depthLimit) fail("Too many nested arrays or dictionaries.");
  return offset();
}

// Every item was begun with a comma; the first one's place is that of the opening bracket.
void JSONWriter::close(std::size_t start, char opening, char closing) {
  --depth_;
  if (offset() == start) {
    put(opening);
    if (layout_ == JSONLayout::pretty) put('\n');
  } else {
    text_[start] = opening;
  }
  if (layout_ == JSONLayout::pretty) newline();
  put(closing);
}

void JSONWriter::element() {
  put(',');
  if (layout_ == JSONLayout::pretty) newline();
}

void JSONWriter::prettyField(std::string_view quotedName) {
  element();
  put(quotedName);
  put(" : ");
}

void JSONWriter::boolean(bool value) { put(value ? std::string_view{"true"} : std::string_view{"false"}); }

void JSONWriter::integer(std::int64_t value) {
  reserve(integerRoom);
  cursor_ = std::to_chars(cursor_, limit_, value).ptr;
}

void JSONWriter::unsignedInteger(std::uint64_t value) {
  reserve(integerRoom);
  cursor_ = std::to_chars(cursor_, limit_, value).ptr;
}

void JSONWriter::number(double value) {
  if (!std::isfinite(value)) return fail("Unable to encode a number that is not finite directly in JSON.");
  put(ShortestDecimal(value).text());
}

void JSONWriter::instant(Instant value) {
  if (!std::isfinite(value.time_since_epoch().count()))
    return fail("Unable to encode a date that is not finite.");
  const ISO8601Text text = iso8601Text(value);
  put('"');
  put(text.view());
  put('"');
}

void JSONWriter::uuid(const UUID& value) {
  const UUID::Characters characters = value.characters();
  put('"');
  put({characters.data(), characters.size()});
  put('"');
}

void JSONWriter::string(std::string_view value) {
  put('"');
  while (true) {
    const std::size_t plain = plainPrefix(value);
    put(value.substr(0, plain));
    value.remove_prefix(plain);
    if (value.empty()) break;
    escape(value);
  }
  put('"');
}

// Takes one character off the front of `rest` that does not go into the text as plain ASCII.
void JSONWriter::escape(std::string_view& rest) {
  const char character = rest.front();
  const UTF8Step step = firstUTF8Step(rest);
  if (!step.isValid) {
    put("\xEF\xBF\xBD");
  } else if (step.length > 1) {
    put(rest.substr(0, step.length));
  } else if (const char letter = shortEscape(character); letter != '\0') {
    put('\\');
    put(letter);
  } else {
    const auto byte = static_cast<unsigned char>(character);
    put("\\u00");
    put(lowerCaseHexDigits[byte >> 4]);
    put(lowerCaseHexDigits[byte & 0x0F]);
  }
  rest.remove_prefix(step.length);
}

void JSONWriter::fail(std::string_view reason) {
  if (failed_) return;
  failed_ = true;
  reason_ = reason;
}

void JSONWriter::failedIn(std::string_view fieldName) {
  const bool needsDot = !path_.empty() && path_.front() != '[';
  path_.insert(0, needsDot ? "." : "");
  path_.insert(0, fieldName);
}

void JSONWriter::failedIn(std::size_t index) {
  const bool needsDot = !path_.empty() && path_.front() != '[';
  path_.insert(0, "[" + std::to_string(index) + (needsDot ? "]." : "]"));
}

}  // namespace quellin
