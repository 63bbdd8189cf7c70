#include "QuellinCore/IOReport/IOReportBridge.h"

#include <array>
#include <tuple>
#include <utility>

#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"

namespace quellin {
namespace {

using darwin::OwnedCF;
using darwin::OwnedLibrary;

constexpr std::array paths{"/usr/lib/libIOReport.dylib",
                           "/System/Library/PrivateFrameworks/IOReport.framework/IOReport",
                           "/System/Library/PrivateFrameworks/IOReport.framework/Versions/A/IOReport",
                           "libIOReport.dylib", "IOReport"};

OwnedLibrary openLibrary() {
  for (const char* path : paths) {
    auto library = OwnedLibrary::adopt(dlopen(path, RTLD_LAZY));
    if (library) return library;
    // Nobody shall find this failure later and take it for one of another call.
    std::ignore = dlerror();  // NOLINT(concurrency-mt-unsafe): the text is per thread where this runs
  }
  return {};
}

/// The list of channels that a sample or delta carries; null when it has none.
CFArrayRef channelList(CFDictionaryRef samples) {
  const auto key = darwin::makeString("IOReportChannels");
  if (!key) return nullptr;
  return darwin::asArray(CFDictionaryGetValue(samples, key.get()));
}

}  // namespace

// The signatures are those in use by everybody who calls the library: there is no header of it.
struct IOReportBridge::Functions {
  CFMutableDictionaryRef (*copyChannelsInGroup)(CFStringRef group, CFStringRef subgroup, std::uint64_t,
                                                std::uint64_t, std::uint64_t) = nullptr;
  CFTypeRef (*createSubscription)(CFAllocatorRef allocator, CFMutableDictionaryRef channels,
                                  CFMutableDictionaryRef* subbedChannels, std::uint64_t, CFTypeRef) = nullptr;
  CFDictionaryRef (*createSamples)(CFTypeRef subscription, CFMutableDictionaryRef channels,
                                   CFTypeRef) = nullptr;
  CFDictionaryRef (*createSamplesDelta)(CFDictionaryRef previous, CFDictionaryRef current,
                                        CFTypeRef) = nullptr;
  CFStringRef (*channelGroup)(CFDictionaryRef entry) = nullptr;
  CFStringRef (*channelName)(CFDictionaryRef entry) = nullptr;
  std::int64_t (*simpleIntegerValue)(CFDictionaryRef entry, std::int32_t index) = nullptr;
  CFIndex (*channelCount)(CFDictionaryRef samples) = nullptr;                         // may be missing
  CFDictionaryRef (*channelEntry)(CFDictionaryRef samples, CFIndex index) = nullptr;  // may be missing
  CFStringRef (*channelUnitLabel)(CFDictionaryRef entry) = nullptr;                   // may be missing

  static std::expected<Functions, std::string> resolve(const OwnedLibrary& library) {
    Functions functions;
    darwin::SymbolResolver resolver(library);
    resolver.require("IOReportCopyChannelsInGroup", functions.copyChannelsInGroup);
    resolver.require("IOReportCreateSubscription", functions.createSubscription);
    resolver.require("IOReportCreateSamples", functions.createSamples);
    resolver.require("IOReportCreateSamplesDelta", functions.createSamplesDelta);
    resolver.require("IOReportChannelGetGroup", functions.channelGroup);
    resolver.require("IOReportChannelGetChannelName", functions.channelName);
    resolver.require("IOReportSimpleGetIntegerValue", functions.simpleIntegerValue);
    if (resolver.missing() != nullptr) {
      return std::unexpected(std::string{"The library has no function "} + resolver.missing() + ".");
    }
    resolver.find("IOReportChannelGetCount", functions.channelCount);
    resolver.find("IOReportChannelGetChannelEntry", functions.channelEntry);
    resolver.find("IOReportChannelGetUnitLabel", functions.channelUnitLabel);
    return functions;
  }
};

std::expected<std::shared_ptr<const IOReportBridge>, std::string> IOReportBridge::load() {
  auto library = openLibrary();
  if (!library) return std::unexpected("The system has no such library.");
  const auto functions = Functions::resolve(library);
  if (!functions) return std::unexpected(functions.error());
  return std::make_shared<const IOReportBridge>(std::move(library), *functions);
}

IOReportBridge::IOReportBridge(OwnedLibrary library, const Functions& functions)
    : library_(std::move(library)), functions_(std::make_unique<const Functions>(functions)) {}

IOReportBridge::~IOReportBridge() = default;

OwnedCF<CFMutableDictionaryRef> IOReportBridge::channelsInGroup(
    const std::string& group, const std::optional<std::string>& subgroup) const {
  const auto groupName = darwin::makeString(group.c_str());
  const auto subgroupName = subgroup ? darwin::makeString(subgroup->c_str()) : OwnedCF<CFStringRef>{};
  if (!groupName || (subgroup && !subgroupName)) return {};
  return OwnedCF<CFMutableDictionaryRef>::adopt(
      functions_->copyChannelsInGroup(groupName.get(), subgroupName.get(), 0, 0, 0));
}

std::optional<IOReportSubscription> IOReportBridge::subscription(CFMutableDictionaryRef channels) const {
  IOReportSubscription subscription;
  subscription.token = OwnedCF<CFTypeRef>::adopt(functions_->createSubscription(
      nullptr, channels, subscription.subbedChannels.outParameter(), 0, nullptr));
  if (!subscription.token || !subscription.subbedChannels) return std::nullopt;
  return subscription;
}

OwnedCF<CFDictionaryRef> IOReportBridge::sample(CFTypeRef subscription,
                                                CFMutableDictionaryRef channels) const {
  return OwnedCF<CFDictionaryRef>::adopt(functions_->createSamples(subscription, channels, nullptr));
}

OwnedCF<CFDictionaryRef> IOReportBridge::delta(CFDictionaryRef previous, CFDictionaryRef current) const {
  return OwnedCF<CFDictionaryRef>::adopt(functions_->createSamplesDelta(previous, current, nullptr));
}

std::int64_t IOReportBridge::channelCount(CFDictionaryRef samples) const {
  if (functions_->channelCount != nullptr) return functions_->channelCount(samples);
  CFArrayRef channels = channelList(samples);
  return channels == nullptr ? 0 : CFArrayGetCount(channels);
}

CFDictionaryRef IOReportBridge::channelEntry(CFDictionaryRef samples, std::int64_t index) const {
  if (functions_->channelEntry != nullptr)
    return functions_->channelEntry(samples, static_cast<CFIndex>(index));
  CFArrayRef channels = channelList(samples);
  if (channels == nullptr) return nullptr;
  return darwin::asDictionary(darwin::elementAt(channels, static_cast<CFIndex>(index)));
}

std::optional<std::string> IOReportBridge::channelGroupName(CFDictionaryRef entry) const {
  return darwin::textOf(functions_->channelGroup(entry));
}

std::optional<std::string> IOReportBridge::channelName(CFDictionaryRef entry) const {
  return darwin::textOf(functions_->channelName(entry));
}

std::optional<std::string> IOReportBridge::unitLabel(CFDictionaryRef entry) const {
  if (functions_->channelUnitLabel == nullptr) return std::nullopt;
  return darwin::textOf(functions_->channelUnitLabel(entry));
}

std::int64_t IOReportBridge::integerValue(CFDictionaryRef entry, std::int32_t index) const {
  return functions_->simpleIntegerValue(entry, index);
}

}  // namespace quellin
