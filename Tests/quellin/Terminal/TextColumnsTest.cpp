#include <algorithm>
#include <span>
#include <string>

#include <gmock/gmock.h>

#include "quellin/Terminal/CharacterColumns.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {
namespace {

struct Case {
  const char* text;
  std::size_t columns;
};

class TextColumnsTest : public testing::TestWithParam<Case> {};

TEST_P(TextColumnsTest, CountsTheColumnsOfATerminal) {
  EXPECT_EQ(columnsOf(std::string_view{GetParam().text}), GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextColumnsTest,
                         testing::Values(Case{"", 0}, Case{"CPU", 3}, Case{"30 °C", 5}, Case{"Größe", 5},
                                         Case{"日本語", 6}, Case{"ﾃｽﾄ", 3}, Case{"ＡＢ", 4}, Case{"한국", 4},
                                         Case{"\u1112\u1161\u11ab", 2}, Case{"🚀", 2}, Case{"⌚", 2},
                                         Case{"Cafe\u0301", 4}, Case{"a\u200Bb", 2},
                                         Case{"soft\u00ADhyphen", 11}, Case{"\U0001F1E9", 1},
                                         Case{"\U00020000", 2}, Case{"\xFF", 1}));

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

}  // namespace
}  // namespace quellin::cli
