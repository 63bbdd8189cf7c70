#include "quellin/Measuring/Loop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include "QuellinCore/Support/AsioExecutor.h"

namespace quellin::cli {

struct Loop::State {
  boost::asio::io_context context{1};
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work{context.get_executor()};
  boost::asio::signal_set signals{context, SIGINT, SIGTERM};
  std::shared_ptr<AsioExecutor> executor = std::make_shared<AsioExecutor>(context);
  std::function<void(int)> interrupted;
  int interruptions = 0;

  void waitForSignal() {
    signals.async_wait([this](const boost::system::error_code& error, int) {
      if (error) return;
      waitForSignal();
      if (interrupted) interrupted(++interruptions);
    });
  }
};

Loop::Loop() : state_(std::make_unique<State>()) { state_->waitForSignal(); }

Loop::~Loop() = default;

std::shared_ptr<MainExecutor> Loop::executor() const { return state_->executor; }

void Loop::onInterrupt(std::function<void(int)> action) { state_->interrupted = std::move(action); }

void Loop::after(Seconds delay, std::function<void()> action) {
  const auto duration =
      std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::max(delay, Seconds{0}));
  auto timer = std::make_shared<boost::asio::steady_timer>(state_->context, duration);
  timer->async_wait([timer, action = std::move(action)](const boost::system::error_code& error) {
    if (!error) action();
  });
}

void Loop::run() { state_->context.run(); }

void Loop::stop() { state_->context.stop(); }

}  // namespace quellin::cli
