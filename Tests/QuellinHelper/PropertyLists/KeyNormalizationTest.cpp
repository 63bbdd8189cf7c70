#include <gtest/gtest.h>

#include "QuellinHelper/PropertyLists/KeyNormalization.h"
#include "QuellinHelper/PropertyLists/UnicodeTables.h"

namespace quellin {
namespace {

TEST(KeyNormalizationTest, KeepsLettersAndNumbersInLowerCase) {
  const std::pair<const char*, const char*> rows[] = {{"CPU Power", "cpupower"},
                                                      {"cpu_power", "cpupower"},
                                                      {"cpuPower", "cpupower"},
                                                      {"CPU %", "cpu"},
                                                      {"wakeups/sec", "wakeupssec"},
                                                      {"P0-Cluster 2", "p0cluster2"},
                                                      {"", ""},
                                                      {" %_-\t\x7F", ""},
                                                      {"@[`{/:", ""}};
  for (const auto& [text, expected] : rows) EXPECT_EQ(normalize(text), expected) << text;
}

TEST(KeyNormalizationTest, KnowsLettersAndNumbersOfAllScripts) {
  const std::pair<const char*, const char*> rows[] = {{"ÄÖÜß", "äöüß"},
                                                      {"Énergie·Été", "énergieété"},
                                                      {"ΣΊΣΥΦΟΣ", "σίσυφοσ"},
                                                      {"МОЩНОСТЬ—ЦП", "мощностьцп"},
                                                      {"電力（W）", "電力w"},
                                                      {"m² ½ Ⅷ ٣", "m²½ⅷ٣"},
                                                      {"İ", "i"},
                                                      {"ẞ", "ß"},
                                                      {"Ǆ", "ǆ"},
                                                      {"Ᏸ", "ᏸ"},
                                                      {"𐐀🔋𝟘", "𐐨𝟘"},
                                                      {"e\u0301", "e"}};
  for (const auto& [text, expected] : rows) EXPECT_EQ(normalize(text), expected) << text;
}

TEST(KeyNormalizationTest, DropsBytesThatAreNoText) { EXPECT_EQ(normalize("A\xFF\xC3(B\xED\xA0\x80"), "ab"); }

TEST(KeyNormalizationTest, WritesOverAnEarlierResult) {
  std::string result = "earlier";
  normalize("New", result);
  EXPECT_EQ(result, "new");
}

TEST(UnicodeTablesTest, AreInOrderAndDoNotOverlap) {
  char32_t last = 0;
  for (const auto& range : detail::lettersAndNumbers()) {
    EXPECT_GT(range.first, last);
    EXPECT_GE(range.last, range.first);
    last = range.last;
  }
  last = 0;
  for (const auto& run : detail::lowerCaseRuns()) {
    EXPECT_GT(run.first, last);
    EXPECT_GE(run.last, run.first);
    EXPECT_GT(run.step, 0U);
    last = run.last;
  }
}

}  // namespace
}  // namespace quellin
