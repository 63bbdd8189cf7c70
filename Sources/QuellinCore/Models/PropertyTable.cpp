#include "QuellinCore/Models/PropertyTable.h"

#include <algorithm>
#include <utility>

namespace quellin {
namespace {

template <class Kind>
const Kind* valueOfKind(const PropertyTable& table, std::string_view key) {
  const PropertyTable::Value* value = table.find(key);
  return value == nullptr ? nullptr : std::get_if<Kind>(value);
}

template <class Kind>
std::optional<Kind> copyOfKind(const PropertyTable& table, std::string_view key) {
  const Kind* value = valueOfKind<Kind>(table, key);
  return value == nullptr ? std::nullopt : std::optional{*value};
}

}  // namespace

PropertyTable::PropertyTable() = default;
PropertyTable::PropertyTable(const PropertyTable&) = default;
PropertyTable::PropertyTable(PropertyTable&&) noexcept = default;
PropertyTable& PropertyTable::operator=(const PropertyTable&) = default;
PropertyTable& PropertyTable::operator=(PropertyTable&&) noexcept = default;
PropertyTable::~PropertyTable() = default;

PropertyTable::PropertyTable(std::initializer_list<Property> properties) {
  for (const Property& property : properties) set(property.key, property.value);
}

void PropertyTable::set(std::string key, Value value) {
  const auto existing = std::ranges::find(properties_, key, &Property::key);
  if (existing == properties_.end()) {
    properties_.push_back(Property{std::move(key), std::move(value)});
  } else {
    existing->value = std::move(value);
  }
}

const PropertyTable::Value* PropertyTable::find(std::string_view key) const {
  const auto found = std::ranges::find(properties_, key, &Property::key);
  return found == properties_.end() ? nullptr : &found->value;
}

std::optional<std::int64_t> PropertyTable::integer(std::string_view key) const {
  return copyOfKind<std::int64_t>(*this, key);
}

std::optional<bool> PropertyTable::boolean(std::string_view key) const {
  return copyOfKind<bool>(*this, key);
}

std::optional<std::string> PropertyTable::string(std::string_view key) const {
  return copyOfKind<std::string>(*this, key);
}

const PropertyTable* PropertyTable::table(std::string_view key) const {
  return valueOfKind<PropertyTable>(*this, key);
}

std::span<const Property> PropertyTable::properties() const { return properties_; }

bool operator==(const PropertyTable& left, const PropertyTable& right) {
  return left.properties_ == right.properties_;
}

}  // namespace quellin
