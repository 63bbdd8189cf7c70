#include <gtest/gtest.h>

#include "PropertyListText.h"
#include "QuellinHelper/PropertyLists/PropertyListBuilder.h"

namespace quellin {
namespace {

PropertyListNode number(int value) { return PropertyListNode{std::int64_t{value}}; }

TEST(PropertyListBuilderTest, KeepsDocumentOrder) {
  PropertyListBuilder builder;
  EXPECT_TRUE(builder.openDictionary());
  for (const char* key : {"zebra", "ape", "m"}) EXPECT_TRUE(builder.addKey(key) && builder.add(number(1)));
  EXPECT_TRUE(builder.addKey("list") && builder.openArray() && builder.add(number(2)) && builder.openArray());
  EXPECT_TRUE(builder.close() && builder.add(number(3)) && builder.close() && builder.close());
  const auto list = builder.finish();
  ASSERT_TRUE(list);
  EXPECT_EQ(described(list->root()), "{zebra: 1, ape: 1, m: 1, list: [2, [], 3]}");
}

TEST(PropertyListBuilderTest, ARepeatedKeyKeepsItsFirstPositionAndItsLastValue) {
  PropertyListBuilder builder;
  EXPECT_TRUE(builder.openDictionary() && builder.addKey("a") && builder.add(number(1)));
  EXPECT_TRUE(builder.addKey("b") && builder.openDictionary() && builder.addKey("a") &&
              builder.add(number(2)));
  EXPECT_TRUE(builder.close() && builder.addKey("a") && builder.add(number(3)) && builder.close());
  const auto list = builder.finish();
  ASSERT_TRUE(list);
  EXPECT_EQ(described(list->root()), "{a: 3, b: {a: 2}}");
}

TEST(PropertyListBuilderTest, RefusesKeysAndValuesOutOfTurn) {
  PropertyListBuilder keyAtTop;
  EXPECT_FALSE(keyAtTop.addKey("a"));
  PropertyListBuilder keyInArray;
  EXPECT_FALSE(keyInArray.openArray() && keyInArray.addKey("a"));
  PropertyListBuilder twoKeys;
  EXPECT_FALSE(twoKeys.openDictionary() && twoKeys.addKey("a") && twoKeys.addKey("b"));
  PropertyListBuilder noKey;
  EXPECT_FALSE(noKey.openDictionary() && noKey.add(number(1)));
  PropertyListBuilder noValue;
  EXPECT_FALSE(noValue.openDictionary() && noValue.addKey("a") && noValue.close());
  PropertyListBuilder twoRoots;
  EXPECT_FALSE(twoRoots.add(number(1)) && twoRoots.add(number(2)));
  PropertyListBuilder nothingOpen;
  EXPECT_FALSE(nothingOpen.close());
}

TEST(PropertyListBuilderTest, StaysFailedAndGivesNoList) {
  PropertyListBuilder builder;
  EXPECT_FALSE(builder.close());
  EXPECT_FALSE(builder.add(number(1)));
  EXPECT_FALSE(builder.finish());
  EXPECT_FALSE(builder.failure().empty());
}

TEST(PropertyListBuilderTest, GivesNoListWhileSomethingIsOpenOrNothingIsThere) {
  PropertyListBuilder builder;
  EXPECT_FALSE(builder.finish());
  EXPECT_TRUE(builder.openArray());
  EXPECT_FALSE(builder.finish());
}

TEST(PropertyListBuilderTest, NestsAsDeepAsTheLimitAndNoDeeper) {
  PropertyListBuilder builder;
  for (std::size_t depth = 0; depth < maximumPropertyListDepth; ++depth) ASSERT_TRUE(builder.openArray());
  EXPECT_FALSE(builder.openArray());
  EXPECT_EQ(builder.failure(), "too many nested arrays or dictionaries");
}

}  // namespace
}  // namespace quellin
