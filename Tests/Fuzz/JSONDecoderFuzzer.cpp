// Documents of the tool: what decodes must encode, and decode to the same value again.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Support/JSONDecoder.h"
#include "QuellinCore/Support/JSONEncoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes{reinterpret_cast<const char*>(data), size};
  const auto snapshot = quellin::decodeJSON<quellin::ProTelemetrySnapshot>(bytes);
  if (!snapshot) return 0;
  const auto text = quellin::encodeJSON(*snapshot);
  if (!text) __builtin_trap();
  const auto again = quellin::decodeJSON<quellin::ProTelemetrySnapshot>(*text);
  if (!again || *again != *snapshot) __builtin_trap();
  return 0;
}
