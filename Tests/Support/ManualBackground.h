#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "QuellinCore/Support/Background.h"

namespace quellin::testing_support {

/// A background whose work and time move only when the test says so, on the test's own thread. The engine
/// under test owns it; what it did stays visible through its `Controls`.
class ManualBackground final : public Background {
 public:
  struct Alarm {
    Seconds instant{};
    std::function<void()> action;
  };

  /// The test's hands on a background, which may outlive it.
  struct Controls {
    std::deque<std::function<void()>> work;
    std::vector<std::weak_ptr<Alarm>> alarms;
    Seconds now{5000};

    /// Runs the oldest piece of work; returns whether there was one.
    bool runOne() {
      if (work.empty()) return false;
      const auto piece = std::move(work.front());
      work.pop_front();
      piece();
      return true;
    }

    /// The instants of the wake-ups that are still wanted.
    [[nodiscard]] std::vector<Seconds> pendingAlarms() const {
      std::vector<Seconds> instants;
      for (const auto& weak : alarms) {
        if (const auto alarm = weak.lock()) instants.push_back(alarm->instant);
      }
      return instants;
    }

    /// Moves the clock and rings what is due.
    void advance(Seconds duration) {
      now += duration;
      for (const auto& weak : std::exchange(alarms, {})) {
        const auto alarm = weak.lock();
        if (!alarm) continue;
        if (alarm->instant <= now) {
          alarm->action();
        } else {
          alarms.push_back(weak);
        }
      }
    }
  };

  explicit ManualBackground(std::shared_ptr<Controls> controls) : controls_(std::move(controls)) {}
  ManualBackground(const ManualBackground&) = delete;
  ManualBackground& operator=(const ManualBackground&) = delete;
  ManualBackground(ManualBackground&&) = delete;
  ManualBackground& operator=(ManualBackground&&) = delete;
  ~ManualBackground() override { controls_->work.clear(); }

  void run(std::function<void()> work) override { controls_->work.push_back(std::move(work)); }
  [[nodiscard]] Seconds now() const override { return controls_->now; }
  [[nodiscard]] WakeUp wakeAt(Seconds instant, std::function<void()> action) override {
    auto alarm = std::make_shared<Alarm>(Alarm{instant, std::move(action)});
    controls_->alarms.push_back(alarm);
    return WakeUp{std::move(alarm)};
  }

 private:
  std::shared_ptr<Controls> controls_;
};

}  // namespace quellin::testing_support
