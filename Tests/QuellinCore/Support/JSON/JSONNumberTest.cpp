#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/JSONNumber.h"

namespace quellin {
namespace {

TEST(JSONNumberTest, FollowsTheGrammarOfJSON) {
  for (const char* text :
       {"0", "-0", "1", "10", "-12.5", "0.5", "1e5", "1E5", "1e+5", "1e-05", "0e0", "12.50E-007"}) {
    EXPECT_TRUE(parseJSONNumber(text)) << text;
  }
  for (const char* text :
       {"",      "-",    "+1",    "01",  "-01",      "00",        "1.", ".5", "-.5", "1e",  "1e+",  "1.e5",
        "1e5.0", "0x10", "1_000", "NaN", "Infinity", "-Infinity", "1 ", " 1", "1f",  "--1", "1e--5"}) {
    EXPECT_FALSE(parseJSONNumber(text)) << text;
  }
}

TEST(JSONNumberTest, TakesItsPartsFromTheText) {
  const auto number = parseJSONNumber("-12.340e-7");
  ASSERT_TRUE(number);
  EXPECT_TRUE(number->isNegative);
  EXPECT_EQ(number->wholeDigits, "12");
  EXPECT_EQ(number->fractionDigits, "340");
  EXPECT_EQ(number->exponent, -7);
}

struct MagnitudeCase {
  std::string text;
  std::optional<std::uint64_t> magnitude;
};

TEST(JSONNumberTest, FindsTheExactWholeValueOfAnySpelling) {
  const MagnitudeCase cases[] = {
      {"12", 12},
      {"-12", 12},
      {"12.0", 12},
      {"12.000e0", 12},
      {"1e3", 1000},
      {"120e-1", 12},
      {"0.00012e5", 12},
      {"1.5e1", 15},
      {"9007199254740993.0", 9007199254740993},
      {"18446744073709551615", std::numeric_limits<std::uint64_t>::max()},
      {"1844674407370955161500e-2", std::numeric_limits<std::uint64_t>::max()},
      {"18446744073709551616", std::nullopt},
      {"1e20", std::nullopt},
      {"1e99999999999999999999999999", std::nullopt},
      {"12.5", std::nullopt},
      {"125e-1", std::nullopt},
      {"1e-99999999999999999999999999", std::nullopt},
      {"0.1", std::nullopt},
      {"0", 0},
      {"-0.0e-5", 0},
      {"0e99999999999999999999999999", 0},
      {"0.000e-99999999999999999999999999", 0},
      {"1" + std::string(1000, '0') + "e-1000", 1},
      {"0." + std::string(1000, '0') + "7e1001", 7},
  };
  for (const auto& [text, magnitude] : cases) {
    const auto number = parseJSONNumber(text);
    ASSERT_TRUE(number) << text;
    EXPECT_EQ(number->integralMagnitude(), magnitude) << text;
  }
}

}  // namespace
}  // namespace quellin
