#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quellin {

/// Keeps one observer registered; destroying or resetting it unregisters the observer, which is then never
/// called again. May outlive the signal it came from. Used on the thread of the signal only.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}  ///< run by `reset`
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      reset();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { reset(); }

  /// Unregisters the observer now; no effect the second time.
  void reset() {
    if (const auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

 private:
  std::function<void()> cancel_;
};

/// A list of observers that are told of an event, in the order in which they subscribed. Inside its call an
/// observer may subscribe others (they hear the next event), unsubscribe itself or others (those are not
/// called any more), send the event again, and destroy the owner of the signal (the remaining observers are
/// then not called). Confined to one thread; not copyable, not movable.
template <class... Arguments>
class Signal {
 public:
  using Observer = std::function<void(Arguments...)>;  ///< called on the signal's thread

  Signal() = default;
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  Signal(Signal&&) = delete;
  Signal& operator=(Signal&&) = delete;
  ~Signal() {
    if (list_) list_->closed = true;
  }

  /// Calls `observer` at every event from now on, for as long as the subscription lives.
  Subscription subscribe(Observer observer) {
    if (!list_) list_ = std::make_shared<List>();
    auto slot = std::make_shared<Slot>(Slot{std::move(observer), true});
    list_->slots.push_back(slot);
    return Subscription([list = std::weak_ptr(list_), slot = std::move(slot)] {
      slot->isActive = false;
      if (const auto alive = list.lock()) alive->sweep();
    });
  }

  /// Tells every observer. An exception of an observer reaches the caller; the observers after it are then
  /// not told. The arguments must outlive the call even when an observer destroys the owner of the signal.
  void notify(Arguments... arguments) const {
    if (!list_) return;
    const Pass pass(list_);
    const auto& slots = pass.list->slots;
    // New observers are appended behind `count`; sweeping waits until no pass is under way, so indices hold.
    const std::size_t count = slots.size();
    for (std::size_t index = 0; index < count && !pass.list->closed; ++index) {
      const auto slot = slots[index];  // an observer that unsubscribes itself must outlive its own call
      if (slot->isActive) slot->observer(arguments...);
    }
  }

 private:
  struct Slot {
    Observer observer;
    bool isActive = false;
  };

  struct List {
    std::vector<std::shared_ptr<Slot>> slots;
    int passes = 0;
    bool closed = false;

    void sweep() {
      if (passes > 0) return;
      // What an observer captured may own further subscriptions to this list: destroy it after the list is
      // whole.
      std::vector<std::shared_ptr<Slot>> gone;
      std::vector<std::shared_ptr<Slot>> kept;
      for (auto& slot : slots) (slot->isActive ? kept : gone).push_back(std::move(slot));
      slots = std::move(kept);
    }
  };

  /// Holds the list for the length of one notification, past the life of the signal if need be.
  struct Pass {
    explicit Pass(std::shared_ptr<List> observers) : list(std::move(observers)) { ++list->passes; }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    Pass(Pass&&) = delete;
    Pass& operator=(Pass&&) = delete;
    ~Pass() {
      --list->passes;
      list->sweep();
    }

    std::shared_ptr<List> list;
  };

  std::shared_ptr<List> list_;
};

}  // namespace quellin
