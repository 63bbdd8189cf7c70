#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Support/Number.h"

namespace quellin {
namespace {

TEST(NumberTest, ANumberIsTheWholeText) {
  const std::vector<std::pair<std::string, std::optional<std::int64_t>>> cases = {
      {"0", 0},
      {"-1500000", -1500000},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", std::nullopt},
      {"", std::nullopt},
      {"-", std::nullopt},
      {"+5", std::nullopt},
      {"0x10", std::nullopt},
      {"12 ", std::nullopt},
      {" 12", std::nullopt},
      {"12.5", std::nullopt},
      {"unknown", std::nullopt},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseNumber<std::int64_t>(text), expected) << text;
}

TEST(NumberTest, AnUnsignedNumberHasNoSign) {
  EXPECT_EQ(parseNumber<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(parseNumber<std::uint64_t>("-1"), std::nullopt);
}

TEST(NumberTest, ABaseHasItsOwnDigitsAndNoPrefix) {
  EXPECT_EQ(parseNumber<std::uint16_t>("fFfF", 16), 0xFFFF);
  EXPECT_EQ(parseNumber<std::uint16_t>("10000", 16), std::nullopt);
  EXPECT_EQ(parseNumber<int>("0x10", 16), std::nullopt);
  EXPECT_EQ(parseNumber<int>("18", 8), std::nullopt);
}

}  // namespace
}  // namespace quellin
