#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/PropertyTable.h"
#include "QuellinCore/Platform/Recorded/TraceText.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What becomes of serial numbers in a trace.
enum class SerialNumbers {
  redacted,  ///< the text of every key that contains "serial" becomes "redacted"; other kinds are left out
  kept,
};

/// One entry of a property table: the field that is there names the kind of its value.
struct TraceProperty {
  std::string key;                                  ///< as the host spells it
  std::optional<std::int64_t> integer;              ///< 64-bit, signed
  std::optional<bool> boolean;                      ///< kept apart from 0 and 1
  std::optional<std::string> string;                ///< UTF-8
  std::optional<double> number;                     ///< finite
  std::optional<NonFinite> nonFinite;               ///< a double that JSON cannot spell
  std::optional<std::int64_t> numberObject;         ///< see `NumberObject`
  std::optional<std::vector<TraceProperty>> table;  ///< in the order of the host

  static constexpr auto fields() {
    return std::tuple{Field{"key", &TraceProperty::key},
                      Field{"integer", &TraceProperty::integer},
                      Field{"boolean", &TraceProperty::boolean},
                      Field{"string", &TraceProperty::string},
                      Field{"double", &TraceProperty::number},
                      Field{"nonFinite", &TraceProperty::nonFinite},
                      Field{"numberObject", &TraceProperty::numberObject},
                      Field{"table", &TraceProperty::table}};
  }
};

/// The entries of `table` for a trace.
[[nodiscard]] std::vector<TraceProperty> traceProperties(const PropertyTable& table,
                                                         SerialNumbers serialNumbers);

/// The table that `properties` spell, or why they are none: an entry with two values, or more than 4096
/// entries. An entry without a value is of a kind that this version does not know; it is left out.
[[nodiscard]] std::expected<PropertyTable, std::string> propertyTable(
    const std::vector<TraceProperty>& properties);

}  // namespace quellin
