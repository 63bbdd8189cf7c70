#pragma once

#include <chrono>

namespace quellin {

/// A length of time in seconds.
using Seconds = std::chrono::duration<double>;

/// A wall-clock instant with sub-second precision, counted in seconds since 1970-01-01T00:00:00Z.
using Instant = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// The instant `secondsSince1970` seconds after 1970-01-01T00:00:00Z.
[[nodiscard]] constexpr Instant instantAt(double secondsSince1970) {
  return Instant{Seconds{secondsSince1970}};
}

/// Source of wall-clock instants, for records. Injected wherever "now" is part of a result. Any thread may
/// ask it, several at once, too.
class WallClock {
 public:
  virtual ~WallClock() = default;
  [[nodiscard]] virtual Instant now() const = 0;  ///< may step back when the clock is set
};

/// Source of monotonic time, for waits and deadlines. It is never written into a record.
class MonotonicClock {
 public:
  virtual ~MonotonicClock() = default;
  /// Seconds since an arbitrary, fixed point; keeps counting while the machine sleeps.
  [[nodiscard]] virtual Seconds now() const = 0;
  /// Blocks the calling thread for `duration`; returns at once when it is not positive.
  virtual void sleep(Seconds duration) = 0;
};

/// The machine's wall clock. Thread-safe.
[[nodiscard]] WallClock& systemWallClock();

/// The machine's monotonic clock (the one that counts through system sleep). Thread-safe.
[[nodiscard]] MonotonicClock& systemMonotonicClock();

}  // namespace quellin
