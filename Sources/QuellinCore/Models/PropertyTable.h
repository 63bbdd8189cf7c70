#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quellin {

/// A number that is neither a 64-bit signed integer nor floating point (wider integers, decimals), reduced by
/// the host to the integer that it converts to.
struct NumberObject {
  std::int64_t integerValue = 0;  ///< as the host converts it

  bool operator==(const NumberObject&) const = default;
};

struct Property;

/// A string-keyed table of plain values, as hardware registries publish them. Keeps the order of first
/// insertion. A plain value: several threads may read one, as long as none changes it.
class PropertyTable {
 public:
  /// One value; its kind is kept, so an integer is never taken for a double.
  using Value = std::variant<std::int64_t, bool, std::string, double, NumberObject, PropertyTable>;

  PropertyTable();
  PropertyTable(std::initializer_list<Property> properties);  ///< of a repeated key the last value counts
  PropertyTable(const PropertyTable&);
  PropertyTable(PropertyTable&&) noexcept;
  PropertyTable& operator=(const PropertyTable&);
  PropertyTable& operator=(PropertyTable&&) noexcept;
  ~PropertyTable();

  /// Adds the value, or replaces the one that has this key.
  void set(std::string key, Value value);

  /// The value under `key` whatever its kind; null when there is none. Valid until the table changes.
  [[nodiscard]] const Value* find(std::string_view key) const;

  /// The value under `key` if it is of that very kind; a value of another kind counts as missing.
  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const;
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;        ///< see `integer`
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const;  ///< see `integer`
  [[nodiscard]] const PropertyTable* table(std::string_view key) const;  ///< valid until the table changes

  /// All properties, in the order of their first insertion.
  [[nodiscard]] std::span<const Property> properties() const;

  friend bool operator==(const PropertyTable& left, const PropertyTable& right);

 private:
  std::vector<Property> properties_;
};

/// One entry of a `PropertyTable`.
struct Property {
  std::string key;             ///< once in a table
  PropertyTable::Value value;  ///< of any kind

  bool operator==(const Property&) const = default;
};

}  // namespace quellin
