// The values of every type, read through the parser.
#include "QuellinCore/Support/JSON/JSONReading.h"

#include <algorithm>
#include <string>

#include <simdjson.h>

#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/JSON/JSONNode.h"
#include "QuellinCore/Support/JSON/JSONNumber.h"
#include "QuellinCore/Support/JSON/JSONString.h"

namespace quellin::detail {
namespace {

namespace ondemand = simdjson::ondemand;
using Kind = DecodingError::Kind;

constexpr std::size_t depthLimit = 512;

// How many characters of a faulty value an error text quotes.
constexpr std::size_t longestQuote = 64;

std::string describePath(const PathStep* step) {
  if (step == nullptr) return {};
  std::string path = describePath(step->parent);
  if (step->key.empty()) return path + '[' + std::to_string(step->index) + ']';
  if (!path.empty()) path += '.';
  return path.append(step->key);
}

constexpr bool isBlank(char character) {
  return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

std::string_view withoutTrailingBlanks(std::string_view token) {
  while (!token.empty() && isBlank(token.back())) token.remove_suffix(1);
  return token;
}

}  // namespace

JSONNode::JSONNode(ondemand::value place, Reading& shared, const PathStep* step, std::size_t level)
    : value(place),
      token(withoutTrailingBlanks(value.raw_json_token())),
      reading(shared),
      path(step),
      depth(level) {}

void JSONNode::note(Kind kind, std::string description) {
  if (!reading.error) reading.error.emplace(kind, describePath(path), std::move(description));
}

namespace {

// Calls `visit` for every element; false when the array is malformed or too deep, or as soon as `visit` says
// so.
template <class Visit>
bool forEachElement(JSONNode& node, Visit visit) {
  if (node.depth >= depthLimit) return false;
  ondemand::array array;
  if (node.value.get_array().get(array) != simdjson::SUCCESS) return false;
  PathStep step{node.path, {}, 0};
  for (auto element : array) {
    ondemand::value value;
    if (std::move(element).get(value) != simdjson::SUCCESS) return false;
    JSONNode child{value, node.reading, &step, node.depth + 1};
    if (!visit(child)) return false;
    ++step.index;
  }
  return true;
}

// The text of a key, whose closing quote the parser has made sure of; no value when it holds a faulty escape.
std::optional<std::string_view> keyText(const char* start, std::string& buffer) {
  const char* end = start;
  bool hasEscape = false;
  for (; *end != '"'; ++end) {
    if (*end != '\\') continue;
    hasEscape = true;
    ++end;
  }
  const std::string_view raw{start, static_cast<std::size_t>(end - start)};
  if (!hasEscape) return raw;
  return unescapedJSON(raw, buffer);
}

// Calls `visit` with the key and value of every field, and with the step that leads to it.
template <class Visit>
bool forEachField(JSONNode& node, Visit visit) {
  if (node.depth >= depthLimit) return false;
  ondemand::object object;
  if (node.value.get_object().get(object) != simdjson::SUCCESS) return false;
  PathStep step{node.path, {}, 0};
  for (auto entry : object) {
    ondemand::field field;
    if (std::move(entry).get(field) != simdjson::SUCCESS) return false;
    const auto key = keyText(field.key().raw(), node.reading.keyBuffer);
    if (!key) return false;
    JSONNode child{field.value(), node.reading, &step, node.depth + 1};
    if (!visit(*key, child, step)) return false;
  }
  return true;
}

// The text of a string. The parser must be moved over it here: left to itself it takes a string before a
// colon for a key, wherever it stands.
std::optional<std::string_view> unescapedText(JSONNode& node) {
  if (node.value.get_raw_json_string().error() != simdjson::SUCCESS) return std::nullopt;
  if (node.token.size() < 2 || node.token.back() != '"') return std::nullopt;
  return unescapedJSON(node.token.substr(1, node.token.size() - 2), node.reading.textBuffer);
}

// Reads over a value; false when anything in it is not valid JSON.
bool skip(JSONNode& node) {
  switch (node.first()) {
    case '{':
      return forEachField(node, [](std::string_view, JSONNode& child, PathStep&) { return skip(child); });
    case '[':
      return forEachElement(node, [](JSONNode& child) { return skip(child); });
    case '"':
      return unescapedText(node).has_value();
    case 't':
      return node.token == "true";
    case 'f':
      return node.token == "false";
    case 'n':
      return node.token == "null";
    default:
      return parseJSONNumber(node.token).has_value();
  }
}

std::string_view foundType(const JSONNode& node) {
  switch (node.first()) {
    case '{':
      return "a dictionary";
    case '[':
      return "an array";
    case '"':
      return "a string";
    case 't':
    case 'f':
      return "bool";
    default:
      return "number";
  }
}

// Notes that a value is of another type, and reads over it.
bool mismatch(JSONNode& node, std::string_view expected) {
  if (!skip(node)) return false;
  if (isNull(node)) {
    node.note(Kind::valueNotFound,
              "Cannot get value of type " + std::string{expected} + " -- found null value instead");
  } else {
    node.note(Kind::typeMismatch, "Expected to decode " + std::string{expected} + " but found " +
                                      std::string{foundType(node)} + " instead.");
  }
  return true;
}

// The parser loses count of the digits of "0.x" and reads another number where 64 bits cannot hold them.
bool isMisread(const JSONNumber& number) {
  constexpr std::size_t digitsHeld = 19;
  const std::size_t zeros =
      std::min(number.fractionDigits.find_first_not_of('0'), number.fractionDigits.size());
  return number.wholeDigits == "0" && number.fractionDigits.size() - zeros > digitsHeld;
}

// Reads a number in the spelling that the parser gets right however long it is: digits and a short exponent.
bool readRespelled(const JSONNumber& number, double& value) {
  std::string digits{number.wholeDigits};
  digits += number.fractionDigits;
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
  const auto exponent = number.exponent - static_cast<std::int64_t>(number.fractionDigits.size());
  const simdjson::padded_string text{(number.isNegative ? "[-" : "[") + digits + 'e' +
                                     std::to_string(exponent) + ']'};
  ondemand::parser parser;
  ondemand::document document;
  return parser.iterate(text).get(document) == simdjson::SUCCESS &&
         document.get_array().at(0).get_double().get(value) == simdjson::SUCCESS;
}

void noteNotRepresentable(JSONNode& node, std::string_view type) {
  node.note(Kind::dataCorrupted, "Number " + std::string{node.token.substr(0, longestQuote)} +
                                     " is not representable in " + std::string{type} + ".");
}

// Hands the text of a string to `use`, or notes that the value is none.
template <class Use>
bool readText(JSONNode& node, Use use) {
  if (node.first() != '"') return mismatch(node, "String");
  const std::optional<std::string_view> text = unescapedText(node);
  if (!text) return false;
  use(*text);
  return true;
}

// The field of that name. Documents mostly hold their keys in one order, so it is looked for from `expected`
// on.
std::size_t findField(std::span<const FieldReader> fields, std::string_view name, std::size_t expected) {
  for (std::size_t index = expected; index < fields.size(); ++index) {
    if (fields[index].name == name) return index;
  }
  for (std::size_t index = 0; index < expected; ++index) {
    if (fields[index].name == name) return index;
  }
  return fields.size();
}

// Notes the first required field, in declaration order, that `seen` lacks.
void noteMissingField(JSONNode& node, std::span<const FieldReader> fields, std::uint64_t seen) {
  const FieldReader* missing = nullptr;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    const FieldReader& field = fields[index];
    if (!field.isRequired || ((seen >> index) & 1) != 0) continue;
    if (missing == nullptr || field.position < missing->position) missing = &field;
  }
  if (missing == nullptr) return;
  const std::string name{missing->name};
  node.note(Kind::keyNotFound, "No value associated with key CodingKeys(stringValue: \"" + name +
                                   "\", intValue: nil) (\"" + name + "\").");
}

}  // namespace

bool isNull(const JSONNode& node) { return node.token == "null"; }

bool readBool(JSONNode& node, bool& value) {
  if (node.first() != 't' && node.first() != 'f') return mismatch(node, "Bool");
  value = node.first() == 't';
  return skip(node);
}

bool readDouble(JSONNode& node, double& value) {
  if (!node.isNumber()) return mismatch(node, "Double");
  const std::optional<JSONNumber> number = parseJSONNumber(node.token);
  if (!number) return false;
  const bool isInRange = (!isMisread(*number) && node.value.get_double().get(value) == simdjson::SUCCESS) ||
                         readRespelled(*number, value);
  if (!isInRange || (value == 0 && !number->isZero())) noteNotRepresentable(node, "Double");
  return true;
}

bool readInteger(JSONNode& node, const IntegerType& type, std::uint64_t& bits) {
  if (!node.isNumber()) return mismatch(node, type.name);
  const std::optional<JSONNumber> number = parseJSONNumber(node.token);
  if (!number) return false;
  const std::optional<std::uint64_t> magnitude = number->integralMagnitude();
  if (!magnitude || *magnitude > (number->isNegative ? type.smallestMagnitude : type.largest)) {
    noteNotRepresentable(node, type.name);
    return true;
  }
  bits = number->isNegative ? std::uint64_t{0} - *magnitude : *magnitude;
  return true;
}

bool readString(JSONNode& node, std::string& value) {
  return readText(node, [&](std::string_view text) { value = text; });
}

bool readInstant(JSONNode& node, Instant& value) {
  return readText(node, [&](std::string_view text) {
    const std::optional<Instant> instant = parseISO8601(text);
    if (!instant) return node.note(Kind::dataCorrupted, "Expected date string to be ISO8601-formatted.");
    value = *instant;
  });
}

bool readUUID(JSONNode& node, UUID& value) {
  return readText(node, [&](std::string_view text) {
    const std::optional<UUID> uuid = UUID::fromText(text);
    if (!uuid) return node.note(Kind::dataCorrupted, "Attempted to decode UUID from invalid UUID string.");
    value = *uuid;
  });
}

bool readRawText(JSONNode& node, std::span<const std::string_view> rawTexts, std::size_t& index) {
  return readText(node, [&](std::string_view text) {
    for (std::size_t candidate = 0; candidate < rawTexts.size(); ++candidate) {
      if (rawTexts[candidate] != text) continue;
      index = candidate;
      return;
    }
    node.note(Kind::dataCorrupted,
              "Cannot initialize from invalid String value " + std::string{text.substr(0, longestQuote)});
  });
}

bool readArray(JSONNode& node, ReadFunction readElement, void* array) {
  if (node.first() != '[') return mismatch(node, "Array<Any>");
  return forEachElement(
      node, [&](JSONNode& child) { return child.reading.error ? skip(child) : readElement(child, array); });
}

bool readRecord(JSONNode& node, std::span<const FieldReader> fields, void* record) {
  if (node.first() != '{') return mismatch(node, "Dictionary<String, Any>");
  std::uint64_t seen = 0;
  std::size_t expected = 0;
  const auto readField = [&](std::string_view key, JSONNode& child, PathStep& step) {
    const std::size_t index = findField(fields, key, expected);
    if (index == fields.size() || ((seen >> index) & 1) != 0 || child.reading.error) return skip(child);
    seen |= std::uint64_t{1} << index;
    expected = index + 1;
    step.key = fields[index].name;
    return fields[index].read(child, record);
  };
  if (!forEachField(node, readField)) return false;
  noteMissingField(node, fields, seen);
  return true;
}

}  // namespace quellin::detail
