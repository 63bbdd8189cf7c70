// A controller that answers anything: sizes that no block could carry, unknown types, numbers that are none.
// The readers give fans and temperatures within their limits, or nothing.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Platform/SMCSource.h"
#include "QuellinCore/Services/SMCService.h"
#include "QuellinCore/Support/Text.h"

using namespace quellin;
using fuzzing::ByteFeed;
using fuzzing::require;

namespace {

struct Answer {
  std::uint32_t size = 0;
  std::uint32_t type = 0;
  std::array<std::uint8_t, SMCKeyData::capacity> bytes{};
  bool failsAtInfo = false;
  bool failsAtBytes = false;
};

using Answers = std::map<std::uint32_t, Answer>;

class Connection final : public SMCConnection {
 public:
  explicit Connection(const Answers& answers) : answers_(answers) {}

  std::int32_t callStruct(std::uint32_t selector, const SMCKeyData& input, SMCKeyData& output,
                          std::size_t& outputSize) override {
    require(selector == smcStructSelector && outputSize == sizeof(output));
    const auto found = answers_.find(input.key);
    if (found == answers_.end()) return 1;
    const Answer& answer = found->second;
    const bool isInfo = input.command == SMCCommand::readKeyInfo;
    if (isInfo ? answer.failsAtInfo : answer.failsAtBytes) return 1;
    output.dataSize = answer.size;
    output.dataType = answer.type;
    if (!isInfo) output.bytes = answer.bytes;
    return 0;
  }

 private:
  const Answers& answers_;
};

class Source final : public SMCSource {
 public:
  explicit Source(Answers answers) : answers_(std::move(answers)) {}

  std::unique_ptr<SMCConnection> open() override { return std::make_unique<Connection>(answers_); }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  Answers answers_;
};

// The corpus counts in these lists: new entries belong at their ends.
constexpr std::string_view knownKeys[] = {"FNum", "F0Ac", "F0Mn", "F0Mx", "F1Ac", "F9Mx",
                                          "F10A", "F14M", "TC0P", "TC0D", "TG0P", "TB0T"};
constexpr std::string_view knownTypes[] = {"flt ", "sp78", "fpe2", "ui8 ", "sp", "flt"};

// One of the known codes, or any other.
template <std::size_t count>
std::uint32_t takeCode(ByteFeed& feed, const std::string_view (&known)[count]) {
  const std::size_t index = feed.takeIndex(count + 1);
  return index < count ? SMCDecoding::fourCharCode(known[index]) : feed.take<std::uint32_t>();
}

Answer takeAnswer(ByteFeed& feed) {
  Answer answer;
  const auto shape = feed.take<std::uint8_t>();
  answer.failsAtInfo = (shape & 0x40U) != 0;
  answer.failsAtBytes = (shape & 0x80U) != 0;
  answer.size = shape & 0x3FU;
  if (answer.size == 0x3FU) answer.size = feed.take<std::uint32_t>();
  answer.type = takeCode(feed, knownTypes);
  std::ranges::copy(feed.takeBytes(std::min<std::size_t>(answer.size, answer.bytes.size())),
                    answer.bytes.begin());
  return answer;
}

// Speeds beyond all integers end the process by design.
bool isBearable(const Answer& answer) {
  const std::size_t size = std::min<std::size_t>(answer.size, answer.bytes.size());
  return SMCDecoding::canDecodeFanRPM(answer.type, std::span{answer.bytes}.first(size));
}

Answers takeAnswers(ByteFeed& feed) {
  Answers answers;
  while (!feed.isEmpty()) {
    const std::uint32_t key = takeCode(feed, knownKeys);
    const Answer answer = takeAnswer(feed);
    require(isValidUTF8(SMCDecoding::dataTypeString(answer.type)));
    if (isBearable(answer)) answers[key] = answer;
  }
  return answers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteFeed feed(data, size);
  const SMCService service(std::make_shared<Source>(takeAnswers(feed)));
  const auto fans = service.readFans();
  require(fans.size() <= SMCKeys::mostFans);
  for (std::size_t index = 0; index < fans.size(); ++index) require(std::cmp_equal(fans[index].id, index));
  const auto sensors = service.readTemperatures();
  require(std::ranges::is_sorted(sensors, {}, &TemperatureSensor::name));
  for (const auto& sensor : sensors) require(sensor.temperature > 0 && sensor.temperature < 150);
  return 0;
}
