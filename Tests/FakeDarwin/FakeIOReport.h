#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FakeDarwin/FakeCoreFoundation.h"

namespace quellin::fake {

/// The counters behind the faked IOReport library, which is a shared object of its own and asks this.
struct FakeIOReport {
  struct Channel {
    std::optional<std::string> name = {};
    std::int64_t counter = 0;  ///< what a sample taken now shows
    std::optional<std::string> unit = {};
    std::string group = "Energy Model";
    std::string subgroup = {};
  };

  std::vector<Channel> channels;
  /// Makes what stands under "IOReportChannels" of a delta, in place of the list of channels.
  ObjectMaker deltaChannels;
  bool hasDeltaChannels = true;
};

}  // namespace quellin::fake
