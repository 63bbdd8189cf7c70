#include <dispatch/dispatch.h>
#include <pthread.h>

#include "FakeDarwin/FakeDarwin.h"

struct dispatch_queue_s {};

namespace {

dispatch_queue_s mainQueue;

}  // namespace

namespace quellin::fake {

void FakeDispatch::runQueued() {
  const bool wasMainThread = std::exchange(isMainThread, true);
  for (const auto& [context, work] : std::exchange(queued_, {})) work(context);
  isMainThread = wasMainThread;
}

std::vector<std::string> FakeDispatch::leaks() const {
  std::vector<std::string> leaked;
  for (std::size_t count = 0; count < queued_.size(); ++count) leaked.emplace_back("task that was never run");
  return leaked;
}

}  // namespace quellin::fake

using quellin::fake::FakeDarwin;

extern "C" {

int pthread_main_np() { return FakeDarwin::current().dispatch.isMainThread ? 1 : 0; }

dispatch_queue_t dispatch_get_main_queue() noexcept { return &mainQueue; }

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) noexcept {
  FakeDarwin& system = FakeDarwin::current();
  if (queue != &mainQueue) system.ledger.violation("work for another queue");
  system.dispatch.enqueue(context, work);
}

}  // extern "C"
