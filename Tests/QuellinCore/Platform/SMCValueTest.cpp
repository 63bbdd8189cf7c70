#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Platform/SMCValue.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin {
namespace {

using SMCDecoding::fourCharCode;

TEST(SMCValueTest, HoldsTypeAndBytes) {
  VirtualSMC smc;
  smc.set("TA0P", "sp78", {0x15, 0x80});
  const auto value = readSMCValue(*smc.open(), fourCharCode("TA0P"));
  EXPECT_EQ(value, (SMCValue{.dataType = fourCharCode("sp78"), .bytes = {0x15, 0x80}}));
}

TEST(SMCValueTest, IsMissingForAKeyThatIsNotThere) {
  VirtualSMC smc;
  EXPECT_FALSE(readSMCValue(*smc.open(), fourCharCode("TA0P")));
}

TEST(SMCValueTest, MustHaveOneToThirtyTwoBytes) {
  for (const std::size_t size : {0U, 1U, 32U, 33U}) {
    VirtualSMC smc;
    smc.set("TEST", "ch8*", std::vector<std::uint8_t>(size, 7));
    std::optional<SMCValue> expected;
    if (size == 1 || size == 32) expected = {.dataType = fourCharCode("ch8*"), .bytes = {}};
    if (expected) expected->bytes.assign(size, 7);
    EXPECT_EQ(readSMCValue(*smc.open(), fourCharCode("TEST")), expected) << size;
  }
}

}  // namespace
}  // namespace quellin
