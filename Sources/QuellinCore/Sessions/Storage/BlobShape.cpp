#include "QuellinCore/Sessions/Storage/BlobShape.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "QuellinCore/Sessions/Storage/ByteStream.h"

namespace quellin {
namespace {

constexpr std::size_t dateLength = 20;  // 2025-03-04T09:41:00Z

constexpr std::array<bool, 256> numberCharacters = [] {
  std::array<bool, 256> result{};
  for (const char character : std::string_view("0123456789-+.eE"))
    result[static_cast<unsigned char>(character)] = true;
  return result;
}();

// The number characters at `start`.
std::string_view tokenAt(std::string_view text, std::size_t start) {
  std::size_t end = start;
  while (end < text.size() && numberCharacters[static_cast<unsigned char>(text[end])]) ++end;
  return text.substr(start, end - start);
}

bool startsNumber(char character) { return character == '-' || (character >= '0' && character <= '9'); }

// The place of the quote that ends the string whose first character is at `start`.
std::size_t endOfString(std::string_view text, std::size_t start) {
  for (std::size_t index = start; index < text.size(); ++index) {
    if (text[index] == '\\') {
      ++index;
    } else if (text[index] == '"') {
      return index;
    }
  }
  return text.size();
}

// A number with another form than the shape expects is announced ahead of the payloads.
void appendForm(std::string& bytes, std::size_t index, const BlobNumber& number) {
  appendVarint(bytes, index);
  bytes.push_back(static_cast<char>(number.form));
  bytes.push_back(static_cast<char>(number.decimals));
}

void appendPayload(std::string& bytes, const BlobNumber& number, const BlobNumber& expected) {
  if (number.form == BlobNumber::Form::text) {
    appendVarint(bytes, number.text.size());
    bytes.append(number.text);
    return;
  }
  const std::int64_t base = number.hasFormOf(expected) ? expected.payload : 0;
  const std::uint64_t difference =
      static_cast<std::uint64_t>(number.payload) - static_cast<std::uint64_t>(base);
  appendVarint(bytes, zigzag(static_cast<std::int64_t>(difference)));
}

bool readPayload(ByteReader& reader, BlobNumber& number, const BlobNumber& expected) {
  const auto value = reader.varint();
  if (!value) return false;
  if (number.form == BlobNumber::Form::text) {
    const auto text = reader.bytes(*value);
    number.text = text.value_or(std::string_view());
    return text.has_value();
  }
  const std::int64_t base = number.hasFormOf(expected) ? expected.payload : 0;
  number.payload = static_cast<std::int64_t>(static_cast<std::uint64_t>(unzigzag(*value)) +
                                             static_cast<std::uint64_t>(base));
  return true;
}

bool readForm(ByteReader& reader, BlobNumber& number) {
  const auto form = reader.byte();
  const auto decimals = reader.byte();
  if (!form || !decimals) return false;
  if (*form > static_cast<std::uint8_t>(BlobNumber::Form::text) || *decimals > BlobNumber::decimalsLimit)
    return false;
  number = {.form = static_cast<BlobNumber::Form>(*form), .decimals = *decimals};
  return true;
}

}  // namespace

BlobShape::BlobShape(std::string text) : text_(std::move(text)) {
  const std::string_view whole = text_;
  std::size_t index = 0;
  while (index < whole.size()) {
    if (whole[index] == '"') {
      const std::size_t end = endOfString(whole, index + 1);
      const std::string_view content = whole.substr(index + 1, end - index - 1);
      const auto date = content.size() == dateLength ? blobDate(content) : std::nullopt;
      if (date) {
        parts_.push_back({tailStart_, index + 1 - tailStart_, *date, true});
        tailStart_ = end;
      }
      index = end + 1;
    } else if (startsNumber(whole[index])) {
      const std::string_view token = tokenAt(whole, index);
      parts_.push_back({tailStart_, index - tailStart_, blobNumber(token, BlobNumber::Form::decimal), false});
      index += token.size();
      tailStart_ = index;
    } else {
      ++index;
    }
  }
}

std::string_view BlobShape::stretch(std::size_t start, std::size_t length) const {
  return std::string_view(text_).substr(start, length);
}

bool BlobShape::describe(std::string_view text, std::string& bytes) const {
  constexpr std::size_t usualLength = 512;
  std::string forms;
  std::string payloads;
  payloads.reserve(usualLength);
  std::size_t formCount = 0;
  std::size_t position = 0;
  for (std::size_t index = 0; index < parts_.size(); ++index) {
    const Part& part = parts_[index];
    if (text.substr(position, part.length) != stretch(part.start, part.length)) return false;
    position += part.length;
    const std::string_view token = part.isDate ? text.substr(position, dateLength) : tokenAt(text, position);
    if (token.empty()) return false;
    const auto number = part.isDate ? blobDate(token) : blobNumber(token, part.number.form);
    if (!number) return false;
    position += token.size();
    if (!number->hasFormOf(part.number)) {
      appendForm(forms, index, *number);
      ++formCount;
    }
    appendPayload(payloads, *number, part.number);
  }
  if (text.substr(position) != stretch(tailStart_, text_.size())) return false;
  appendVarint(bytes, formCount);
  bytes.append(forms).append(payloads);
  return true;
}

std::optional<std::string> BlobShape::spell(std::string_view bytes) const {
  ByteReader reader(bytes);
  const auto formCount = reader.varint();
  if (!formCount || *formCount > parts_.size()) return std::nullopt;
  std::vector<std::pair<std::uint64_t, BlobNumber>> forms(static_cast<std::size_t>(*formCount));
  for (auto& [index, number] : forms) {
    const auto place = reader.varint();
    if (!place || !readForm(reader, number)) return std::nullopt;
    index = *place;
  }
  std::string text;
  text.reserve(text_.size() + text_.size() / 8);
  auto nextForm = forms.begin();
  for (std::size_t index = 0; index < parts_.size(); ++index) {
    const Part& part = parts_[index];
    BlobNumber number{.form = part.number.form, .decimals = part.number.decimals};
    if (nextForm != forms.end() && nextForm->first == index) number = (nextForm++)->second;
    if (!readPayload(reader, number, part.number)) return std::nullopt;
    text.append(stretch(part.start, part.length));
    appendSpelling(text, number);
  }
  if (nextForm != forms.end() || !reader.rest().empty()) return std::nullopt;
  return text.append(stretch(tailStart_, text_.size()));
}

}  // namespace quellin
