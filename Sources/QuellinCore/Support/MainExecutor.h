#pragma once

#include <functional>
#include <memory>

namespace quellin {

/// The one thread of execution on which engine, recorder and store live. The application hands it in; the
/// core only asks whether it is on it and hands work back to it.
class MainExecutor {
 public:
  virtual ~MainExecutor() = default;

  /// True when the calling code runs on this executor. Callable from every thread.
  [[nodiscard]] virtual bool isCurrent() const = 0;

  /// Runs `task` on this executor later, never inside this call. Callable from every thread.
  virtual void post(std::function<void()> task) = 0;
};

/// Ends the process unless the calling code runs on `executor`: being elsewhere is a mistake in the program.
void requireCurrent(const MainExecutor& executor);

/// An executor for programs that run no event loop: it is the thread on which it was made, and posted tasks
/// wait until that thread calls `runPosted`.
class ThreadExecutor final : public MainExecutor {
 public:
  ThreadExecutor();
  ThreadExecutor(const ThreadExecutor&) = delete;
  ThreadExecutor& operator=(const ThreadExecutor&) = delete;
  ThreadExecutor(ThreadExecutor&&) = delete;
  ThreadExecutor& operator=(ThreadExecutor&&) = delete;
  ~ThreadExecutor() override;

  [[nodiscard]] bool isCurrent() const override;
  void post(std::function<void()> task) override;

  /// Runs the tasks posted so far, in the order of posting; tasks that they post wait for the next call. Ends
  /// the process on any other thread.
  void runPosted();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quellin
