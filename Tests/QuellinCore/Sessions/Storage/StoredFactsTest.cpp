#include <string_view>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/StoredFacts.h"

namespace quellin {
namespace {

using testing::IsEmpty;

TEST(StoredFactsTest, ASourceWithoutANumberIsNotKept) {
  const StoredFacts stored = storedFacts(
      {.powerSourceKind = "solar", .powerSourceLabel = "Sun", .contributions = {}, .telemetrySampledAt = {}});
  EXPECT_EQ(stored, StoredFacts{});
  EXPECT_EQ(factsFrom(stored.powerSource, stored.contributions), std::nullopt);
}

TEST(StoredFactsTest, StoredFormsThatMakeNoSenseGiveNoFacts) {
  using namespace std::string_view_literals;
  EXPECT_EQ(factsFrom(-1, ""), std::nullopt);
  EXPECT_EQ(factsFrom(6, ""), std::nullopt);
  EXPECT_EQ(factsFrom(std::nullopt, ""), std::nullopt);
  EXPECT_EQ(factsFrom(0, std::nullopt), std::nullopt);
  EXPECT_EQ(factsFrom(0,
                      "\x00\x04"
                      "a"sv),
            std::nullopt);
  EXPECT_EQ(factsFrom(0,
                      "\x00\x02"
                      "a1234567"sv),
            std::nullopt);
  EXPECT_EQ(factsFrom(0,
                      "\x01"
                      "1234567"sv),
            std::nullopt);
  EXPECT_EQ(factsFrom(0, "\x02"sv), std::nullopt);
  ASSERT_TRUE(factsFrom(0, "").has_value());
  EXPECT_THAT(factsFrom(0, "")->contributions, IsEmpty());
}

}  // namespace
}  // namespace quellin
