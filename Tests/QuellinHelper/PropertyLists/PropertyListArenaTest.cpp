#include <gtest/gtest.h>

#include "QuellinHelper/PropertyLists/PropertyListArena.h"

namespace quellin {
namespace {

TEST(PropertyListArenaTest, AddressesStayValidAcrossBlocksAndMoves) {
  PropertyListArena arena;
  std::vector<std::string_view> copies;
  for (int size : {1, 100, 5000, 3, 0, 700'000, 8})
    copies.push_back(arena.copy(std::string(std::size_t(size), 'x')));
  const PropertyListArena moved = std::move(arena);
  for (const std::string_view copy : copies) EXPECT_EQ(copy.find_first_not_of('x'), std::string_view::npos);
  EXPECT_EQ(copies[5].size(), 700'000U);
  EXPECT_LT(moved.capacity(), 800'000U);
}

}  // namespace
}  // namespace quellin
