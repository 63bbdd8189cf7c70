#include "QuellinCore/Support/Clock.h"

#include <cerrno>
#include <cmath>
#include <ctime>

namespace quellin {
namespace {

// CLOCK_MONOTONIC counts through sleep on macOS; on Linux that is CLOCK_BOOTTIME.
#if defined(__linux__)
constexpr clockid_t monotonicClockID = CLOCK_BOOTTIME;
#else
constexpr clockid_t monotonicClockID = CLOCK_MONOTONIC;
#endif

class SystemWallClock final : public WallClock {
 public:
  [[nodiscard]] Instant now() const override {
    return std::chrono::time_point_cast<Seconds>(std::chrono::system_clock::now());
  }
};

class SystemMonotonicClock final : public MonotonicClock {
 public:
  [[nodiscard]] Seconds now() const override {
    timespec time{};
    clock_gettime(monotonicClockID, &time);
    return Seconds{static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9};
  }

  void sleep(Seconds duration) override {
    if (!(duration.count() > 0)) return;
    double whole = 0;
    const double fraction = std::modf(duration.count(), &whole);
    timespec left{static_cast<time_t>(whole), static_cast<long>(fraction * 1e9)};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
  }
};

}  // namespace

WallClock& systemWallClock() {
  static SystemWallClock clock;
  return clock;
}

MonotonicClock& systemMonotonicClock() {
  static SystemMonotonicClock clock;
  return clock;
}

}  // namespace quellin
