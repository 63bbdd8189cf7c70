#include "quellin/CommandLine/Options.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace quellin::cli {
namespace {

// Takes the digits at the start of `text`; no value without any or with too many.
std::optional<std::uint32_t> takeDigits(std::string_view& text) {
  std::uint32_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  return number;
}

// Takes the decimal number at the start of `text`, which the C library would read as the locale has it.
std::optional<double> takeDecimal(std::string_view& text) {
  const auto whole = takeDigits(text);
  if (!whole) return std::nullopt;
  if (!text.starts_with('.')) return *whole;
  text.remove_prefix(1);
  const std::size_t before = text.size();
  const auto fraction = takeDigits(text);
  if (!fraction) return std::nullopt;
  return *whole + *fraction / std::pow(10.0, static_cast<double>(before - text.size()));
}

std::optional<double> secondsOf(std::string_view unit) {
  if (unit.empty() || unit == "s") return 1;
  if (unit == "ms") return 0.001;
  if (unit == "m") return 60;
  if (unit == "h") return 3600;
  return std::nullopt;
}

}  // namespace

std::vector<std::string> programWords(const Options& options) {
  std::vector<std::string> words{options.word};
  words.insert(words.end(), options.arguments.begin(), options.arguments.end());
  return words;
}

std::optional<Seconds> parseDuration(const std::string& text) {
  std::string_view rest = text;
  const auto number = takeDecimal(rest);
  const auto unit = secondsOf(rest);
  if (!number || !unit || *number <= 0) return std::nullopt;
  return Seconds{*number * *unit};
}

std::optional<double> parseWatts(const std::string& text) {
  std::string_view rest = text;
  const auto watts = takeDecimal(rest);
  return rest.empty() ? watts : std::nullopt;
}

std::optional<double> parsePercent(const std::string& text) {
  std::string_view rest = text;
  const auto percent = takeDecimal(rest);
  return rest.empty() || rest == "%" ? percent : std::nullopt;
}

std::optional<PlaybackSpeed> parseSpeed(const std::string& text) {
  if (text == "max") return PlaybackSpeed::maximum();
  std::string_view rest = text;
  const auto factor = takeDecimal(rest);
  if (!factor || !rest.empty()) return std::nullopt;
  return PlaybackSpeed::times(*factor);
}

}  // namespace quellin::cli
