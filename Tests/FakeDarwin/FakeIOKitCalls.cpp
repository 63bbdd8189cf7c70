#include <IOKit/IOKitLib.h>
#include <memory>
#include <string>
#include <utility>

#include "FakeDarwin/FakeDarwin.h"

namespace {

using quellin::fake::FakeDarwin;

class MatchingDictionary final : public quellin::fake::Object {
 public:
  explicit MatchingDictionary(std::string className) : className_(std::move(className)) {}

  [[nodiscard]] std::string kind() const override { return "matching dictionary"; }
  [[nodiscard]] const std::string& className() const { return className_; }

 private:
  std::string className_;
};

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
  FakeDarwin& system = FakeDarwin::current();
  if (system.calls.enter(__func__)) return nullptr;
  return static_cast<CFMutableDictionaryRef>(
      system.objects.add(std::make_unique<MatchingDictionary>(className)));
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (mainPort != kIOMainPortDefault) system.ioKit.violation("a main port other than the default");
  if (matching == nullptr) return 0;
  const auto* dictionary = system.objects.as<MatchingDictionary>(matching);
  const std::string className = dictionary == nullptr ? "" : dictionary->className();
  system.objects.release(matching);
  return failure ? 0 : system.ioKit.lookUp(className);
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

}  // extern "C"
