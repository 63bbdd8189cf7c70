#pragma once

#include <cstdlib>
#include <utility>

namespace quellin::darwin {

/// Sole owner of one reference to a platform object. `Kind` names the handle type (`Handle`, whose zero value
/// means none), how a reference is given back (`release`) and, where the platform has it, how one is added
/// (`retain`).
///
/// Handles enter and leave only by name: `adopt` takes over a reference that the caller already owns,
/// `retain` adds one, `release` hands it out. Nothing converts by itself.
template <class Kind>
class Owned {
 public:
  using Handle = typename Kind::Handle;

  Owned() = default;
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  Owned(Owned&& other) noexcept : handle_(other.release()) {}
  Owned& operator=(Owned&& other) noexcept {
    if (this != &other) {
      reset();
      handle_ = other.release();
    }
    return *this;
  }
  ~Owned() { reset(); }

  /// Owns the reference that came with `handle`, as from a function named Create or Copy; empty for none.
  [[nodiscard]] static Owned adopt(Handle handle) { return Owned{handle}; }

  /// Owns a reference of its own to a borrowed `handle`; empty for none.
  [[nodiscard]] static Owned retain(Handle handle)
    requires requires { Kind::retain(handle); }
  {
    if (handle != Handle{}) Kind::retain(handle);
    return Owned{handle};
  }

  /// The handle, still owned here; the zero value when empty.
  [[nodiscard]] Handle get() const { return handle_; }

  [[nodiscard]] explicit operator bool() const { return handle_ != Handle{}; }

  /// Gives the reference away and is empty afterwards; whoever takes it must give it back.
  [[nodiscard]] Handle release() { return std::exchange(handle_, Handle{}); }

  /// The place for a function to store a handle whose reference is then owned here. Ends the process unless
  /// empty: the reference it holds would be lost.
  [[nodiscard]] Handle* outParameter() {
    if (handle_ != Handle{}) std::abort();
    return &handle_;
  }

 private:
  explicit Owned(Handle handle) : handle_(handle) {}

  void reset() {
    if (handle_ != Handle{}) Kind::release(release());
  }

  Handle handle_{};
};

}  // namespace quellin::darwin
