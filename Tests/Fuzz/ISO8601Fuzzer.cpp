// Dates: what is read is written and read as the same again, and what is written is what the standard
// library's calendar says.

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "QuellinCore/Support/ISO8601.h"

using namespace quellin;
using fuzzing::require;

namespace {

// Beyond, instants are written as this limit.
constexpr double latestSecond = 0x1p53;
// Within, the years are those that the standard library knows: up to 32767.
constexpr double calendarSeconds = 9e11;

void checkText(std::string_view text) {
  const auto instant = parseISO8601(text);
  if (!instant) return;
  const std::string written = formatISO8601(*instant);
  const auto again = parseISO8601(written);
  // A zone can move a date to before the year 0, which is written but not read.
  if (written.starts_with('-')) return require(!again);
  require(again && formatISO8601(*again) == written);
  if (std::abs(instant->time_since_epoch().count()) <= latestSecond) require(again == instant);
}

std::string calendarText(Instant instant) {
  namespace chrono = std::chrono;
  const auto second = chrono::floor<chrono::seconds>(instant);
  const auto day = chrono::floor<chrono::days>(second);
  const chrono::year_month_day date{day};
  const chrono::hh_mm_ss time{second - day};
  const int year = static_cast<int>(date.year());
  char text[64];
  std::snprintf(text, sizeof text, "%s%04d-%02u-%02uT%02ld:%02ld:%02ldZ", year < 0 ? "-" : "", std::abs(year),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<long>(time.hours().count()), static_cast<long>(time.minutes().count()),
                static_cast<long>(time.seconds().count()));
  return text;
}

void checkInstant(double seconds) {
  const std::string text = formatISO8601(instantAt(seconds));
  require(text.size() <= ISO8601Text{}.characters.size());
  if (std::abs(seconds) <= calendarSeconds) require(text == calendarText(instantAt(seconds)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkText({reinterpret_cast<const char*>(data), size});
  fuzzing::ByteFeed feed(data, size);
  const auto seconds = feed.take<double>();
  checkInstant(seconds);
  checkInstant(std::fmod(seconds, calendarSeconds));
  return 0;
}
