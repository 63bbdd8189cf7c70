#pragma once

#include <vector>

#include "FakeDarwin/FakeCoreFoundation.h"

namespace quellin::fake {

/// The power sources that the system lists, each as what makes its description, in order.
struct FakePowerSources {
  std::vector<ObjectMaker> descriptions;
};

}  // namespace quellin::fake
