#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Support/LocaleDateText.h"

namespace quellin {
namespace {

class CoreFoundationLocaleDateTextTest : public fake::DarwinTest {
 protected:
  static std::string textOfTheDayAfterTheReferenceDate() {
    return systemLocaleDateText().mediumDateShortTime(Instant{Seconds{978307200.0 + 86400}});
  }
};

TEST_F(CoreFoundationLocaleDateTextTest, AsksForMediumDateAndShortTimeCountedFrom2001) {
  EXPECT_EQ(textOfTheDayAfterTheReferenceDate(), "date style 2, time style 1, second 86400");
}

TEST_F(CoreFoundationLocaleDateTextTest, HasNoTextWhenTheSystemMakesNone) {
  for (const char* function : {"CFDateFormatterCreate", "CFDateFormatterCreateStringWithAbsoluteTime"}) {
    system.calls.fail(function);
    EXPECT_EQ(textOfTheDayAfterTheReferenceDate(), "") << function;
    system.calls.mend(function);
  }
}

TEST_F(CoreFoundationLocaleDateTextTest, GivesEverythingBackWhicheverCallFails) {
  failEachCallIn([] { (void)textOfTheDayAfterTheReferenceDate(); });
}

}  // namespace
}  // namespace quellin
