#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/IOReport/EnergyUnit.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

struct Case {
  std::int64_t value;
  std::optional<std::string_view> label;
  std::optional<std::int64_t> expected;
};

TEST(EnergyUnitTest, TurnsEveryUnitOfEnergyIntoNanojoules) {
  const Case cases[] = {
      {150, "mJ", 150'000'000}, {-2, "mJ", -2'000'000}, {150, "uJ", 150'000},      {150, "nJ", 150},
      {3, "J", 3'000'000'000},  {1999, "pJ", 1},        {-1999, "pJ", -1},         {150, std::nullopt, 150},
      {150, "", 150},           {150, "   ", 150},      {7, "mJ     ", 7'000'000}, {7, "\tnJ\n", 7},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(nanojoules(each.value, each.label), each.expected) << each.value << each.label.value_or("none");
  }
}

TEST(EnergyUnitTest, HasNoEnergyOfAnotherUnit) {
  for (const char* label : {"events", "24Mticks", "MJ", "mj", "m J"}) {
    EXPECT_EQ(nanojoules(1, label), std::nullopt) << label;
  }
}

TEST(EnergyUnitTest, EndsTheProcessOnOverflow) {
  constexpr auto highest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(nanojoules(highest, "nJ"), highest);
  for (const char* label : {"uJ", "mJ", "J"})
    EXPECT_EXIT((void)nanojoules(highest, label), endedByTrap, "") << label;
}

}  // namespace
}  // namespace quellin
