// A whole output file of the measuring tool, from its bytes to the snapshot, which must always be encodable
// or refused. An identifier beyond 32 bits ends the tool on purpose; such inputs are for other tests.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "Fuzz/Require.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "QuellinHelper/PowermetricsSnapshot.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

using namespace quellin;

namespace {

bool isBeyond32Bits(const PropertyListNode& node) {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto integer = node.integer();
  return node.largeInteger() || (integer && (*integer < Limits::min() || *integer > Limits::max()));
}

bool endsTheTool(const PropertyListNode& node) {
  constexpr std::array<std::string_view, 4> identifiers{"pid", "PID", "process_id", "process id"};
  return std::ranges::any_of(node.elements(), endsTheTool) ||
         std::ranges::any_of(node.entries(), [&](const PropertyListEntry& entry) {
           const bool isIdentifier = std::ranges::find(identifiers, entry.key) != identifiers.end();
           return (isIdentifier && isBeyond32Bits(entry.value)) || endsTheTool(entry.value);
         });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view output{reinterpret_cast<const char*>(data), size};
  for (const PropertyList& list : parsePropertyListStream(output))
    if (endsTheTool(list.root())) return 0;
  const auto snapshot = snapshotFromOutput(output);
  fuzzing::require(snapshot.processes.size() <= 12);
  static_cast<void>(encodeJSON(snapshot));
  return 0;
}
