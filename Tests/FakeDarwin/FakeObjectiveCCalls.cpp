#include <objc/runtime.h>

#include "FakeDarwin/FakeDarwin.h"

using quellin::fake::FakeDarwin;

extern "C" {

Class objc_getClass(const char* name) {
  FakeDarwin& system = FakeDarwin::current();
  if (system.calls.enter(__func__)) return nullptr;
  return static_cast<Class>(system.objectiveC.classNamed(name));
}

SEL sel_registerName(const char* name) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  return static_cast<SEL>(system.objectiveC.selector(name));
}

BOOL class_respondsToSelector(Class type, SEL message) {
  FakeDarwin& system = FakeDarwin::current();
  return !system.calls.enter(__func__) && system.objectiveC.respondsTo(type, message);
}

// The header declares it without parameters or result, which is why it is not included here: each caller
// calls it under the type of the method it means. A long is as wide as every result that is asked for.
long objc_msgSend(id receiver, SEL message) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const long answer = system.objectiveC.answer(receiver, message);
  return failure ? 0 : answer;
}

void* objc_autoreleasePoolPush() {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  return system.objectiveC.pushPool();
}

void objc_autoreleasePoolPop(void* pool) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.objectiveC.popPool(pool);
}

}  // extern "C"
