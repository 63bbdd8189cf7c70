#include <IOKit/IOKitLib.h>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Darwin/SourceFault.h"

namespace quellin::darwin {
namespace {

TEST(SourceFaultTest, TellsARefusalFromAFailure) {
  EXPECT_EQ(kernelFault("IOServiceOpen", kIOReturnNotPermitted).availability,
            SourceAvailability::notPermitted);
  EXPECT_EQ(kernelFault("IOServiceOpen", kIOReturnNotPrivileged).availability,
            SourceAvailability::notPermitted);
  const SourceFault fault = kernelFault("IOServiceOpen", 5);
  EXPECT_EQ(fault.availability, SourceAvailability::failed);
  EXPECT_EQ(fault.reason, "IOServiceOpen failed: error 0x00000005");
}

TEST(SourceFaultTest, CarriesReasonAndPathIntoTheDiagnosis) {
  EXPECT_EQ(faultDiagnosis("Battery", absentFault("None."), "entry"),
            (SourceDiagnosis{.source = "Battery",
                             .availability = SourceAvailability::absent,
                             .reason = "None.",
                             .path = "entry",
                             .remedy = std::nullopt}));
}

}  // namespace
}  // namespace quellin::darwin
