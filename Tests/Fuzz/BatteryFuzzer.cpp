// Battery tables with values of every kind under every key that the rules ask for: the record keeps its
// limits, and the tables give the same record after they have been through a trace.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "QuellinCore/Models/BatteryRules.h"
#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

using namespace quellin;
using fuzzing::ByteFeed;
using fuzzing::require;

namespace {

// The corpus counts in this list: new keys belong at its end.
constexpr std::string_view knownKeys[] = {"AppleRawCurrentCapacity",
                                          "AppleRawMaxCapacity",
                                          "NominalChargeCapacity",
                                          "CurrentCapacity",
                                          "Current Capacity",
                                          "DesignCapacity",
                                          "CycleCount",
                                          "Amperage",
                                          "InstantAmperage",
                                          "Voltage",
                                          "Temperature",
                                          "IsCharging",
                                          "Is Charging",
                                          "FullyCharged",
                                          "Is Charged",
                                          "ExternalConnected",
                                          "AdapterDetails",
                                          "Watts",
                                          "BatteryHealth",
                                          "BatterySerialNumber",
                                          "Hardware Serial Number",
                                          "Time to Empty",
                                          "TimeRemaining",
                                          "AvgTimeToEmpty",
                                          "InstantTimeToEmpty",
                                          "Time to Full Charge",
                                          "AvgTimeToFull",
                                          "InstantTimeToFull"};
constexpr std::size_t deepestTable = 3;
constexpr std::size_t mostEntries = 64;

std::string takeASCII(ByteFeed& feed) {
  std::string text{feed.takeLine()};
  for (char& character : text) character = static_cast<char>(character & 0x7F);
  return text;
}

PropertyTable takeTable(ByteFeed& feed, std::size_t count, std::size_t depth);

PropertyTable::Value takeValue(ByteFeed& feed, std::size_t depth) {
  switch (feed.takeIndex(8)) {
    case 0:
      return std::int64_t{feed.take<std::int16_t>()};
    case 1:
      return feed.take<std::int64_t>();
    case 2:
      return feed.takeIndex(2) == 1;
    case 3:
      return takeASCII(feed);
    case 4:
      return feed.take<double>();
    case 5:
      return static_cast<double>(feed.take<std::int16_t>()) / 4;
    case 6:
      return NumberObject{feed.take<std::int32_t>()};
    default:
      if (depth == deepestTable) return false;
      return takeTable(feed, feed.takeIndex(4), depth + 1);
  }
}

PropertyTable takeTable(ByteFeed& feed, std::size_t count, std::size_t depth) {
  PropertyTable table;
  for (std::size_t index = 0; index < count && !feed.isEmpty(); ++index) {
    std::string key{feed.takeOneOf(knownKeys)};
    table.set(std::move(key), takeValue(feed, depth));
  }
  return table;
}

BatteryTables takeTables(ByteFeed& feed) {
  BatteryTables tables;
  const auto shape = feed.take<std::uint8_t>();
  const std::size_t count = 1 + (shape >> 2U) % mostEntries;
  if ((shape & 1U) != 0) tables.registry = takeTable(feed, count, 0);
  if ((shape & 2U) != 0) tables.powerSource = takeTable(feed, mostEntries, 0);
  return tables;
}

void checkRecord(const BatteryInfo& battery) {
  require(battery.chargePercent <= 100 && battery.healthPercent <= 100);
  require(battery.timeRemaining.has_value() == battery.timeRemainingKind.has_value());
  require(!battery.timeRemaining || (*battery.timeRemaining >= 0 && *battery.timeRemaining <= 10080));
  require(!(battery.timeToEmpty() && battery.timeToFullCharge()));
  require(encodeJSON(battery).has_value());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteFeed feed(data, size);
  HostAnswers answers;
  answers.battery = takeTables(feed);
  const auto line = tickLine(answers, SerialNumbers::kept);
  require(line.has_value() == isWithinRange(answers.battery));
  if (!line) return 0;

  const auto battery = batteryInfo(answers.battery);
  require(battery.has_value() == (answers.battery.registry || answers.battery.powerSource));
  if (battery) checkRecord(*battery);
  JSONDecoder decoder;
  const auto again = answersOfTickLine(decoder, *line);
  require(again && batteryInfo(again->battery) == battery);
  return 0;
}
