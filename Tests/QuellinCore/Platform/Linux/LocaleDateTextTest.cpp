#include <string>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/ICULocaleDateText.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

constexpr Instant morning = instantAt(1741081260.75);  // 2025-03-04T09:41:00.75Z

// Whether the blank before AM is a narrow no-break one depends on the age of the locale data.
std::string withPlainBlanks(std::string text) {
  static const std::string narrowBlank = "\u202F";
  for (auto at = text.find(narrowBlank); at != std::string::npos; at = text.find(narrowBlank)) {
    text.replace(at, narrowBlank.size(), " ");
  }
  return text;
}

struct Case {
  const char* locale;
  const char* timeZone;
  const char* text;
};

class LocaleDateTextTest : public testing::TestWithParam<Case> {};

TEST_P(LocaleDateTextTest, JoinsTheMediumDateAndTheShortTimeAsTheLocaleDoes) {
  const ICULocaleDateText dateText(GetParam().locale, GetParam().timeZone);
  EXPECT_EQ(withPlainBlanks(dateText.mediumDateShortTime(morning)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Locales, LocaleDateTextTest,
    testing::Values(Case{"en_US", "UTC", "Mar 4, 2025 at 9:41 AM"},
                    Case{"en_US_POSIX", "UTC", "Mar 4, 2025 at 9:41 AM"},
                    Case{"en_US", "America/New_York", "Mar 4, 2025 at 4:41 AM"},
                    Case{"en_GB", "UTC", "4 Mar 2025 at 09:41"},
                    Case{"de_DE", "Europe/Berlin", "04.03.2025 um 10:41"},
                    Case{"fr_FR", "UTC", "4 mars 2025 à 09:41"}, Case{"ja_JP", "UTC", "2025/03/04 9:41"}),
    namedBy([](const Case& given) { return std::string{given.locale} + " in " + given.timeZone; }));

}  // namespace
}  // namespace quellin
