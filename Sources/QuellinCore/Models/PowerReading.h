#pragma once

#include <array>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// Which quantity a watt figure is: what a battery gives, takes in or adds to a charger; the silicon model.
enum class PowerReadingKind { batteryDischarge, batteryChargeInput, batterySupplement, ioReportSiliconPower };

template <>
inline constexpr std::array rawValues<PowerReadingKind>{
    std::string_view{"batteryDischarge"}, std::string_view{"batteryChargeInput"},
    std::string_view{"batterySupplement"}, std::string_view{"ioReportSiliconPower"}};

/// Where a watt figure came from: the battery's terminals, or the energy model of the silicon.
enum class PowerReadingConfidence { batteryTerminal, ioReport };

template <>
inline constexpr std::array rawValues<PowerReadingConfidence>{std::string_view{"batteryTerminal"},
                                                              std::string_view{"ioReport"}};

/// One watt figure with its provenance.
struct PowerReading {
  double watts = 0;                     ///< never negative
  PowerReadingKind kind{};              ///< the physical quantity
  std::string label;                    ///< short human label
  std::string summary;                  ///< one line on what the figure does and does not include
  PowerReadingConfidence confidence{};  ///< who measured or modelled it

  static constexpr auto fields() {
    return std::tuple{Field{"watts", &PowerReading::watts}, Field{"kind", &PowerReading::kind},
                      Field{"label", &PowerReading::label}, Field{"summary", &PowerReading::summary},
                      Field{"confidence", &PowerReading::confidence}};
  }

  bool operator==(const PowerReading&) const = default;
};

}  // namespace quellin
