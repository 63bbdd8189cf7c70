#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace quellin::testing_support {

/// A thread that is waited for at the end of its life. Not every standard library has std::jthread.
class JoinedThread {
 public:
  explicit JoinedThread(std::function<void()> work) : thread_(std::move(work)) {}
  JoinedThread(const JoinedThread&) = delete;
  JoinedThread& operator=(const JoinedThread&) = delete;
  JoinedThread(JoinedThread&&) = delete;
  JoinedThread& operator=(JoinedThread&&) = delete;
  ~JoinedThread() { thread_.join(); }

 private:
  std::thread thread_;
};

}  // namespace quellin::testing_support
