#include "quellin/Measuring/Loop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <future>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include "QuellinCore/Support/AsioExecutor.h"
#include "QuellinCore/Support/Signals.h"
#include "quellin/Measuring/RequestsToEnd.h"

namespace quellin::cli {

namespace {

// Longer than anybody waits, and short enough to be counted in nanoseconds.
constexpr Seconds longestDelay{1e9};

void waitAgain(boost::asio::signal_set& set, std::function<void()> action) {
  set.async_wait([&set, action = std::move(action)](const boost::system::error_code& error, int) {
    if (error) return;
    waitAgain(set, action);
    action();
  });
}

}  // namespace

struct Loop::State {
  boost::asio::io_context context{1};
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work{context.get_executor()};
  std::list<boost::asio::signal_set> others;  // which are referred to
  std::shared_ptr<AsioExecutor> executor = std::make_shared<AsioExecutor>(context);
  std::function<void()> interrupted;

  // Signals are heard on a thread of their own: the loop's may be held up by the hardware.
  boost::asio::io_context signalContext{1};
  boost::asio::signal_set signals{signalContext};
  RequestsToEnd requests;  // of that thread
  std::mutex suddenEndMutex;
  std::function<void()> suddenEnd;
  bool isImperturbable = false;  // of the loop's
  ExitStatus statusOfSuddenEnd;
  std::thread signalThread;

  explicit State(ExitStatus status) : statusOfSuddenEnd(status) {
    for (const int signal : endingSignals) {
      if (!isIgnored(signal)) signals.add(signal);
    }
    waitForSignal();
    signalThread = std::thread{[this] { signalContext.run(); }};
  }
  ~State() {
    signalContext.stop();
    signalThread.join();
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  State(State&&) = delete;
  State& operator=(State&&) = delete;

  [[noreturn]] void endSuddenly() {
    const std::lock_guard lock{suddenEndMutex};
    if (suddenEnd) suddenEnd();
    std::_Exit(static_cast<int>(statusOfSuddenEnd));
  }

  void waitForSignal() {
    signals.async_wait([this](const boost::system::error_code& error, int signal) {
      if (error) return;
      waitForSignal();
      answer(requests.answerTo(signal));
    });
  }

  void answer(RequestsToEnd::Answer answer) {
    if (answer == RequestsToEnd::Answer::endAtOnce) endSuddenly();
    if (answer == RequestsToEnd::Answer::nothing) return;
    boost::asio::post(context, [this] {
      if (interrupted && !isImperturbable) interrupted();
    });
  }

  // What `question` says of the requests, on their thread.
  bool ask(const std::function<bool(RequestsToEnd&)>& question) {
    std::promise<bool> said;
    std::future<bool> answer = said.get_future();
    boost::asio::post(signalContext, [this, &question, said = std::move(said)]() mutable {
      said.set_value(question(requests));
    });
    return answer.get();
  }
};

Loop::Loop(ExitStatus statusOfSuddenEnd) : state_(std::make_unique<State>(statusOfSuddenEnd)) {}

Loop::~Loop() = default;

std::shared_ptr<MainExecutor> Loop::executor() const { return state_->executor; }

void Loop::onInterrupt(std::function<void()> action) { state_->interrupted = std::move(action); }

void Loop::onSuddenEnd(std::function<void()> action) {
  const std::lock_guard lock{state_->suddenEndMutex};
  state_->suddenEnd = std::move(action);
}

bool Loop::beImperturbable() {
  state_->isImperturbable = true;
  return state_->ask([](RequestsToEnd& requests) { return requests.refuse(); });
}

bool Loop::wasAskedToEnd() const {
  return state_->ask([](RequestsToEnd& requests) { return requests.wereHeard(); });
}

void Loop::onSignal(int signal, std::function<void()> action) {
  if (isIgnored(signal)) return;
  auto& set = state_->others.emplace_back(state_->context, signal);
  waitAgain(set, std::move(action));
}

void Loop::after(Seconds delay, std::function<void()> action) {
  const auto duration = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
      std::clamp(delay, Seconds{0}, longestDelay));
  auto timer = std::make_shared<boost::asio::steady_timer>(state_->context, duration);
  timer->async_wait([timer, action = std::move(action)](const boost::system::error_code& error) {
    if (!error) action();
  });
}

void Loop::run() { state_->context.run(); }

void Loop::runAgain() {
  state_->context.restart();
  run();
}

void Loop::stop() { state_->context.stop(); }

}  // namespace quellin::cli
