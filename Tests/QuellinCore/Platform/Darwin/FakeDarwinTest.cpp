#include <IOKit/IOKitLib.h>
#include <dlfcn.h>

#include "FakeDarwin/DarwinTest.h"
#include "FakeDarwin/FakeDarwin.h"

// A leak or a misuse that these fakes miss would pass unseen in every other test.
namespace quellin::fake {
namespace {

using testing::ElementsAre;

class FakeDarwinTest : public DarwinTest {
 protected:
  void SetUp() override { system.ioKit.addService("Device"); }

  static io_service_t findDevice() {
    return IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("Device"));
  }
};

TEST_F(FakeDarwinTest, NamesAnObjectThatIsStillRetained) {
  const CFTypeRef dictionary = IOServiceMatching("Device");
  EXPECT_EQ(CFRetain(dictionary), dictionary);
  EXPECT_EQ(system.objects.references(dictionary), 2);
  EXPECT_THAT(system.leaks(), ElementsAre("matching dictionary with 2 references"));
  CFRelease(dictionary);
  CFRelease(dictionary);
  EXPECT_EQ(system.objects.references(dictionary), 0);
}

TEST_F(FakeDarwinTest, NotesAReleaseTooMany) {
  const CFTypeRef dictionary = IOServiceMatching("Device");
  CFRelease(dictionary);
  CFRelease(dictionary);
  EXPECT_THAT(system.ledger.takeViolations(),
              ElementsAre("matching dictionary released after its last release"));
}

TEST_F(FakeDarwinTest, NotesAReleaseOfNothing) {
  CFRelease(nullptr);
  EXPECT_THAT(system.ledger.takeViolations(), ElementsAre("no object released"));
}

TEST_F(FakeDarwinTest, LetsTheLookUpConsumeItsDictionary) {
  CFMutableDictionaryRef dictionary = IOServiceMatching("Missing");
  EXPECT_EQ(IOServiceGetMatchingService(kIOMainPortDefault, dictionary), io_service_t{0});
  EXPECT_EQ(system.objects.references(dictionary), 0);
  EXPECT_EQ(IOServiceGetMatchingService(kIOMainPortDefault, nullptr), io_service_t{0});
}

TEST_F(FakeDarwinTest, NamesAServiceThatIsNotReleasedAndAConnectionThatIsNotClosed) {
  const io_service_t service = findDevice();
  io_connect_t connection = 0;
  EXPECT_EQ(IOServiceOpen(service, mach_task_self(), 0, &connection), KERN_SUCCESS);
  EXPECT_THAT(system.leaks(), ElementsAre("service not released: Device", "connection not closed: Device"));
  IOObjectRelease(service);
  IOServiceClose(connection);
}

TEST_F(FakeDarwinTest, NotesPortsUsedAfterTheyWereGivenBack) {
  const io_service_t service = findDevice();
  io_connect_t connection = 0;
  EXPECT_EQ(IOServiceOpen(service, mach_task_self(), 0, &connection), KERN_SUCCESS);
  IOServiceClose(connection);
  IOServiceClose(connection);
  IOObjectRelease(service);
  IOObjectRelease(service);
  EXPECT_THAT(system.ledger.takeViolations(),
              ElementsAre("connection used after its close", "service used after its release"));
}

TEST_F(FakeDarwinTest, NotesAConnectionReleasedLikeAService) {
  const io_service_t service = findDevice();
  io_connect_t connection = 0;
  EXPECT_EQ(IOServiceOpen(service, mach_task_self(), 0, &connection), KERN_SUCCESS);
  IOObjectRelease(connection);
  EXPECT_THAT(system.ledger.takeViolations(), ElementsAre("not a service"));
  IOObjectRelease(service);
  IOServiceClose(connection);
}

TEST_F(FakeDarwinTest, LetsACollectionHoldItsElementsUntilItIsGone) {
  CFStringRef element = system.coreFoundation.string("a");
  CFArrayRef array = system.coreFoundation.array({element});
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), element);
  CFRelease(array);
  EXPECT_EQ(system.objects.references(element), 0);
  EXPECT_EQ(CFStringGetLength(element), 0);
  EXPECT_THAT(system.ledger.takeViolations(), ElementsAre("string used after its last release"));
}

TEST_F(FakeDarwinTest, NamesALibraryThatIsNotClosedAndNotesUsesOfAClosedOne) {
  void* process = dlopen(nullptr, RTLD_NOW);
  EXPECT_THAT(system.leaks(), ElementsAre("library not closed, handles: 1"));
  EXPECT_NE(dlsym(process, "IOHIDEventGetFloatValue"), nullptr);
  dlclose(process);
  dlclose(process);
  dlsym(process, "IOHIDEventGetFloatValue");
  EXPECT_THAT(system.ledger.takeViolations(),
              ElementsAre("library closed that is not open", "symbol looked up in a closed library"));
}

TEST_F(FakeDarwinTest, FailsTheCallsItIsToldTo) {
  system.calls.failNth("IOServiceMatching", 2);
  const CFTypeRef first = IOServiceMatching("Device");
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(IOServiceMatching("Device"), nullptr);
  EXPECT_EQ(system.calls.count("IOServiceMatching"), 2);
  CFRelease(first);
}

}  // namespace
}  // namespace quellin::fake
