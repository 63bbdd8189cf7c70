#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/TextEncoding.h"

namespace quellin {
namespace {

std::string stored(std::u32string_view units, std::size_t size, bool isBigEndian) {
  std::string bytes;
  for (const char32_t unit : units) {
    for (std::size_t index = 0; index < size; ++index) {
      const std::size_t shift = 8 * (isBigEndian ? size - 1 - index : index);
      bytes += static_cast<char>((unit >> shift) & 0xFF);
    }
  }
  return bytes;
}

TEST(TextEncodingTest, FindsTheEncodingWithAndWithoutAMark) {
  std::string buffer;
  for (const bool isBigEndian : {false, true}) {
    for (const char32_t* mark : {U"", U"\uFEFF"}) {
      const std::u32string head = mark;
      EXPECT_EQ(documentAsUTF8(stored(head + U"[\"aé€😀\"]", 4, isBigEndian), buffer), "[\"aé€😀\"]");
      EXPECT_EQ(documentAsUTF8(stored(head + U"[\"aé€\xD83D\xDE00\"]", 2, isBigEndian), buffer),
                "[\"aé€😀\"]");
      EXPECT_EQ(documentAsUTF8(stored(head + U"1", 2, isBigEndian), buffer), "1");
      EXPECT_EQ(documentAsUTF8(stored(head + U"1", 4, isBigEndian), buffer), "1");
    }
  }
  EXPECT_EQ(documentAsUTF8("\xEF\xBB\xBF{}", buffer), "{}");
  EXPECT_EQ(documentAsUTF8("{}", buffer), "{}");
  EXPECT_EQ(documentAsUTF8("1", buffer), "1");
  EXPECT_EQ(documentAsUTF8("", buffer), "");
}

TEST(TextEncodingTest, RefusesIllFormedUnits) {
  std::string buffer;
  for (const bool isBigEndian : {false, true}) {
    for (const std::u32string_view units : {U"[\xD83D", U"[\xD83D]", U"[\xDE00]", U"[\xD83D\xD83D]"}) {
      EXPECT_EQ(documentAsUTF8(stored(units, 2, isBigEndian), buffer), std::nullopt);
    }
    EXPECT_EQ(
        documentAsUTF8(stored(U"\uFEFF[", 4, isBigEndian) + stored(U"\x110000", 4, isBigEndian), buffer),
        std::nullopt);
    EXPECT_EQ(documentAsUTF8(stored(U"[\xD83D\xDE00]", 4, isBigEndian), buffer), std::nullopt);
    EXPECT_EQ(documentAsUTF8(stored(U"[]", 2, isBigEndian) + "x", buffer), std::nullopt);
    EXPECT_EQ(documentAsUTF8(stored(U"[]", 4, isBigEndian) + "xyz", buffer), std::nullopt);
  }
}

}  // namespace
}  // namespace quellin
