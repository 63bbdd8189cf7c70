#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <boost/asio/async_result.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/system_executor.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "QuellinCore/Support/Background.h"
#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {

// The bridge between coroutines and the main executor. Including it costs seconds of compile time: only .cpp
// files that hold a coroutine do.

/// The main executor in the form that Boost.Asio runs coroutines on. Holds it weakly: tasks that wait in its
/// queue hold coroutines, which hold this, and all of them must go with the executor. What comes too late is
/// dropped.
class [[gnu::visibility("hidden")]] CoroutineExecutor {
 public:
  /// Does not keep `executor` alive.
  explicit CoroutineExecutor(const std::shared_ptr<MainExecutor>& executor) : executor_(executor) {}

  /// Posts `function`; drops it when the executor is gone.
  template <class Function>
  void execute(Function function) const {
    const auto executor = executor_.lock();
    if (!executor) return;
    // std::function needs something copyable, coroutines are not.
    executor->post([shared = std::make_shared<Function>(std::move(function))] { std::move (*shared)(); });
  }

  /// For Boost.Asio: the services that timers and sockets ask for.
  static boost::asio::execution_context& query(boost::asio::execution::context_t) noexcept {
    return boost::asio::query(boost::asio::system_executor{}, boost::asio::execution::context);
  }

  /// For Boost.Asio: a post never runs inside the call.
  static constexpr boost::asio::execution::blocking_t query(boost::asio::execution::blocking_t) noexcept {
    return boost::asio::execution::blocking_t::never_t{};
  }

  bool operator==(const CoroutineExecutor& other) const noexcept {
    return !executor_.owner_before(other.executor_) && !other.executor_.owner_before(executor_);
  }

 private:
  std::weak_ptr<MainExecutor> executor_;
};

/// Starts a coroutine on the main executor; nobody waits for it. An exception that leaves it ends the
/// process.
inline void spawn(const std::shared_ptr<MainExecutor>& executor, boost::asio::awaitable<void> coroutine) {
  boost::asio::co_spawn(CoroutineExecutor{executor}, std::move(coroutine),
                        [](const std::exception_ptr& error) {
                          if (error) std::rethrow_exception(error);
                        });
}

/// Suspends the coroutine until `start`'s argument is called, which must happen on the main executor.
template <class... Values, class Start>
auto awaitCallback(Start start) {
  return boost::asio::async_initiate<const boost::asio::use_awaitable_t<>, void(Values...)>(
      [](auto handler, const Start& begin) {
        auto shared = std::make_shared<decltype(handler)>(std::move(handler));
        begin([shared](Values... values) { std::move (*shared)(std::move(values)...); });
      },
      boost::asio::use_awaitable, std::move(start));
}

/// Runs blocking `work` on `background` and resumes on `executor` with its result. Only the work itself keeps
/// the executor alive, not the coroutine that waits.
template <class Work>
auto awaitBackground(Background& background, const std::shared_ptr<MainExecutor>& executor, Work work) {
  using Value = std::invoke_result_t<Work>;
  return awaitCallback<Value>(
      [&background, weak = std::weak_ptr(executor), work = std::move(work)](const auto& resume) {
        runThenPost(background, weak.lock(), work, resume);
      });
}

}  // namespace quellin
