// A whole output file of the measuring tool, from its bytes to the snapshot, which must always be encodable
// or refused.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Fuzz/Require.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "QuellinHelper/PowermetricsSnapshot.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto snapshot = quellin::snapshotFromOutput({reinterpret_cast<const char*>(data), size});
  quellin::fuzzing::require(snapshot.processes.size() <= 12);
  static_cast<void>(quellin::encodeJSON(snapshot));
  return 0;
}
