#include <gtest/gtest.h>

#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

TEST(TextTest, TrimsWhiteSpaceAndLineBreaksAtBothEndsOnly) {
  EXPECT_EQ(trimmed("\t\n\v\f\r a \t b\r\n "), "a \t b");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" \n\t "), "");
  EXPECT_EQ(trimmed("plain"), "plain");
}

TEST(TextTest, TrimsEveryUnicodeSpace) {
  for (const char* space : {"\u00A0", "\u0085", "\u1680", "\u2000", "\u2007", "\u200A", "\u200B", "\u2028",
                            "\u2029", "\u202F", "\u205F", "\u3000"}) {
    EXPECT_EQ(trimmed(std::string{space} + "é€😀" + space + " " + space), "é€😀");
  }
}

TEST(TextTest, KeepsCharactersThatOnlyLookEmpty) {
  for (const char* kept : {"\u180E", "\u200C", "\u2060", "\uFEFF", "\x1F", "\x7F", "\u2800"}) {
    EXPECT_EQ(trimmed(std::string{" "} + kept + " "), kept);
  }
  EXPECT_EQ(trimmed(std::string_view{"\0 ", 2}), (std::string_view{"\0", 1}));
}

TEST(TextTest, StopsTrimmingAtBytesThatAreNotUTF8) {
  EXPECT_EQ(trimmed(" \xFF \x80 "), "\xFF \x80");
  EXPECT_EQ(trimmed("\xA0"), "\xA0");
  EXPECT_EQ(trimmed("a\x80\x80\x80\x80\x80"), "a\x80\x80\x80\x80\x80");
}

TEST(TextTest, KnowsWellFormedUTF8) {
  for (const char* valid : {"", "ascii", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                            "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "é€😀"}) {
    EXPECT_TRUE(isValidUTF8(valid)) << valid;
    EXPECT_EQ(repairedUTF8(valid), valid);
  }
  EXPECT_TRUE(isValidUTF8({"\0", 1}));
}

TEST(TextTest, ReplacesEveryMaximalIllFormedPartByOneCharacter) {
  const std::pair<const char*, const char*> cases[] = {
      {"\x80", "\uFFFD"},
      {"\xC0\xAF", "\uFFFD\uFFFD"},
      {"\xC1\xBF", "\uFFFD\uFFFD"},
      {"\xC3", "\uFFFD"},
      {"\xC3(", "\uFFFD("},
      {"\xE2\x82", "\uFFFD"},
      {"\xE2\x82z", "\uFFFDz"},
      {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD"},
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {"\xF0\x8F\xBF\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF0\x9F\x98", "\uFFFD"},
      {"\xF0\x9F\x98\xF0\x9F\x98\x80", "\uFFFD😀"},
      {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF5\xFF", "\uFFFD\uFFFD"},
      {"a\xF1\x80\x80\xE1\x80\xC2"
       "b\x80"
       "c",
       "a\uFFFD\uFFFD\uFFFDb\uFFFDc"},
  };
  for (const auto& [broken, repaired] : cases) {
    EXPECT_FALSE(isValidUTF8(broken)) << repaired;
    EXPECT_EQ(repairedUTF8(broken), repaired);
  }
}

TEST(TextTest, SpellsScalarValuesInUTF8) {
  std::string text;
  for (const char32_t character :
       {U'a', U'\u007F', U'\u0080', U'\u07FF', U'\u0800', U'\uFFFF', U'\U00010000', U'😀'}) {
    appendUTF8(text, character);
  }
  EXPECT_EQ(text, "a\u007F\xC2\x80\u07FF\u0800\uFFFF\U00010000😀");
}

TEST(TextTest, ReadsBytesAsTrimmedTextWhereTheyAreText) {
  EXPECT_EQ(trimmedText(" a b\r\n"), "a b");
  EXPECT_EQ(trimmedText(" \n"), "");
  EXPECT_EQ(trimmedText("a\xFF"), std::nullopt);
}

}  // namespace
}  // namespace quellin
