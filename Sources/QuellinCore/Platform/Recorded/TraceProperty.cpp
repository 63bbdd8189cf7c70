#include "QuellinCore/Platform/Recorded/TraceProperty.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>

#include "QuellinCore/Support/LetterCase.h"

namespace quellin {
namespace {

// Far more than any battery has; looking a key up takes longer the more there are.
constexpr std::size_t mostProperties = 4096;

constexpr const char* redactedText = "redacted";

bool namesSerialNumber(std::string_view key) { return lowercased(key).contains("serial"); }

/// Sets the field for the kind of a value.
struct Spelling {
  TraceProperty& property;
  SerialNumbers serialNumbers;

  void operator()(std::int64_t value) const { property.integer = value; }
  void operator()(bool value) const { property.boolean = value; }
  void operator()(const std::string& value) const { property.string = value; }
  void operator()(double value) const {
    property.nonFinite = nonFiniteKind(value);
    if (!property.nonFinite) property.number = value;
  }
  void operator()(const NumberObject& value) const { property.numberObject = value.integerValue; }
  void operator()(const PropertyTable& value) const {
    property.table = traceProperties(value, serialNumbers);
  }
};

/// Collects the values that an entry gives.
class Reading {
 public:
  template <class Value>
  void add(Value value) {
    ++count_;
    value_ = std::move(value);
  }

  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] PropertyTable::Value take() { return std::move(value_); }

 private:
  std::size_t count_ = 0;
  PropertyTable::Value value_;
};

std::expected<Reading, std::string> read(const TraceProperty& property) {
  Reading reading;
  if (property.integer) reading.add(*property.integer);
  if (property.boolean) reading.add(*property.boolean);
  if (property.string) reading.add(*property.string);
  if (property.number) reading.add(*property.number);
  if (property.nonFinite) reading.add(nonFiniteValue(*property.nonFinite));
  if (property.numberObject) reading.add(NumberObject{*property.numberObject});
  if (property.table) {
    auto table = propertyTable(*property.table);
    if (!table) return std::unexpected(std::move(table.error()));
    reading.add(*std::move(table));
  }
  return reading;
}

}  // namespace

std::vector<TraceProperty> traceProperties(const PropertyTable& table, SerialNumbers serialNumbers) {
  std::vector<TraceProperty> properties;
  properties.reserve(table.properties().size());
  for (const auto& [key, value] : table.properties()) {
    TraceProperty property;
    property.key = key;
    if (serialNumbers == SerialNumbers::redacted && namesSerialNumber(key)) {
      if (!std::holds_alternative<std::string>(value)) continue;
      property.string = redactedText;
    } else {
      std::visit(Spelling{property, serialNumbers}, value);
    }
    properties.push_back(std::move(property));
  }
  return properties;
}

std::expected<PropertyTable, std::string> propertyTable(const std::vector<TraceProperty>& properties) {
  if (properties.size() > mostProperties) return std::unexpected("a table has more than 4096 entries");
  PropertyTable table;
  for (const TraceProperty& property : properties) {
    auto reading = read(property);
    if (!reading) return std::unexpected(std::move(reading.error()));
    if (reading->count() > 1) {
      return std::unexpected("the entry \"" + property.key + "\" of a table has more than one value");
    }
    if (reading->count() == 1) table.set(property.key, reading->take());
  }
  return table;
}

}  // namespace quellin
