#include "quellin/Presentation/FigureText.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

namespace quellin::cli {

std::string decimal(const std::optional<double>& value, int decimals) {
  if (!value) return unknown;
  // Rounding must not leave a minus in front of nothing.
  const double unit = std::pow(10.0, -decimals);
  return fmt::format("{:.{}f}", std::abs(*value) < unit / 2 ? 0.0 : *value, decimals);
}

std::string signedDecimal(double value, int decimals) {
  const std::string text = decimal(value, decimals);
  return value > 0 && text != decimal(0, decimals) ? "+" + text : text;
}

std::string figureText(const std::optional<double>& value, const std::string& unit) {
  if (unit == "W" || unit == "V" || unit == "A") return decimal(value, 2);
  return decimal(value, unit == "°C" ? 1 : 0);
}

std::string whole(const std::optional<std::int64_t>& value) {
  return value ? fmt::format("{}", *value) : std::string{unknown};
}

std::string counted(std::int64_t count, const std::string& thing) {
  return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string durationText(Seconds duration) {
  const auto seconds = static_cast<std::int64_t>(std::llround(std::max(duration.count(), 0.0)));
  if (seconds < 60) return fmt::format("{} s", seconds);
  if (seconds < 3600) return fmt::format("{} min {} s", seconds / 60, seconds % 60);
  return fmt::format("{} h {} min", seconds / 3600, seconds % 3600 / 60);
}

std::string byteText(double bytes) {
  static constexpr std::array<const char*, 4> units{"B", "kB", "MB", "GB"};
  std::size_t unit = 0;
  while (bytes >= 1000 && unit + 1 < units.size()) {
    bytes /= 1000;
    ++unit;
  }
  return fmt::format("{:.{}f} {}", bytes, unit == 0 ? 0 : 1, units.at(unit));
}

}  // namespace quellin::cli
