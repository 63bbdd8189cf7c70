// Every record that is ever read from JSON: what decodes must encode, in either order and layout, and what is
// written then reads as the same again.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Fuzz/Require.h"
#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/TemperatureDisplayReading.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"
#include "QuellinCore/Platform/Recorded/TraceTick.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/SessionCoverage.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

using namespace quellin;
using fuzzing::require;

namespace {

// Two things are read that cannot be written and read again: containers to the very last level, and dates
// that a zone has moved to before the year 0.
constexpr std::string_view tooDeep = "Too many nested arrays or dictionaries.";
constexpr std::string_view noDate = "Expected date string to be ISO8601-formatted.";

template <class T>
void checkRecord(std::string_view bytes) {
  JSONDecoder decoder;
  const auto value = decoder.decode<T>(bytes);
  if (!value) return;
  const auto text = encodeJSON(*value);
  if (!text) return require(text.error().reason == tooDeep);
  const auto sorted = encodeJSON(*value, KeyOrder::sorted, JSONLayout::pretty);
  require(sorted.has_value());
  const auto again = decoder.decode<T>(*sorted);
  if (!again) return require(again.error().debugDescription() == noDate);
  require(encodeJSON(*again) == text);
}

template <class... Records>
void checkAll(std::string_view bytes) {
  (checkRecord<Records>(bytes), ...);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkAll<ProTelemetrySnapshot, HelperStatus, std::vector<TemperatureSensor>, SystemPowerStateDTO,
           std::vector<ProcessActivityDTO>, PowerSessionExportEnvelope, PowerSessionSampleLine,
           SessionCoverage, TraceHeader, TraceTick, std::vector<TemperatureDisplayReading>>(
      {reinterpret_cast<const char*>(data), size});
  return 0;
}
