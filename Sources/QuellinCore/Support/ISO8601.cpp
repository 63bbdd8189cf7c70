#include "QuellinCore/Support/ISO8601.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace quellin {
namespace {

constexpr std::int64_t secondsPerDay = 86'400;
constexpr std::int64_t daysPerEra = 146'097;  // 400 years
constexpr std::int64_t daysFromMarchOfYearZero = 719'468;

constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

struct CivilDate {
  std::int64_t year = 0;
  std::int64_t month = 0;
  std::int64_t day = 0;
};

// Years are counted from 1 March here, so that the leap day is the last day of its year.
constexpr CivilDate civilDate(std::int64_t daysSince1970) {
  const std::int64_t days = daysSince1970 + daysFromMarchOfYearZero;
  const std::int64_t era = floorDivide(days, daysPerEra);
  const std::int64_t dayOfEra = days - era * daysPerEra;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / (daysPerEra - 1)) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

constexpr std::int64_t daysSince1970(const CivilDate& date) {
  const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);
  const std::int64_t era = floorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t monthFromMarch = date.month > 2 ? date.month - 3 : date.month + 9;
  const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * daysPerEra + dayOfEra - daysFromMarchOfYearZero;
}

static_assert(daysSince1970({1970, 1, 1}) == 0);
static_assert(civilDate(19'416).year == 2023 && civilDate(19'416).month == 2 && civilDate(19'416).day == 28);

constexpr double latestSecond = 0x1p53;

std::int64_t wholeSeconds(Instant instant) {
  const double seconds = instant.time_since_epoch().count();
  if (std::isnan(seconds)) return 0;
  return static_cast<std::int64_t>(std::floor(std::clamp(seconds, -latestSecond, latestSecond)));
}

class TextWriter {
 public:
  explicit TextWriter(ISO8601Text& text) : text_(text) {}

  void put(char character) { text_.characters[text_.length++] = character; }

  void putTwoDigits(std::int64_t value) {
    put(static_cast<char>('0' + value / 10));
    put(static_cast<char>('0' + value % 10));
  }

  void putYear(std::int64_t year) {
    if (year < 0) put('-');
    std::array<char, 20> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), std::abs(year));
    const auto count = static_cast<std::size_t>(result.ptr - digits.data());
    for (std::size_t padding = count; padding < 4; ++padding) put('0');
    for (std::size_t index = 0; index < count; ++index) put(digits[index]);
  }

 private:
  ISO8601Text& text_;
};

// Reads the fields of a date from the front; every reading says whether it found what it looked for.
class TextReader {
 public:
  explicit TextReader(std::string_view text) : rest_(text) {}

  bool take(char character) {
    if (!rest_.starts_with(character)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  bool takeNumber(std::int64_t& value, std::size_t fewest, std::size_t most) {
    value = 0;
    std::size_t count = 0;
    while (count < most && count < rest_.size() && isDigit(rest_[count])) {
      value = value * 10 + (rest_[count++] - '0');
    }
    rest_.remove_prefix(count);
    return count >= fewest;
  }

  bool takeField(std::int64_t& value) { return takeNumber(value, 1, 10) && !startsWithDigit(); }

  [[nodiscard]] bool startsWithDigit() const { return !rest_.empty() && isDigit(rest_.front()); }

 private:
  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  std::string_view rest_;
};

bool takeOffset(TextReader& reader, std::int64_t& offset) {
  const bool isWest = reader.take('-');
  if (!isWest && !reader.take('+')) return false;
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  if (!reader.takeNumber(hours, 2, 2)) return false;
  reader.take(':');
  if (!reader.takeNumber(minutes, 2, 2)) return false;
  // What does not complete the seconds is trailing text, which is ignored.
  TextReader ahead = reader;
  ahead.take(':');
  if (!ahead.takeNumber(seconds, 2, 2)) seconds = 0;
  offset = (hours * 60 + minutes) * 60 + seconds;
  if (isWest) offset = -offset;
  return true;
}

bool takeZone(TextReader& reader, std::int64_t& offset) {
  offset = 0;
  if (reader.take('Z') || reader.take('z')) return true;
  if (!reader.take("GMT") && !reader.take("UTC")) return takeOffset(reader, offset);
  // An offset that is not complete is trailing text.
  if (!takeOffset(reader, offset)) offset = 0;
  return true;
}

bool takeDate(TextReader& reader, CivilDate& date) {
  return reader.takeField(date.year) && reader.take('-') && reader.takeField(date.month) &&
         reader.take('-') && reader.takeField(date.day) && date.month >= 1 && date.month <= 12 &&
         date.day >= 1 && date.day <= 31;
}

}  // namespace

ISO8601Text iso8601Text(Instant instant) {
  const std::int64_t seconds = wholeSeconds(instant);
  const std::int64_t days = floorDivide(seconds, secondsPerDay);
  const std::int64_t secondOfDay = seconds - days * secondsPerDay;
  const CivilDate date = civilDate(days);
  ISO8601Text text;
  TextWriter writer{text};
  writer.putYear(date.year);
  writer.put('-');
  writer.putTwoDigits(date.month);
  writer.put('-');
  writer.putTwoDigits(date.day);
  writer.put('T');
  writer.putTwoDigits(secondOfDay / 3600);
  writer.put(':');
  writer.putTwoDigits(secondOfDay / 60 % 60);
  writer.put(':');
  writer.putTwoDigits(secondOfDay % 60);
  writer.put('Z');
  return text;
}

std::string formatISO8601(Instant instant) { return std::string{iso8601Text(instant).view()}; }

std::optional<Instant> parseISO8601(std::string_view text) {
  TextReader reader{text};
  CivilDate date;
  std::int64_t hour = 0;
  std::int64_t minute = 0;
  std::int64_t second = 0;
  std::int64_t offset = 0;
  if (!takeDate(reader, date) || !reader.take('T')) return std::nullopt;
  if (!reader.takeField(hour) || !reader.take(':') || !reader.takeField(minute)) return std::nullopt;
  if (!reader.take(':') || !reader.takeField(second) || !takeZone(reader, offset)) return std::nullopt;
  const std::int64_t secondOfDay = (hour * 60 + minute) * 60 + second - offset;
  return instantAt(static_cast<double>(daysSince1970(date) * secondsPerDay + secondOfDay));
}

}  // namespace quellin
