#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// A power figure found in the parsed output.
struct LocatedNumber {
  double rawValue = 0;          ///< the number as found
  std::optional<double> watts;  ///< above 100 the number is taken to be milliwatts, else watts
  std::string source;  ///< "exact:" and the first exact key, or "fallback:[" tokens joined with "," "]"

  bool operator==(const LocatedNumber&) const = default;
};

/// The tolerant search for figures in the measuring tool's output. It knows several spellings of each key
/// instead of a schema, compares them after normalising them, and walks dictionaries in document order. Pure
/// functions.
///
/// A boolean is no number. A text is a number only in decimal form; one that exceeds every double is none.
class PowermetricsSearch {
 public:
  using Keys = std::span<const std::string_view>;

  /// The first sample's number under one of the `exact` keys, else the first sample's number under a key that
  /// contains all of `substringTokens`.
  [[nodiscard]] static std::optional<LocatedNumber> locatedNumber(std::span<const PropertyListNode> samples,
                                                                  Keys exact, Keys substringTokens);

  /// The first number at or below `node` whose key equals one of `keys` after normalising. The entries of a
  /// dictionary come before anything nested in it; an entry that is no number is passed over.
  [[nodiscard]] static std::optional<double> firstExactNumber(const PropertyListNode& node, Keys keys);

  /// The same for keys that contain every one of `tokens`, in any order.
  [[nodiscard]] static std::optional<double> firstRecursiveNumber(const PropertyListNode& node, Keys tokens);

  /// Appends the process rows at and below `node`, depth first. A dictionary is a row when it has a process
  /// identifier, a name and at least one figure. An integer identifier beyond 32 bits ends the process; a
  /// real one is truncated, and where it does not fit there is no row.
  static void collectProcesses(const PropertyListNode& node, std::vector<ProProcessEnergy>& rows);

  /// The value of the first of `keys` that the dictionary has exactly, else of its first entry whose
  /// normalised key equals one of them normalised.
  [[nodiscard]] static std::optional<PropertyListNode> value(Keys keys, const PropertyListNode& dictionary);

  /// That value as a number; a text may be surrounded by "%" and blanks.
  [[nodiscard]] static std::optional<double> numberValue(Keys keys, const PropertyListNode& dictionary);

  /// A node as a number; a text may be surrounded by blanks, "W" and "m".
  [[nodiscard]] static std::optional<double> numeric(const PropertyListNode& node);

  /// How a figure was found, such as "exact:cpu_power raw=1234 normalized=1.234W".
  [[nodiscard]] static std::string provenanceSummary(const LocatedNumber& number);
};

}  // namespace quellin
