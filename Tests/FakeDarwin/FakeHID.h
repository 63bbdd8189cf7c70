#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FakeDarwin/FakeCoreFoundation.h"

namespace quellin::fake {

/// The services of the HID event system. Without any, a client has no list of services.
struct FakeHID {
  struct Service {
    ObjectMaker product;                ///< makes the "Product" property; empty for none
    std::optional<double> temperature;  ///< absent for a service without such an event
    std::int64_t usagePage = 0xFF00;
    std::int64_t usage = 5;
  };

  std::vector<Service> services;
};

}  // namespace quellin::fake
