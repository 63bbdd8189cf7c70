#include <expected>
#include <string>
#include <utility>

#include "QuellinCore/IOReport/EnergyUnit.h"
#include "QuellinCore/IOReport/IOReportBridge.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"
#include "QuellinCore/Platform/EnergySource.h"

namespace quellin {
namespace {

using darwin::OwnedCF;
using darwin::SourceFault;

constexpr const char* sourceName = SourceNames::energyCounters;
constexpr const char* libraryName = "IOReport";
constexpr const char* energyGroup = "Energy Model";

using Bridge = std::shared_ptr<const IOReportBridge>;

std::optional<EnergyChannel> readChannel(const IOReportBridge& bridge, CFDictionaryRef entry) {
  auto name = bridge.channelName(entry);
  if (!name) return std::nullopt;
  const auto energy = nanojoules(bridge.integerValue(entry, 0), bridge.unitLabel(entry));
  if (!energy) return std::nullopt;
  return EnergyChannel{.name = *std::move(name), .nanojoules = *energy};
}

std::vector<EnergyChannel> readChannels(const IOReportBridge& bridge, CFDictionaryRef delta) {
  std::vector<EnergyChannel> channels;
  const std::int64_t count = bridge.channelCount(delta);
  for (std::int64_t index = 0; index < count; ++index) {
    CFDictionaryRef entry = bridge.channelEntry(delta, index);
    if (entry == nullptr) continue;
    auto channel = readChannel(bridge, entry);
    if (channel) channels.push_back(*std::move(channel));
  }
  return channels;
}

class DarwinEnergyMeasurement final : public EnergyMeasurement {
 public:
  DarwinEnergyMeasurement(Bridge bridge, IOReportSubscription subscription, OwnedCF<CFDictionaryRef> first)
      : bridge_(std::move(bridge)), subscription_(std::move(subscription)), first_(std::move(first)) {}

  [[nodiscard]] std::optional<std::vector<EnergyChannel>> finish() override {
    const auto second = bridge_->sample(subscription_.token.get(), subscription_.subbedChannels.get());
    if (!second) return std::nullopt;
    const auto delta = bridge_->delta(first_.get(), second.get());
    if (!delta) return std::nullopt;
    return readChannels(*bridge_, delta.get());
  }

 private:
  Bridge bridge_;  // first, so that the library is still there when the others are released
  IOReportSubscription subscription_;
  OwnedCF<CFDictionaryRef> first_;
};

using Begun = std::expected<std::unique_ptr<EnergyMeasurement>, SourceFault>;

Begun beginMeasurement(const Bridge& bridge) {
  const auto channels = bridge->channelsInGroup(energyGroup);
  if (!channels) return std::unexpected(darwin::absentFault("The library has no channels of energy."));
  auto subscription = bridge->subscription(channels.get());
  if (!subscription) {
    return std::unexpected(darwin::failedFault("IOReportCreateSubscription", "there is no subscription"));
  }
  auto first = bridge->sample(subscription->token.get(), subscription->subbedChannels.get());
  if (!first) return std::unexpected(darwin::failedFault("IOReportCreateSamples", "there is no sample"));
  return std::make_unique<DarwinEnergyMeasurement>(bridge, *std::move(subscription), std::move(first));
}

class DarwinEnergySource final : public EnergySource {
 public:
  [[nodiscard]] std::unique_ptr<EnergyMeasurement> begin() override {
    if (!bridge_) return nullptr;
    return beginMeasurement(*bridge_).value_or(nullptr);
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    if (!bridge_) {
      return darwin::faultDiagnosis(sourceName, darwin::absentFault(bridge_.error()), libraryName);
    }
    auto begun = beginMeasurement(*bridge_);
    if (!begun) return darwin::faultDiagnosis(sourceName, std::move(begun.error()), libraryName);
    return availableSource(sourceName, "Samples of the energy counters can be taken.", libraryName);
  }

 private:
  // Loaded once: the library stays open as long as the source or a measurement of it.
  const std::expected<Bridge, std::string> bridge_ = IOReportBridge::load();
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<EnergySource> nativeEnergySource() {
  return std::make_shared<DarwinEnergySource>();
}

}  // namespace quellin
