#include <limits>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/PropertyConversion.h"

namespace quellin::darwin {
namespace {

class PropertyConversionTest : public fake::DarwinTest {
 protected:
  PropertyTable converted(CFMutableDictionaryRef dictionary) {
    return propertyTable(OwnedCF<CFMutableDictionaryRef>::adopt(dictionary).get());
  }

  fake::FakeCoreFoundation& make = system.coreFoundation;
};

TEST_F(PropertyConversionTest, KeepsTheKindOfEveryValue) {
  constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
  const PropertyTable table = converted(make.dictionary({{"whole", make.integer(-1500)},
                                                         {"lowest", make.integer(lowest)},
                                                         {"one", make.integer(1)},
                                                         {"yes", make.boolean(true)},
                                                         {"no", make.boolean(false)},
                                                         {"real", make.real(3.0)},
                                                         {"wide", make.wideNumber(7)},
                                                         {"text", make.string("Good")}}));
  EXPECT_EQ(table, (PropertyTable{{"whole", std::int64_t{-1500}},
                                  {"lowest", std::int64_t{lowest}},
                                  {"one", std::int64_t{1}},
                                  {"yes", true},
                                  {"no", false},
                                  {"real", 3.0},
                                  {"wide", NumberObject{7}},
                                  {"text", "Good"}}));
}

TEST_F(PropertyConversionTest, NestsDictionaries) {
  const PropertyTable table = converted(make.dictionary(
      {{"AdapterDetails", make.dictionary({{"Watts", make.integer(96)}, {"Inner", make.dictionary({})}})}}));
  EXPECT_EQ(table, (PropertyTable{{"AdapterDetails",
                                   PropertyTable{{"Watts", std::int64_t{96}}, {"Inner", PropertyTable{}}}}}));
}

TEST_F(PropertyConversionTest, LeavesOutWhatHasNoPlainValue) {
  const PropertyTable table = converted(make.dictionary(
      {{"array", make.array({make.integer(1)})}, {"data", make.opaque("data")}, {"kept", make.integer(1)}}));
  EXPECT_EQ(table, (PropertyTable{{"kept", std::int64_t{1}}}));
}

TEST_F(PropertyConversionTest, LeavesOutKeysThatAreNoStrings) {
  EXPECT_EQ(converted(make.dictionaryOfObjects({{make.integer(1), make.integer(2)}})), PropertyTable{});
}

TEST_F(PropertyConversionTest, LeavesOutTextAndRealNumbersThatCannotBeRead) {
  system.calls.failNth("CFStringGetCString", 2);
  EXPECT_EQ(converted(make.dictionary({{"health", make.string("Good")}})), PropertyTable{});
  system.calls.fail("CFNumberGetValue");
  EXPECT_EQ(converted(make.dictionary({{"real", make.real(1.5)}})), PropertyTable{});
}

}  // namespace
}  // namespace quellin::darwin
