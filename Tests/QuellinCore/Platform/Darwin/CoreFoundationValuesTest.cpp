#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"

namespace quellin::darwin {
namespace {

class CoreFoundationValuesTest : public fake::DarwinTest {};

TEST_F(CoreFoundationValuesTest, GivesAnObjectOutOnlyAsTheKindItIs) {
  auto& make = system.coreFoundation;
  const auto string = OwnedCF<CFTypeRef>::adopt(make.string("a"));
  const auto number = OwnedCF<CFTypeRef>::adopt(make.integer(1));
  const auto boolean = OwnedCF<CFTypeRef>::adopt(make.boolean(true));
  const auto array = OwnedCF<CFTypeRef>::adopt(make.array({}));
  const auto dictionary = OwnedCF<CFTypeRef>::adopt(make.dictionary({}));
  const auto data = OwnedCF<CFTypeRef>::adopt(make.opaque("data"));
  for (CFTypeRef object : {string.get(), number.get(), boolean.get(), array.get(), dictionary.get(),
                           data.get(), CFTypeRef{nullptr}}) {
    EXPECT_EQ(asString(object) != nullptr, object == string.get() && object != nullptr);
    EXPECT_EQ(asNumber(object) != nullptr, object == number.get());
    EXPECT_EQ(asBoolean(object) != nullptr, object == boolean.get());
    EXPECT_EQ(asArray(object) != nullptr, object == array.get());
    EXPECT_EQ(asDictionary(object) != nullptr, object == dictionary.get());
  }
}

TEST_F(CoreFoundationValuesTest, ReadsTextOfEveryLengthAndScript) {
  for (const std::string text : {"", "PMU tdie1", "Wärme", "温度", "\U0001F50B\U0001F50B"}) {
    const auto string = OwnedCF<CFStringRef>::adopt(system.coreFoundation.string(text));
    EXPECT_EQ(textOf(string.get()), text);
  }
}

TEST_F(CoreFoundationValuesTest, HasNoTextWithoutAStringThatHasAUTF8Form) {
  EXPECT_EQ(textOf(nullptr), std::nullopt);
  const auto number = OwnedCF<CFNumberRef>::adopt(system.coreFoundation.integer(1));
  EXPECT_EQ(textOf(number.get()), std::nullopt);
  const auto loneSurrogate = OwnedCF<CFStringRef>::adopt(system.coreFoundation.string("?"));
  system.calls.fail("CFStringGetCString");
  EXPECT_EQ(textOf(loneSurrogate.get()), std::nullopt);
}

TEST_F(CoreFoundationValuesTest, HasNoElementOutsideTheArray) {
  const auto array = OwnedCF<CFArrayRef>::adopt(
      system.coreFoundation.array({system.coreFoundation.string("a"), system.coreFoundation.string("b")}));
  EXPECT_EQ(textOf(elementAt(array.get(), 0)), "a");
  EXPECT_EQ(textOf(elementAt(array.get(), 1)), "b");
  EXPECT_EQ(elementAt(array.get(), 2), nullptr);
  EXPECT_EQ(elementAt(array.get(), -1), nullptr);
}

TEST_F(CoreFoundationValuesTest, MakesStringsAndNumbersOrOwnsNothing) {
  EXPECT_EQ(textOf(makeString("Energy Model").get()), "Energy Model");
  EXPECT_EQ(fake::valueOfNumber(makeNumber(-5).get()), -5);
  system.calls.fail("CFStringCreateWithCString");
  system.calls.fail("CFNumberCreate");
  EXPECT_FALSE(makeString("a"));
  EXPECT_FALSE(makeNumber(1));
}

}  // namespace
}  // namespace quellin::darwin
