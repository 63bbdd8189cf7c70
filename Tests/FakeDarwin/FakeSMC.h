#pragma once

#include <memory>

#include "FakeDarwin/FakeIOKit.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin::fake {

/// The kernel's side of the SMC user client, answering from `keys` as they are now.
[[nodiscard]] StructMethod smcStructMethod(VirtualSMC keys);

}  // namespace quellin::fake
