#include "QuellinCore/Support/CPUClock.h"

#include <ctime>

namespace quellin {
namespace {

class SystemCPUClock final : public CPUClock {
 public:
  [[nodiscard]] Seconds now() const override {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return Seconds{static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9};
  }
};

}  // namespace

CPUClock& systemCPUClock() {
  static SystemCPUClock clock;
  return clock;
}

}  // namespace quellin
