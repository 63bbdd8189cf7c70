#include <IOKit/IOKitLib.h>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "FakeDarwin/FakeSMC.h"
#include "QuellinCore/Platform/SMCSource.h"
#include "QuellinCore/Services/SMCService.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every test ends with the fixture's check that nothing is leaked, closed twice or released too often.
class DarwinSMCSourceTest : public fake::DarwinTest {
 protected:
  void addSMC() {
    VirtualSMC keys;
    keys.set("FNum", "ui8 ", {1});
    keys.set("F0Ac", "fpe2", {0x1F, 0x40});
    keys.set("TC0P", "sp78", {0x2D, 0x80});
    system.ioKit.addService("AppleSMC", fake::smcStructMethod(keys));
  }

  void expectCalls(const std::string& function, int count) const {
    EXPECT_EQ(system.calls.count(function), count) << function;
  }
};

TEST_F(DarwinSMCSourceTest, ReadsFansAndTemperaturesThroughTheUserClient) {
  addSMC();
  const SMCService service;
  EXPECT_THAT(service.readFans(),
              ElementsAre(FanInfo{.id = 0, .name = "Fan 0", .currentRPM = 2000, .minRPM = 0, .maxRPM = 0}));
  EXPECT_THAT(service.readTemperatures(), ElementsAre(TemperatureSensor{"TC0P", "CPU Proximity", 45.5}));
}

TEST_F(DarwinSMCSourceTest, OpensAConnectionOfTypeTwoForEachReadAndClosesIt) {
  addSMC();
  const SMCService service;
  EXPECT_EQ(service.readFans().size(), 1U);
  expectCalls("IOServiceOpen", 1);
  expectCalls("IOServiceClose", 1);
  expectCalls("IOObjectRelease", 1);
  EXPECT_EQ(service.readTemperatures().size(), 1U);
  expectCalls("IOServiceOpen", 2);
  expectCalls("IOServiceClose", 2);
  expectCalls("IOObjectRelease", 2);
  EXPECT_THAT(system.ioKit.connectionTypes(), ElementsAre(2U, 2U));
}

TEST_F(DarwinSMCSourceTest, HasNoConnectionWithoutTheService) {
  system.ioKit.addService("AnotherDevice");
  const auto source = nativeSMCSource();
  EXPECT_EQ(source->open(), nullptr);
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::absent);
  expectCalls("IOServiceOpen", 0);
  expectCalls("IOObjectRelease", 0);
}

TEST_F(DarwinSMCSourceTest, HasNoConnectionWithoutAMatchingDictionary) {
  addSMC();
  system.calls.fail("IOServiceMatching");
  EXPECT_EQ(nativeSMCSource()->open(), nullptr);
  expectCalls("IOServiceGetMatchingService", 0);
}

TEST_F(DarwinSMCSourceTest, HasNoConnectionWhenTheLookUpFails) {
  addSMC();
  system.calls.fail("IOServiceGetMatchingService");
  EXPECT_EQ(nativeSMCSource()->open(), nullptr);
  expectCalls("IOServiceOpen", 0);
}

TEST_F(DarwinSMCSourceTest, ReleasesTheServiceAndClosesNothingWhenTheOpenIsRefused) {
  addSMC();
  system.calls.fail("IOServiceOpen", kIOReturnNotPermitted);
  EXPECT_EQ(nativeSMCSource()->open(), nullptr);
  expectCalls("IOObjectRelease", 1);
  expectCalls("IOServiceClose", 0);
}

TEST_F(DarwinSMCSourceTest, ReadsNothingWhenTheOpenIsRefused) {
  addSMC();
  system.calls.fail("IOServiceOpen");
  EXPECT_THAT(SMCService{}.readFans(), IsEmpty());
  EXPECT_THAT(SMCService{}.readTemperatures(), IsEmpty());
}

TEST_F(DarwinSMCSourceTest, ClosesTheConnectionWhenEveryStructCallFails) {
  addSMC();
  system.calls.fail("IOConnectCallStructMethod");
  EXPECT_THAT(SMCService{}.readFans(), IsEmpty());
  EXPECT_THAT(SMCService{}.readTemperatures(), IsEmpty());
  expectCalls("IOServiceClose", 2);
}

TEST_F(DarwinSMCSourceTest, ClosesTheConnectionWhenTheSecondStepFails) {
  addSMC();
  system.calls.failNth("IOConnectCallStructMethod", 2);
  EXPECT_THAT(SMCService{}.readFans(), IsEmpty());
  expectCalls("IOConnectCallStructMethod", 2);
  expectCalls("IOServiceClose", 1);
}

TEST_F(DarwinSMCSourceTest, TakesAFailingCloseAsDone) {
  addSMC();
  system.calls.fail("IOServiceClose");
  EXPECT_EQ(SMCService{}.readFans().size(), 1U);
  expectCalls("IOServiceClose", 1);
}

TEST_F(DarwinSMCSourceTest, HandsOverWholeBlocksAndTheKernelsCode) {
  std::vector<std::size_t> sizes;
  system.ioKit.addService("AppleSMC",
                          [&](std::uint32_t selector, const void*, std::size_t inputSize, void*,
                              std::size_t* outputSize) -> kern_return_t {
                            sizes = {selector, inputSize, *outputSize};
                            *outputSize = 12;
                            return kIOReturnNotPermitted;
                          });
  const auto connection = nativeSMCSource()->open();
  ASSERT_NE(connection, nullptr);
  SMCKeyData answer;
  std::size_t answerSize = sizeof(answer);
  EXPECT_EQ(connection->callStruct(smcStructSelector, {}, answer, answerSize), kIOReturnNotPermitted);
  EXPECT_THAT(sizes, ElementsAre(2U, 80U, 80U));
  EXPECT_EQ(answerSize, 12U);
}

TEST_F(DarwinSMCSourceTest, SaysWhyThereIsNoConnection) {
  addSMC();
  const auto source = nativeSMCSource();
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::available);
  for (const int code : {kIOReturnNotPermitted, kIOReturnNotPrivileged}) {
    system.calls.fail("IOServiceOpen", code);
    EXPECT_EQ(source->diagnose().availability, SourceAvailability::notPermitted) << code;
  }
  system.calls.fail("IOServiceOpen", 5);
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "SMC",
                                                 .availability = SourceAvailability::failed,
                                                 .reason = "IOServiceOpen failed: error 0x00000005",
                                                 .path = "AppleSMC",
                                                 .remedy = std::nullopt}));
}

}  // namespace
}  // namespace quellin
