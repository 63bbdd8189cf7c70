#include "QuellinCore/Support/MainExecutor.h"

#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quellin {

void requireCurrent(const MainExecutor& executor) {
  if (!executor.isCurrent()) std::abort();
}

struct ThreadExecutor::State {
  const std::thread::id thread = std::this_thread::get_id();
  std::mutex mutex;
  std::vector<std::function<void()>> posted;  // guarded by mutex
};

ThreadExecutor::ThreadExecutor() : state_(std::make_unique<State>()) {}

ThreadExecutor::~ThreadExecutor() = default;

bool ThreadExecutor::isCurrent() const { return std::this_thread::get_id() == state_->thread; }

void ThreadExecutor::post(std::function<void()> task) {
  const std::lock_guard lock(state_->mutex);
  state_->posted.push_back(std::move(task));
}

void ThreadExecutor::runPosted() {
  requireCurrent(*this);
  std::vector<std::function<void()>> tasks;
  {
    const std::lock_guard lock(state_->mutex);
    tasks.swap(state_->posted);
  }
  for (const auto& task : tasks) task();
}

}  // namespace quellin
