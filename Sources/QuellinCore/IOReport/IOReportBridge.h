#pragma once

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/DynamicLibrary.h"

namespace quellin {

/// A subscription to channels: the token, and the channels as the library took them up.
struct IOReportSubscription {
  darwin::OwnedCF<CFTypeRef> token;
  darwin::OwnedCF<CFMutableDictionaryRef> subbedChannels;
};

/// The system's private library of hardware counters, opened at run time and closed when the last holder lets
/// go of the bridge. Its table of functions never changes: any thread may call it. Results that own a
/// reference are empty where the library gives none; borrowed ones live as long as what they were taken
/// from. What they are made of must not outlive the bridge.
class IOReportBridge {
  struct Functions;

 public:
  /// Opens the library at the first of the paths where it is known to lie. The error, when it cannot be
  /// opened or lacks a function, says so in one sentence.
  [[nodiscard]] static std::expected<std::shared_ptr<const IOReportBridge>, std::string> load();

  IOReportBridge(darwin::OwnedLibrary library, const Functions& functions);
  IOReportBridge(const IOReportBridge&) = delete;
  IOReportBridge& operator=(const IOReportBridge&) = delete;
  IOReportBridge(IOReportBridge&&) = delete;
  IOReportBridge& operator=(IOReportBridge&&) = delete;
  ~IOReportBridge();

  /// The channels of a group, of all its subgroups unless one is named.
  [[nodiscard]] darwin::OwnedCF<CFMutableDictionaryRef> channelsInGroup(
      const std::string& group, const std::optional<std::string>& subgroup = std::nullopt) const;

  /// A subscription to these channels.
  [[nodiscard]] std::optional<IOReportSubscription> subscription(CFMutableDictionaryRef channels) const;

  /// What the counters of the subscribed channels show now.
  [[nodiscard]] darwin::OwnedCF<CFDictionaryRef> sample(CFTypeRef subscription,
                                                        CFMutableDictionaryRef channels) const;

  /// What the counters gained from one sample to a later one.
  [[nodiscard]] darwin::OwnedCF<CFDictionaryRef> delta(CFDictionaryRef previous,
                                                       CFDictionaryRef current) const;

  /// The number of channels in a sample or delta; 0 when it holds no list of them.
  [[nodiscard]] std::int64_t channelCount(CFDictionaryRef samples) const;

  /// One channel of a sample or delta, borrowed from it; null outside its list.
  [[nodiscard]] CFDictionaryRef channelEntry(CFDictionaryRef samples, std::int64_t index) const;

  [[nodiscard]] std::optional<std::string> channelGroupName(CFDictionaryRef entry) const;
  [[nodiscard]] std::optional<std::string> channelName(CFDictionaryRef entry) const;

  /// The unit that the channel counts in, such as "mJ"; absent too where the library cannot say.
  [[nodiscard]] std::optional<std::string> unitLabel(CFDictionaryRef entry) const;

  /// The simple value of a channel, in its own unit.
  [[nodiscard]] std::int64_t integerValue(CFDictionaryRef entry, std::int32_t index) const;

 private:
  darwin::OwnedLibrary library_;
  std::unique_ptr<const Functions> functions_;
};

}  // namespace quellin
