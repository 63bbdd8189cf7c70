#include "QuellinCore/Platform/Darwin/DispatchMainExecutor.h"

#include <dispatch/dispatch.h>
#include <memory>
#include <pthread.h>
#include <utility>

namespace quellin::darwin {
namespace {

using Task = std::function<void()>;

void runAndDestroy(void* context) {
  const std::unique_ptr<Task> task{static_cast<Task*>(context)};
  (*task)();
}

}  // namespace

bool DispatchMainExecutor::isCurrent() const { return pthread_main_np() != 0; }

void DispatchMainExecutor::post(std::function<void()> task) {
  // The queue carries the task as a bare pointer; the function that it runs takes it back.
  auto owner = std::make_unique<Task>(std::move(task));
  dispatch_async_f(dispatch_get_main_queue(), owner.release(), runAndDestroy);
}

}  // namespace quellin::darwin
