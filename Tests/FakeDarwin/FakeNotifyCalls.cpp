#include <notify.h>

#include "FakeDarwin/FakeDarwin.h"

using quellin::fake::FakeDarwin;

namespace {

constexpr std::uint32_t invalidToken = 2;

}  // namespace

extern "C" {

uint32_t notify_register_check(const char* name, int* token) {
  FakeDarwin& system = FakeDarwin::current();
  if (const auto failure = system.calls.enter(__func__)) {
    *token = 0x7ead;  // what a failing registration leaves here means nothing
    return static_cast<uint32_t>(*failure);
  }
  *token = system.notify.registerToken(name);
  return NOTIFY_STATUS_OK;
}

uint32_t notify_get_state(int token, uint64_t* state) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto known = system.notify.state(token);
  if (failure) return static_cast<uint32_t>(*failure);
  if (!known) return invalidToken;
  *state = *known;
  return NOTIFY_STATUS_OK;
}

uint32_t notify_cancel(int token) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const bool wasHeld = system.notify.cancel(token);
  if (failure) return static_cast<uint32_t>(*failure);
  return wasHeld ? NOTIFY_STATUS_OK : invalidToken;
}

}  // extern "C"
