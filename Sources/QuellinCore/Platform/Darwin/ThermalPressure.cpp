#include "QuellinCore/Platform/Darwin/ThermalPressure.h"

#include <notify.h>
#include <optional>

#include "QuellinCore/Platform/Darwin/Owned.h"

namespace quellin::darwin {
namespace {

struct NotifyTokenKind {
  using Handle = std::optional<int>;  // every number may be a token, 0 as well
  static void release(Handle token) { notify_cancel(token.value()); }
};

std::unexpected<std::string> failure(const char* call, std::uint32_t status) {
  return std::unexpected(std::string{call} + " failed: status " + std::to_string(status));
}

}  // namespace

std::expected<std::uint64_t, std::string> readThermalPressure() {
  int number = 0;
  const std::uint32_t registered = notify_register_check(thermalPressureName, &number);
  if (registered != NOTIFY_STATUS_OK) return failure("notify_register_check", registered);
  const auto token = Owned<NotifyTokenKind>::adopt(number);
  std::uint64_t state = 0;
  const std::uint32_t status = notify_get_state(number, &state);
  if (status != NOTIFY_STATUS_OK) return failure("notify_get_state", status);
  return state;
}

}  // namespace quellin::darwin
