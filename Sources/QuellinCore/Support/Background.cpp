#include "QuellinCore/Support/Background.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <boost/asio/basic_waitable_timer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>

namespace quellin {
namespace {

/// The continuous clock in the form that timers take.
// NOLINTBEGIN(readability-identifier-naming): the names that clocks and traits of timers have.
struct ContinuousClock {
  using duration = std::chrono::nanoseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<ContinuousClock>;
  [[maybe_unused]] static constexpr bool is_steady = true;

  static time_point now() {
    return time_point{std::chrono::duration_cast<duration>(systemMonotonicClock().now())};
  }
};

/// While the machine sleeps the timer's own waits stand still and the clock does not, so no single wait is
/// longer than this.
struct WaitTraits {
  static constexpr std::chrono::seconds longestWait{60};

  static ContinuousClock::duration to_wait_duration(const ContinuousClock::duration& duration) {
    return std::min<ContinuousClock::duration>(duration, longestWait);
  }
  static ContinuousClock::duration to_wait_duration(const ContinuousClock::time_point& instant) {
    return to_wait_duration(instant - ContinuousClock::now());
  }
};

// NOLINTEND(readability-identifier-naming)

using Timer =
    boost::asio::basic_waitable_timer<ContinuousClock, WaitTraits, boost::asio::thread_pool::executor_type>;

/// Nanoseconds count up to 292 years; what is later than this never comes.
constexpr Seconds latestInstant{9e9};

class ThreadPoolBackground final : public Background {
 public:
  explicit ThreadPoolBackground(unsigned threads) : pool_(threads) {}
  ThreadPoolBackground(const ThreadPoolBackground&) = delete;
  ThreadPoolBackground& operator=(const ThreadPoolBackground&) = delete;
  ThreadPoolBackground(ThreadPoolBackground&&) = delete;
  ThreadPoolBackground& operator=(ThreadPoolBackground&&) = delete;
  ~ThreadPoolBackground() override {
    pool_.stop();
    pool_.join();
  }

  void run(std::function<void()> work) override { boost::asio::post(pool_, std::move(work)); }

  [[nodiscard]] Seconds now() const override { return systemMonotonicClock().now(); }

  [[nodiscard]] WakeUp wakeAt(Seconds instant, std::function<void()> action) override {
    const auto expiry =
        std::chrono::duration_cast<ContinuousClock::duration>(std::min(instant, latestInstant));
    auto timer = std::make_shared<Timer>(pool_.get_executor(), ContinuousClock::time_point{expiry});
    timer->async_wait([action = std::move(action)](const boost::system::error_code& error) {
      if (!error) action();
    });
    return WakeUp{std::move(timer)};
  }

 private:
  boost::asio::thread_pool pool_;
};

}  // namespace

std::unique_ptr<Background> makeBackground(unsigned threads) {
  return std::make_unique<ThreadPoolBackground>(threads);
}

}  // namespace quellin
