#include <gtest/gtest.h>

#include "QuellinCore/Support/LetterCase.h"

namespace quellin {
namespace {

TEST(LetterCaseTest, LowersASCIILettersAndNothingElse) {
  EXPECT_EQ(lowercased("AZaz @[`{09 \xC3\x84"), "azaz @[`{09 \xC3\x84");
  EXPECT_EQ(lowercased(""), "");
}

TEST(LetterCaseTest, ComparesWithoutRegardToTheCaseOfASCIILetters) {
  EXPECT_TRUE(equalIgnoringCase("CPU Avg", "cpu aVG"));
  EXPECT_TRUE(equalIgnoringCase("", ""));
  EXPECT_FALSE(equalIgnoringCase("CPU Avg", "CPU Av"));
  EXPECT_FALSE(equalIgnoringCase("@", "`"));
  EXPECT_FALSE(equalIgnoringCase("\xC3\x84", "\xC3\xA4"));
}

}  // namespace
}  // namespace quellin
