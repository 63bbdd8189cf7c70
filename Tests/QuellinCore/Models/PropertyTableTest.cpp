#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/PropertyTable.h"

namespace quellin {
namespace {

const PropertyTable everyKind{
    {"integer", std::int64_t{7}},    {"boolean", true},
    {"string", std::string{"text"}}, {"double", 89.5},
    {"object", NumberObject{3}},     {"table", PropertyTable{{"Watts", std::int64_t{96}}}}};

TEST(PropertyTableTest, GivesEachKindThroughItsOwnQuestion) {
  EXPECT_EQ(everyKind.integer("integer"), 7);
  EXPECT_EQ(everyKind.boolean("boolean"), true);
  EXPECT_EQ(everyKind.string("string"), "text");
  ASSERT_NE(everyKind.table("table"), nullptr);
  EXPECT_EQ(everyKind.table("table")->integer("Watts"), 96);
}

TEST(PropertyTableTest, CountsAValueOfAnotherKindAsMissing) {
  for (const Property& property : everyKind.properties()) {
    SCOPED_TRACE(property.key);
    EXPECT_EQ(everyKind.integer(property.key).has_value(), property.key == "integer");
    EXPECT_EQ(everyKind.boolean(property.key).has_value(), property.key == "boolean");
    EXPECT_EQ(everyKind.string(property.key).has_value(), property.key == "string");
    EXPECT_EQ(everyKind.table(property.key) != nullptr, property.key == "table");
  }
}

TEST(PropertyTableTest, FindsNothingUnderAnotherKey) {
  EXPECT_EQ(everyKind.find("Integer"), nullptr);
  EXPECT_EQ(PropertyTable{}.find(""), nullptr);
}

TEST(PropertyTableTest, ReplacesAValueInItsPlace) {
  PropertyTable table{{"a", std::int64_t{1}}, {"b", std::int64_t{2}}};
  table.set("a", std::string{"new"});
  ASSERT_EQ(table.properties().size(), 2U);
  EXPECT_EQ(table.properties()[0], (Property{"a", std::string{"new"}}));
  EXPECT_EQ(table.properties()[1], (Property{"b", std::int64_t{2}}));
}

TEST(PropertyTableTest, KeepsTheLastOfTwoValuesGivenUnderOneKey) {
  const PropertyTable table{{"a", std::int64_t{1}}, {"a", true}};
  EXPECT_EQ(table.properties().size(), 1U);
  EXPECT_EQ(table.boolean("a"), true);
}

TEST(PropertyTableTest, ComparesDeeply) {
  PropertyTable copy = everyKind;
  EXPECT_EQ(copy, everyKind);
  copy.set("table", PropertyTable{{"Watts", std::int64_t{97}}});
  EXPECT_NE(copy, everyKind);
}

}  // namespace
}  // namespace quellin
