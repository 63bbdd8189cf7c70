#include "QuellinCore/Support/LocaleDateText.h"

#include <memory>
#include <string_view>
#include <utility>

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/simpleformatter.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "QuellinCore/Platform/Linux/ICULocaleDateText.h"

namespace quellin {
namespace {

// The C locale of a process without settings appears in ICU as this one; nobody means its computer-like
// dates.
constexpr std::string_view localeWithoutLanguage = "en_US_POSIX";

icu::Locale chosenLocale(const std::optional<std::string>& name) {
  const icu::Locale locale = name ? icu::Locale(name->c_str()) : icu::Locale::getDefault();
  return locale.getName() == localeWithoutLanguage ? icu::Locale::getUS() : locale;
}

icu::UnicodeString patternOf(const std::unique_ptr<icu::DateFormat>& format) {
  icu::UnicodeString pattern;
  if (const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get()))
    simple->toPattern(pattern);
  return pattern;
}

// Date and time are joined by the glue of the long style, "{1} 'at' {0}" in English: the medium style's own
// glue is a comma here, while the platform that the texts must match has the same words for both.
icu::UnicodeString joinedPattern(const icu::Locale& locale, UErrorCode& status) {
  const std::unique_ptr<icu::DateFormat> date(
      icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, locale));
  const std::unique_ptr<icu::DateFormat> time(
      icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  icu::UnicodeString joined;
  if (U_FAILURE(status) != 0) return joined;
  const icu::SimpleFormatter glue(generator->getDateTimeFormat(UDAT_LONG, status), 2, 2, status);
  return glue.format(patternOf(time), patternOf(date), joined, status);
}

}  // namespace

ICULocaleDateText::ICULocaleDateText(std::string locale, std::string timeZone)
    : locale_(std::move(locale)), timeZone_(std::move(timeZone)) {}

std::string ICULocaleDateText::mediumDateShortTime(Instant instant) const {
  constexpr double millisecondsPerSecond = 1000;
  const icu::Locale locale = chosenLocale(locale_);
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString pattern = joinedPattern(locale, status);
  icu::SimpleDateFormat format(pattern, locale, status);
  if (U_FAILURE(status) != 0) return {};
  if (timeZone_)
    format.adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(*timeZone_)));
  icu::UnicodeString text;
  format.format(instant.time_since_epoch().count() * millisecondsPerSecond, text);
  std::string result;
  return text.toUTF8String(result);
}

const LocaleDateText& systemLocaleDateText() {
  static const ICULocaleDateText text;
  return text;
}

}  // namespace quellin
