#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/ShortestDecimal.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

std::string shortest(double value) { return std::string(ShortestDecimal(value).text()); }

struct Row {
  double value;
  const char* text;
};

class ShortestDecimalTable : public testing::TestWithParam<Row> {};

TEST_P(ShortestDecimalTable, WritesTheText) { EXPECT_EQ(shortest(GetParam().value), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    ShortestDecimalTest, ShortestDecimalTable,
    testing::Values(Row{0.0, "0"}, Row{-0.0, "-0"}, Row{12.0, "12"}, Row{0.1, "0.1"}, Row{-18.9, "-18.9"},
                    Row{100000.0, "100000"}, Row{1e-4, "0.0001"}, Row{0.00012345, "0.00012345"},
                    Row{std::nextafter(1e-4, 0.0), "9.999999999999999e-05"}, Row{1e-5, "1e-05"},
                    Row{9007199254740991.0, "9007199254740991"}, Row{9007199254740992.0, "9007199254740992"},
                    Row{-9007199254740992.0, "-9007199254740992"},
                    Row{9007199254740994.0, "9.007199254740994e+15"},
                    Row{-9007199254740994.0, "-9.007199254740994e+15"}, Row{9.1e15, "9.1e+15"},
                    Row{-9.9e15, "-9.9e+15"}, Row{9999999999999998.0, "9.999999999999998e+15"},
                    Row{1e16, "1e+16"}, Row{1.5e300, "1.5e+300"},
                    Row{std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
                    Row{std::numeric_limits<double>::min(), "2.2250738585072014e-308"},
                    Row{std::numeric_limits<double>::denorm_min(), "5e-324"}),
    namedBy(&Row::text));

/// The same rule over the standard library, where it can do it.
std::string reference(double value) {
  const double magnitude = std::abs(value);
  const bool plain = value == 0 || (magnitude >= 1e-4 && magnitude <= 9007199254740992.0);
  std::string text(400, '\0');
  const auto form = plain ? std::chars_format::fixed : std::chars_format::scientific;
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), value, form).ptr;
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

TEST(ShortestDecimalTest, AgreesWithTheStandardLibraryOnAnyBitPattern) {
  // The same values in every run.
  std::mt19937_64 random(20250304);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
  for (int round = 0; round < 200'000; ++round) {
    const auto value = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(shortest(value), reference(value));
  }
}

TEST(ShortestDecimalTest, AgreesWithTheStandardLibraryAroundTheChangesOfForm) {
  std::mt19937_64 random(41);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
  for (const double edge : {1e-4, 9007199254740992.0, 1e16, 1.0, 1e15}) {
    std::uniform_real_distribution<double> near(edge / 4, edge * 4);
    for (int round = 0; round < 20'000; ++round) {
      const double value = near(random);
      ASSERT_EQ(shortest(value), reference(value));
      ASSERT_EQ(shortest(-value), reference(-value));
    }
  }
}

TEST(ShortestDecimalTest, AgreesWithTheStandardLibraryOnShortDecimals) {
  for (int hundredths = -200'000; hundredths < 200'000; ++hundredths) {
    const double value = hundredths / 100.0;
    ASSERT_EQ(shortest(value), reference(value));
  }
}

TEST(ShortestDecimalTest, TheDigitsAreThoseOfTheText) {
  EXPECT_EQ(shortestDigits(45.12345886230469).digits, 4512345886230469U);
  EXPECT_EQ(shortestDigits(45.12345886230469).exponent, -14);
  EXPECT_EQ(shortestDigits(1200).digits, 12U);
  EXPECT_EQ(shortestDigits(1200).exponent, 2);
}

}  // namespace
}  // namespace quellin
