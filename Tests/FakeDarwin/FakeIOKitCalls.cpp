#include <IOKit/IOKitLib.h>
#include <memory>
#include <string>
#include <utility>

#include "FakeDarwin/FakeDarwin.h"

namespace {

using quellin::fake::FakeDarwin;
using quellin::fake::Matching;

class MatchingDictionary final : public quellin::fake::Object {
 public:
  explicit MatchingDictionary(Matching matching) : matching_(std::move(matching)) {}

  [[nodiscard]] std::string kind() const override { return "matching dictionary"; }
  [[nodiscard]] const Matching& matching() const { return matching_; }

 private:
  Matching matching_;
};

CFMutableDictionaryRef makeMatching(const char* function, Matching matching) {
  FakeDarwin& system = FakeDarwin::current();
  if (system.calls.enter(function)) return nullptr;
  return static_cast<CFMutableDictionaryRef>(
      system.objects.add(std::make_unique<MatchingDictionary>(std::move(matching))));
}

}  // namespace

extern "C" {

const mach_port_t kIOMainPortDefault = MACH_PORT_NULL;

kern_return_t IOObjectRelease(io_object_t object) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.ioKit.releaseService(object);
  return KERN_SUCCESS;
}

CFMutableDictionaryRef IOServiceMatching(const char* className) {
  return makeMatching(__func__, {.by = Matching::By::className, .text = className});
}

CFMutableDictionaryRef IOServiceNameMatching(const char* name) {
  return makeMatching(__func__, {.by = Matching::By::name, .text = name});
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (mainPort != kIOMainPortDefault) system.ioKit.violation("a main port other than the default");
  if (matching == nullptr) return 0;
  const auto* dictionary = system.objects.as<MatchingDictionary>(matching);
  const Matching wanted = dictionary == nullptr ? Matching{} : dictionary->matching();
  system.objects.release(matching);
  return failure ? 0 : system.ioKit.lookUp(wanted);
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connection) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (owningTask != mach_task_self()) system.ioKit.violation("a user client opened for another task");
  if (!system.ioKit.checkService(service)) return 1;
  if (failure) {
    *connection = 0xdead;  // what a refusing kernel leaves here means nothing
    return *failure;
  }
  *connection = system.ioKit.connect(service, type);
  return KERN_SUCCESS;
}

kern_return_t IOServiceClose(io_connect_t connection) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  system.ioKit.close(connection);
  return failure.value_or(KERN_SUCCESS);
}

kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector, const void* input,
                                        size_t inputSize, void* output, size_t* outputSize) {
  FakeDarwin& system = FakeDarwin::current();
  if (const auto failure = system.calls.enter(__func__)) return *failure;
  return system.ioKit.call(connection, selector, input, inputSize, output, outputSize);
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (allocator != kCFAllocatorDefault || options != 0) system.ioKit.violation("an allocator or options");
  if (failure) {
    // What a failing call leaves here means nothing.
    *properties = reinterpret_cast<CFMutableDictionaryRef>(std::uintptr_t{0xdead0});
    return *failure;
  }
  // A registry that answers with another kind of object does so under this type, too.
  *properties = static_cast<CFMutableDictionaryRef>(const_cast<void*>(system.ioKit.properties(entry)));
  return KERN_SUCCESS;
}

}  // extern "C"
