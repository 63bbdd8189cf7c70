#pragma once

#include <functional>

#include "QuellinCore/Support/MainExecutor.h"

namespace quellin::darwin {

/// The main executor of an application that runs the main thread's event loop: tasks go through the dispatch
/// main queue. Not for programs that call `dispatch_main`, after which the queue is no longer bound to the
/// main thread.
class DispatchMainExecutor final : public MainExecutor {
 public:
  /// True on the main thread.
  [[nodiscard]] bool isCurrent() const override;

  /// Tasks run in the order of posting. One that the application never comes to run is never destroyed.
  void post(std::function<void()> task) override;
};

}  // namespace quellin::darwin
