#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Platform/Recorded/TraceText.h"

namespace quellin {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(TraceTextTest, NamesWhatIsNoNumber) {
  EXPECT_EQ(nonFiniteKind(0.5), std::nullopt);
  EXPECT_EQ(nonFiniteKind(std::nan("")), NonFinite::notANumber);
  EXPECT_EQ(nonFiniteKind(infinity), NonFinite::infinity);
  EXPECT_EQ(nonFiniteKind(-infinity), NonFinite::negativeInfinity);
}

TEST(TraceTextTest, GivesBackWhatIsNoNumber) {
  EXPECT_TRUE(std::isnan(nonFiniteValue(NonFinite::notANumber)));
  EXPECT_EQ(nonFiniteValue(NonFinite::infinity), infinity);
  EXPECT_EQ(nonFiniteValue(NonFinite::negativeInfinity), -infinity);
}

TEST(TraceTextTest, SpellsBytesInHexadecimal) {
  const std::vector<std::uint8_t> bytes{0x00, 0x0A, 0xF7, 0xFF};
  EXPECT_EQ(hexText(bytes), "000af7ff");
  EXPECT_EQ(bytesOfHexText("000af7ff"), bytes);
  EXPECT_EQ(bytesOfHexText("000AF7FF"), bytes);
  EXPECT_EQ(bytesOfHexText(""), std::vector<std::uint8_t>{});
}

TEST(TraceTextTest, RefusesWhatIsNotHexadecimal) {
  for (const char* text : {"0", "0g", "g0", " 0", "0x00", "00 ", "/0", ":0", "@0", "`0"}) {
    EXPECT_EQ(bytesOfHexText(text), std::nullopt) << text;
  }
}

TEST(TraceTextTest, SpellsCodesAsCharactersWherePrintable) {
  EXPECT_EQ(codeText(SMCDecoding::fourCharCode("flt ")), "flt ");
  EXPECT_EQ(codeText(0x666C7400), "0x666c7400");
  EXPECT_EQ(codeText(0x7FFFFFFF), "0x7fffffff");
  EXPECT_EQ(codeText(0), "0x00000000");
}

TEST(TraceTextTest, EveryCodeIsReadBack) {
  for (const std::uint32_t code : {0x00000000U, 0x20202020U, 0x7E7E7E7EU, 0x1F202020U, 0x666C7400U, ~0U}) {
    EXPECT_EQ(codeOfText(codeText(code)), code) << code;
  }
  for (const char* text : {"", "abc", "abcde", "0x0000000", "0y00000000", "0x0000000g", "0x000000000"}) {
    EXPECT_EQ(codeOfText(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace quellin
