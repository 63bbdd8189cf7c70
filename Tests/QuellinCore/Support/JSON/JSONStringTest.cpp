#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/JSONString.h"

namespace quellin {
namespace {

TEST(JSONStringTest, ReplacesEveryEscape) {
  std::string buffer;
  EXPECT_EQ(unescapedJSON(R"(\"\\\/\b\f\n\r\t)", buffer), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(unescapedJSON(R"(a\u0041\u00e9\u20AC\ud83d\uDE00z)", buffer), "aAé€😀z");
  EXPECT_EQ(unescapedJSON(R"(\u0000)", buffer), (std::string_view{"\0", 1}));
  EXPECT_EQ(unescapedJSON(R"(\u0041\n)", buffer), "A\n");
}

TEST(JSONStringTest, HandsTextWithoutEscapesThrough) {
  std::string buffer = "untouched";
  const std::string_view raw = "plain é text";
  EXPECT_EQ(unescapedJSON(raw, buffer)->data(), raw.data());
  EXPECT_EQ(buffer, "untouched");
}

TEST(JSONStringTest, RefusesUnknownEscapesAndHalfPairs) {
  std::string buffer;
  for (const char* raw :
       {R"(\)", R"(\x)", R"(\u)", R"(\u123)", R"(\u12G4)", R"(\u-123)", R"(\u+123)", R"(\u 123)", R"(\U0041)",
        R"(\ud83d)", R"(\ud83dx)", R"(\ud83d\n)", R"(\ud83d\u0041)", R"(\ud83d\ud83d)", R"(\ud83d\u)",
        R"(\ude00)", R"(\0)", R"(\')"}) {
    EXPECT_EQ(unescapedJSON(raw, buffer), std::nullopt) << raw;
  }
}

}  // namespace
}  // namespace quellin
