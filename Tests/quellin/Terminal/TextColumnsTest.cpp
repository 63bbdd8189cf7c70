#include <algorithm>
#include <span>
#include <string>

#include <gmock/gmock.h>

#include "Support/CaseNames.h"
#include "quellin/Terminal/CharacterColumns.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {
namespace {

using testing_support::namedBy;

struct Case {
  const char* name;
  const char* text;
  std::size_t columns;
};

class TextColumnsTest : public testing::TestWithParam<Case> {};

TEST_P(TextColumnsTest, CountsTheColumnsOfATerminal) {
  EXPECT_EQ(columnsOf(std::string_view{GetParam().text}), GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TextColumnsTest,
    testing::Values(Case{"Nothing", "", 0}, Case{"Capitals", "CPU", 3}, Case{"DegreeSign", "30 °C", 5},
                    Case{"Umlauts", "Größe", 5}, Case{"Kanji", "日本語", 6},
                    Case{"HalfWidthKatakana", "ﾃｽﾄ", 3}, Case{"FullWidthLatin", "ＡＢ", 4},
                    Case{"Hangul", "한국", 4}, Case{"HangulInParts", "\u1112\u1161\u11ab", 2},
                    Case{"Rocket", "🚀", 2}, Case{"Watch", "⌚", 2}, Case{"CombiningAccent", "Cafe\u0301", 4},
                    Case{"BlankWithoutWidth", "a\u200Bb", 2}, Case{"SoftHyphen", "soft\u00ADhyphen", 11},
                    Case{"HalfAFlag", "\U0001F1E9", 1}, Case{"RareKanji", "\U00020000", 2},
                    Case{"NotUTF8", "\xFF", 1}),
    namedBy(&Case::name));

TEST(CharacterColumnsTest, TheTablesAscendAndShareNothing) {
  char32_t before = 0;
  for (const auto ranges : {charactersWithoutColumn(), charactersOfTwoColumns()}) {
    before = 0;
    for (const CharacterRange& range : ranges) {
      EXPECT_GT(range.first, before);
      EXPECT_GE(range.last, range.first);
      before = range.last;
    }
  }
  for (const CharacterRange& wide : charactersOfTwoColumns()) {
    EXPECT_TRUE(std::ranges::none_of(charactersWithoutColumn(), [&](const CharacterRange& none) {
      return none.first <= wide.last && wide.first <= none.last;
    })) << static_cast<unsigned>(wide.first);
  }
}

TEST(FirstColumnsTest, CountsColumns) {
  EXPECT_EQ(firstColumns("äöü", 2), "äö");
  EXPECT_EQ(firstColumns("ab", 5), "ab");
  EXPECT_EQ(firstColumns("ab", 0), "");
  EXPECT_EQ(firstColumns("", 3), "");
  EXPECT_EQ(firstColumns("日本", 3), "日");
  EXPECT_EQ(firstColumns("e\u0301a", 1), "e\u0301");
}

TEST(ShortenedTest, MarksWhatIsCut) {
  EXPECT_EQ(shortened("Safari", 6), "Safari");
  EXPECT_EQ(shortened("Safari", 5), "Saf..");
  EXPECT_EQ(shortened("日本語", 5), "日..");
  EXPECT_EQ(shortened("Safari", 3), "S..");
  EXPECT_EQ(shortened("Safari", 2), "Sa");
  EXPECT_EQ(shortened("Safari", 0), "");
}

}  // namespace
}  // namespace quellin::cli
