#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin::cli {

/// One figure as it is shown. Neither `value` nor `text` means that it is not known.
struct Figure {
  std::string group;                ///< what it belongs to: "Battery"
  std::string name;                 ///< "Voltage"
  std::optional<double> value;      ///< the figure, where it is a number
  std::optional<std::string> text;  ///< the figure, where it is a word
  std::string unit;                 ///< empty where there is none
  std::string source;               ///< where it came from
  std::string kind;  ///< what it is: "measured", "derived", "model", "rated", "state", or a reading's
  std::optional<std::string> confidence;  ///< of a power reading: what it rests on
  std::optional<std::string> note;        ///< what it includes, or why it is not known

  /// Whether there is a figure at all.
  [[nodiscard]] bool isKnown() const { return value.has_value() || text.has_value(); }

  static constexpr auto fields() {
    return std::tuple{Field{"group", &Figure::group}, Field{"name", &Figure::name},
                      Field{"value", &Figure::value}, Field{"text", &Figure::text},
                      Field{"unit", &Figure::unit},   Field{"source", &Figure::source},
                      Field{"kind", &Figure::kind},   Field{"confidence", &Figure::confidence},
                      Field{"note", &Figure::note}};
  }
};

/// Why there is no primary power reading.
inline constexpr const char* noPowerReading = "Neither the battery's flow nor the energy counters are known";

/// All that `state` says, as figures; what `sources` say about themselves explains what it does not say. The
/// battery's serial number is left out.
[[nodiscard]] std::vector<Figure> figures(const SystemPowerState& state, const PlatformSources& sources);

}  // namespace quellin::cli
