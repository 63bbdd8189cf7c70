#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "QuellinHelper/PropertyLists/DecimalNumber.h"

namespace quellin {
namespace {

TEST(DecimalNumberTest, ReadsTheNearestDouble) {
  const std::pair<const char*, double> rows[] = {
      {"0", 0},
      {"812", 812},
      {"-4.5", -4.5},
      {"+.5", 0.5},
      {"5.", 5},
      {"1.02287e+09", 1.02287e+09},
      {"1E3", 1000},
      {"0.1", 0.1},
      {"9007199254740993", 9007199254740992.0},
      {"0.30000000000000004", 0.30000000000000004},
      {"123456789012345678901234567890", 123456789012345678901234567890.0},
      {"1e22", 1e22},
      {"1e23", 1e23},
      {"1e-22", 1e-22},
      {"5e-324", 5e-324},
      {"1e-400", 0},
      {"1.7976931348623157e308", 1.7976931348623157e308},
      {"00000000000000000000000000001", 1},
      {"0.00000000000000000000000000001", 1e-29},
      {"100000000000000000000e-20", 1},
      {"1e400", std::numeric_limits<double>::infinity()},
      {"-1e99999999999999999999", -std::numeric_limits<double>::infinity()}};
  for (const auto& [text, value] : rows) EXPECT_EQ(parseDecimal(text), value) << text;
}

TEST(DecimalNumberTest, KeepsTheSignOfZero) {
  ASSERT_TRUE(parseDecimal("-0"));
  EXPECT_TRUE(std::signbit(*parseDecimal("-0")));
}

TEST(DecimalNumberTest, RefusesWhateverIsNotWhollyADecimalNumber) {
  for (const char* text :
       {"",    " 1",  "1 ",    "\n1",  "+",     "-",   ".",    "e5",       "1e",  "1e+", "1.2.3", "1,5",
        "--1", "+-1", "12abc", "0x10", "0x1p3", "inf", "-inf", "infinity", "nan", "NaN", "1f",    "١"}) {
    EXPECT_FALSE(parseDecimal(text)) << text;
  }
  EXPECT_FALSE(parseDecimal(std::string_view("1\0", 2)));
}

}  // namespace
}  // namespace quellin
