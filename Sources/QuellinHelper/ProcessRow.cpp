#include "QuellinHelper/ProcessRow.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/Number.h"
#include "QuellinHelper/PowermetricsSearch.h"

namespace quellin {
namespace {

using namespace std::string_view_literals;

constexpr std::array pidKeys{"pid"sv, "PID"sv, "process_id"sv, "process id"sv};
constexpr std::array nameKeys{"name"sv,    "Name"sv,         "command"sv,
                              "Command"sv, "process_name"sv, "process name"sv};
constexpr std::array energyKeys{"energy_impact"sv, "energy impact"sv, "Energy Impact"sv, "energyImpact"sv};
constexpr std::array cpuKeys{"cpu_time"sv,    "cpu time"sv, "CPU Time"sv,
                             "cpu_percent"sv, "CPU %"sv,    "cpuTimePercent"sv};
constexpr std::array wakeupKeys{"wakeups"sv, "Wakeups"sv, "wakeups_per_s"sv, "wakeups/sec"sv,
                                "wakeupsPerSecond"sv};
constexpr std::array diskKeys{"disk_bytes"sv, "disk bytes"sv, "diskBytesPerSecond"sv, "io_bytes"sv,
                              "IO bytes"sv};

std::optional<std::int32_t> pidFromText(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  return parseNumber<std::int32_t>(text);
}

std::optional<std::int32_t> pidFromReal(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double whole = std::trunc(value);
  const bool fits = whole >= Limits::min() && whole <= Limits::max();  // also false for a NaN
  return fits ? std::optional{static_cast<std::int32_t>(whole)} : std::nullopt;
}

std::optional<std::int32_t> pid(const PropertyListNode& dictionary) {
  const auto value = PowermetricsSearch::value(pidKeys, dictionary);
  if (!value) return std::nullopt;
  if (const auto integer = value->integer()) return checkedCast<std::int32_t>(*integer);
  if (const auto integer = value->largeInteger()) return checkedCast<std::int32_t>(*integer);
  if (const auto real = value->real()) return pidFromReal(*real);
  if (const auto text = value->string()) return pidFromText(*text);
  return std::nullopt;
}

}  // namespace

std::optional<ProProcessEnergy> processRow(const PropertyListNode& dictionary) {
  const auto identifier = pid(dictionary);
  if (!identifier) return std::nullopt;
  const auto nameValue = PowermetricsSearch::value(nameKeys, dictionary);
  const auto name = nameValue ? nameValue->string() : std::nullopt;
  if (!name || name->empty()) return std::nullopt;

  ProProcessEnergy row{.pid = *identifier,
                       .name = std::string{*name},
                       .energyImpact = PowermetricsSearch::numberValue(energyKeys, dictionary),
                       .cpuTimePercent = PowermetricsSearch::numberValue(cpuKeys, dictionary),
                       .wakeupsPerSecond = PowermetricsSearch::numberValue(wakeupKeys, dictionary),
                       .diskBytesPerSecond = PowermetricsSearch::numberValue(diskKeys, dictionary)};
  const bool hasFigure =
      row.energyImpact || row.cpuTimePercent || row.wakeupsPerSecond || row.diskBytesPerSecond;
  return hasFigure ? std::optional{std::move(row)} : std::nullopt;
}

}  // namespace quellin
