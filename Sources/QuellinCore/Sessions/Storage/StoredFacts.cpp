#include "QuellinCore/Sessions/Storage/StoredFacts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "QuellinCore/Sessions/PowerSource.h"
#include "QuellinCore/Sessions/Storage/ByteStream.h"

namespace quellin {
namespace {

// A source's number is its place here: entries are only ever added.
std::array<PowerSource, 6> numberedSources() {
  using enum PowerReadingKind;
  return {powerSource(batteryDischarge, false),  powerSource(batteryChargeInput, false),
          powerSource(batterySupplement, false), powerSource(ioReportSiliconPower, false),
          powerSource(std::nullopt, true),       powerSource(std::nullopt, false)};
}

void appendDouble(std::string& bytes, double value) {
  const std::size_t place = bytes.size();
  bytes.resize(place + sizeof value);
  std::memcpy(bytes.data() + place, &value, sizeof value);
}

std::optional<double> readDouble(ByteReader& reader) {
  const auto bytes = reader.bytes(sizeof(double));
  if (!bytes) return std::nullopt;
  double value = 0;
  std::memcpy(&value, bytes->data(), sizeof value);
  return value;
}

std::string packed(const SampleFacts& facts) {
  std::string bytes;
  if (facts.contributions.empty() && !facts.telemetrySampledAt) return bytes;
  bytes.push_back(facts.telemetrySampledAt ? '\1' : '\0');
  if (facts.telemetrySampledAt) appendDouble(bytes, facts.telemetrySampledAt->time_since_epoch().count());
  for (const auto& [name, isMeasured, score] : facts.contributions) {
    appendVarint(bytes, name.size() * 2 + (isMeasured ? 1 : 0));
    bytes.append(name);
    appendDouble(bytes, score);
  }
  return bytes;
}

// Fills in what `packed` made; false when the bytes make no sense.
bool unpack(std::string_view bytes, SampleFacts& facts) {
  if (bytes.empty()) return true;
  ByteReader reader(bytes.substr(1));
  if (bytes.front() == '\1') {
    const auto seconds = readDouble(reader);
    if (!seconds) return false;
    facts.telemetrySampledAt = instantAt(*seconds);
  } else if (bytes.front() != '\0') {
    return false;
  }
  while (!reader.rest().empty()) {
    const auto head = reader.varint();
    const auto name = head ? reader.bytes(*head / 2) : std::nullopt;
    const auto score = readDouble(reader);
    if (!name || !score) return false;
    facts.contributions.push_back({std::string(*name), *head % 2 != 0, *score});
  }
  return true;
}

}  // namespace

StoredFacts storedFacts(const SampleFacts& facts) {
  const auto sources = numberedSources();
  const auto* const found =
      std::ranges::find(sources, PowerSource{facts.powerSourceKind, facts.powerSourceLabel});
  if (found == sources.end()) return {};
  return {found - sources.begin(), packed(facts)};
}

std::optional<SampleFacts> factsFrom(std::optional<std::int64_t> powerSource,
                                     std::optional<std::string_view> contributions) {
  const auto sources = numberedSources();
  if (!powerSource || !contributions || *powerSource < 0) return std::nullopt;
  const auto number = static_cast<std::size_t>(*powerSource);
  if (number >= sources.size()) return std::nullopt;
  SampleFacts facts;
  facts.powerSourceKind = sources[number].kind;
  facts.powerSourceLabel = sources[number].label;
  if (!unpack(*contributions, facts)) return std::nullopt;
  return facts;
}

}  // namespace quellin
