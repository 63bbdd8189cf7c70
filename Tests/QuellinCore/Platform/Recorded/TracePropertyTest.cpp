#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceProperty.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

using testing::HasSubstr;

PropertyTable readBack(const PropertyTable& table, SerialNumbers serialNumbers = SerialNumbers::kept) {
  const auto text = encodeJSON(traceProperties(table, serialNumbers));
  const auto properties = decodeJSON<std::vector<TraceProperty>>(text.value());
  return propertyTable(properties.value()).value();
}

std::string faultOf(std::string_view json) {
  const auto table = propertyTable(decodeJSON<std::vector<TraceProperty>>(json).value());
  return table ? "" : table.error();
}

TEST(TracePropertyTest, KeepsEveryKindApart) {
  const PropertyTable table{
      {"integer", std::int64_t{12}},
      {"double", 12.0},
      {"number object", NumberObject{12}},
      {"text", std::string{"12"}},
      {"true", true},
      {"one", std::int64_t{1}},
      {"false", false},
      {"smallest", std::numeric_limits<std::int64_t>::min()},
      {"fraction", 0.1},
      {"minus zero", -0.0},
      {"infinity", std::numeric_limits<double>::infinity()},
      {"empty", PropertyTable{}},
      {"nested", PropertyTable{{"deeper", PropertyTable{{"double", 3.0}, {"integer", std::int64_t{3}}}}}}};
  EXPECT_EQ(readBack(table), table);
  EXPECT_TRUE(std::signbit(std::get<double>(*readBack(table).find("minus zero"))));
}

TEST(TracePropertyTest, NamesTheKindByItsField) {
  const PropertyTable table{{"a", std::int64_t{12}}, {"b", 12.0}, {"c", NumberObject{12}}, {"d", true}};
  EXPECT_EQ(encodeJSON(traceProperties(table, SerialNumbers::kept)),
            R"([{"key":"a","integer":12},{"key":"b","double":12},{"key":"c","numberObject":12},)"
            R"({"key":"d","boolean":true}])");
}

TEST(TracePropertyTest, RedactsEveryKeyThatContainsSerial) {
  const PropertyTable table{
      {"Serial", std::string{"x"}},
      {"BatterySerialNumber", std::string{"x"}},
      {"Hardware Serial Number", std::string{"x"}},
      {"MANUFACTURERSERIAL", std::string{"x"}},
      {"serial no", std::int64_t{5}},
      {"SerialParts", PropertyTable{{"a", std::string{"x"}}}},
      {"AdapterDetails", PropertyTable{{"SerialString", std::string{"x"}}, {"Watts", std::int64_t{96}}}}};
  const std::string gone = "redacted";
  EXPECT_EQ(readBack(table, SerialNumbers::redacted),
            (PropertyTable{
                {"Serial", gone},
                {"BatterySerialNumber", gone},
                {"Hardware Serial Number", gone},
                {"MANUFACTURERSERIAL", gone},
                {"AdapterDetails", PropertyTable{{"SerialString", gone}, {"Watts", std::int64_t{96}}}}}));
}

TEST(TracePropertyTest, LeavesOutEntriesOfUnknownKinds) {
  const auto properties = decodeJSON<std::vector<TraceProperty>>(
      R"([{"key":"new","date":"2030"},{"key":"old","integer":1,"note":[]}])");
  EXPECT_EQ(propertyTable(properties.value()), (PropertyTable{{"old", std::int64_t{1}}}));
}

TEST(TracePropertyTest, RefusesTwoValuesForOneKey) {
  EXPECT_THAT(faultOf(R"([{"key":"k","integer":1,"double":1}])"), HasSubstr("\"k\""));
  EXPECT_THAT(faultOf(R"([{"key":"t","table":[{"key":"k","boolean":true,"string":""}]}])"),
              HasSubstr("\"k\""));
}

TEST(TracePropertyTest, RefusesTablesThatNoBatteryHas) {
  std::vector<TraceProperty> properties(4096);
  EXPECT_TRUE(propertyTable(properties));
  properties.emplace_back();
  EXPECT_FALSE(propertyTable(properties));
}

}  // namespace
}  // namespace quellin
