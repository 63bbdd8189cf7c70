#include "QuellinCore/Services/MetricsEngine.h"

#include <cmath>
#include <optional>
#include <stdexcept>
#include <utility>

#include "QuellinCore/Services/PollingTask.h"
#include "QuellinCore/Services/SystemReader.h"
#include "QuellinCore/Support/Awaiting.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

Seconds checkedInterval(Seconds interval) {
  if (std::isfinite(interval.count()) && interval.count() > 0) return interval;
  throw std::invalid_argument("MetricsEngine: the interval must be a finite number of seconds above 0, not " +
                              std::to_string(interval.count()));
}

std::int64_t checkedHistoryLimit(std::int64_t limit) {
  if (limit >= 0) return limit;
  throw std::invalid_argument("MetricsEngine: the history limit must not be negative, it is " +
                              std::to_string(limit));
}

// The sleeping task owns the loop's coroutine; the loop therefore holds the task weakly.
bool isWanted(const std::weak_ptr<PollingTask>& weak) {
  const auto task = weak.lock();
  return task && !task->isCancelled();
}

}  // namespace

/// What the polling loop reaches. The engine owns it; the loop holds it weakly, so that it ends with the
/// engine.
struct [[gnu::visibility("hidden")]] MetricsEngine::State : std::enable_shared_from_this<State> {
  std::shared_ptr<MainExecutor> executor;
  std::shared_ptr<const Reader> reader;
  Background* background = nullptr;
  std::int64_t historyLimit = 0;

  SystemPowerState currentState;
  std::vector<SystemPowerState> history;
  bool isRunning = false;
  Seconds interval{};
  std::shared_ptr<PollingTask> pollingTask;

  struct Signals {
    Signal<const SystemPowerState&> currentState;
    Signal<const std::vector<SystemPowerState>&> history;
    Signal<bool> isRunning;
    Signal<Seconds> interval;
  };
  /// Gone with the engine, so that nobody hears of what a call still on the stack does afterwards.
  std::unique_ptr<Signals> signals = std::make_unique<Signals>();

  void start();
  void close();
  void stop();
  void setRunning(bool running);
  void publish(SystemPowerState state);

  static boost::asio::awaitable<void> poll(std::weak_ptr<State> weak);
  static boost::asio::awaitable<void> keepPolling(std::weak_ptr<State> weak, std::weak_ptr<PollingTask> task);
  static std::optional<Seconds> nextWakeUp(const std::weak_ptr<State>& weak);
};

void MetricsEngine::State::start() {
  if (isRunning || !signals) return;
  // The task exists before anybody hears of it: an observer may stop or restart the engine in its call.
  pollingTask = std::make_shared<PollingTask>(executor, *background);
  spawn(executor, keepPolling(weak_from_this(), pollingTask));
  setRunning(true);
}

void MetricsEngine::State::stop() {
  if (const auto task = std::exchange(pollingTask, nullptr)) task->cancel();
  setRunning(false);
}

void MetricsEngine::State::close() {
  signals.reset();
  isRunning = false;
  if (const auto task = std::exchange(pollingTask, nullptr)) task->cancel();
}

void MetricsEngine::State::setRunning(bool running) {
  if (std::exchange(isRunning, running) != running && signals) signals->isRunning.notify(running);
}

void MetricsEngine::State::publish(SystemPowerState state) {
  currentState = std::move(state);
  history.push_back(currentState);
  const auto limit = checkedCast<std::size_t>(historyLimit);
  if (history.size() > limit) history.erase(history.begin(), history.end() - historyLimit);
  if (signals) signals->currentState.notify(currentState);
  if (signals) signals->history.notify(history);
}

std::optional<Seconds> MetricsEngine::State::nextWakeUp(const std::weak_ptr<State>& weak) {
  const auto state = weak.lock();
  if (!state) return std::nullopt;
  return state->background->now() + state->interval;
}

boost::asio::awaitable<void> MetricsEngine::State::poll(std::weak_ptr<State> weak) {
  auto state = weak.lock();
  if (!state) co_return;
  auto read =
      awaitBackground(*state->background, state->executor, [reader = state->reader] { return (*reader)(); });
  state.reset();
  SystemPowerState snapshot = co_await std::move(read);
  if (const auto alive = weak.lock()) alive->publish(std::move(snapshot));
}

boost::asio::awaitable<void> MetricsEngine::State::keepPolling(std::weak_ptr<State> weak,
                                                               std::weak_ptr<PollingTask> task) {
  while (isWanted(task)) {
    co_await poll(weak);
    const auto wakeUp = nextWakeUp(weak);
    if (!wakeUp || !isWanted(task)) co_return;
    co_await awaitCallback<>([&](auto resume) { task.lock()->sleepUntil(*wakeUp, std::move(resume)); });
  }
}

MetricsEngine::MetricsEngine(std::shared_ptr<MainExecutor> executor, Seconds interval,
                             std::int64_t historyLimit, Reader reader, std::unique_ptr<Background> background,
                             const WallClock& wallClock)
    : state_(std::make_shared<State>()), background_(std::move(background)) {
  state_->executor = std::move(executor);
  state_->reader = std::make_shared<const Reader>(std::move(reader));
  state_->background = background_.get();
  state_->historyLimit = checkedHistoryLimit(historyLimit);
  state_->interval = checkedInterval(interval);
  state_->currentState.timestamp = wallClock.now();
}

MetricsEngine::~MetricsEngine() { state_->close(); }

// The caller holds on to what this returns: an observer may destroy the engine.
std::shared_ptr<MetricsEngine::State> MetricsEngine::state() const {
  requireCurrent(*state_->executor);
  return state_;
}

const SystemPowerState& MetricsEngine::currentState() const { return state()->currentState; }
const std::vector<SystemPowerState>& MetricsEngine::history() const { return state()->history; }
bool MetricsEngine::isRunning() const { return state()->isRunning; }
Seconds MetricsEngine::interval() const { return state()->interval; }
std::int64_t MetricsEngine::historyLimit() const { return state_->historyLimit; }

void MetricsEngine::start() { state()->start(); }

void MetricsEngine::stop() { state()->stop(); }

void MetricsEngine::setInterval(Seconds interval) {
  const auto state = this->state();
  if (checkedInterval(interval) == state->interval) return;
  state->interval = interval;
  state->signals->interval.notify(interval);
  if (!state->isRunning) return;
  state->stop();
  state->start();
}

void MetricsEngine::snapshot(std::function<void(const SystemPowerState&)> completion) {
  const auto state = this->state();
  runThenPost(
      *background_, state->executor, [reader = state->reader] { return (*reader)(); },
      [weak = std::weak_ptr(state), completion = std::move(completion)](const SystemPowerState& snapshot) {
        if (weak.lock()) completion(snapshot);
      });
}

Subscription MetricsEngine::observeCurrentState(std::function<void(const SystemPowerState&)> observer) {
  return state()->signals->currentState.subscribe(std::move(observer));
}

Subscription MetricsEngine::observeHistory(
    std::function<void(const std::vector<SystemPowerState>&)> observer) {
  return state()->signals->history.subscribe(std::move(observer));
}

Subscription MetricsEngine::observeIsRunning(std::function<void(bool)> observer) {
  return state()->signals->isRunning.subscribe(std::move(observer));
}

Subscription MetricsEngine::observeInterval(std::function<void(Seconds)> observer) {
  return state()->signals->interval.subscribe(std::move(observer));
}

MetricsEngine::Reader MetricsEngine::nativeReader() {
  return [reader = SystemReader{}] { return reader.readAll(); };
}

}  // namespace quellin
