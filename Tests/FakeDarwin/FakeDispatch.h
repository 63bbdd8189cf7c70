#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quellin::fake {

/// The main queue of the process, and whether the running code counts as the main thread's.
class FakeDispatch {
 public:
  using Function = void (*)(void*);

  void enqueue(void* context, Function work) { queued_.emplace_back(context, work); }

  /// Runs what is queued, as the main thread would; what that queues waits for the next call.
  void runQueued();

  bool isMainThread = true;

  /// The work that was never run.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  std::vector<std::pair<void*, Function>> queued_;
};

}  // namespace quellin::fake
