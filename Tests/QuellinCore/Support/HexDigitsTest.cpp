#include <cstddef>

#include <gtest/gtest.h>

#include "QuellinCore/Support/HexDigits.h"

namespace quellin {
namespace {

TEST(HexDigitsTest, ReadsEveryDigitInEitherCase) {
  for (std::size_t value = 0; value < 16; ++value) {
    EXPECT_EQ(hexDigitValue(lowerCaseHexDigits[value]), value);
    EXPECT_EQ(hexDigitValue(upperCaseHexDigits[value]), value);
  }
}

TEST(HexDigitsTest, ReadsNothingElse) {
  for (const char character : {'/', ':', '@', 'G', '`', 'g', ' ', '\0', '\xFF'}) {
    EXPECT_EQ(hexDigitValue(character), std::nullopt) << character;
  }
}

}  // namespace
}  // namespace quellin
