// Traces: whatever a file says, it is refused or played through every reader, and what was read is written
// the same.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Fuzz/Require.h"
#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Platform/Recorded/TraceReader.h"
#include "Support/Replay.h"

using namespace quellin;
using fuzzing::require;

namespace {

/// More would only repeat what the first ones show.
constexpr std::size_t mostTicks = 8;

void checkWriting(const HostAnswers& answers) {
  const auto line = tickLine(answers, SerialNumbers::kept);
  require(line.has_value());
  JSONDecoder decoder;
  const auto again = answersOfTickLine(decoder, *line);
  require(again && tickLine(*again, SerialNumbers::kept) == line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text{reinterpret_cast<const char*>(data), size};
  auto reader = TraceReader::over("fuzz", bytesOfText(text));
  if (!reader) return 0;
  const auto player = TracePlayer::over(*std::move(reader));
  if (!player) return 0;
  while (!(*player)->atEnd() && (*player)->ticksPlayed() <= mostTicks) {
    checkWriting(*(*player)->answers());
    static_cast<void>(testing_support::readEverything(*player));
    require((*player)->untilNext().count() >= 0);
    if (!(*player)->advance()) break;
  }
  return 0;
}
