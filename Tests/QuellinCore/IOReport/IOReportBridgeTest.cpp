#include <dlfcn.h>
#include <string>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/IOReport/IOReportBridge.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

// Every test ends with the fixture's check that nothing is leaked and the library closed.
class IOReportBridgeTest : public fake::DarwinTest {
 protected:
  void SetUp() override {
    // Where a real library has no such functions, the list in its samples is read.
    for (const auto& symbol : optionalSymbols) system.loader.hide(symbol);
    system.ioReport.channels = {{.name = "CPU Energy", .counter = 10, .unit = "mJ"},
                                {.name = std::nullopt, .counter = 20, .unit = std::nullopt}};
  }

  /// A delta over which the counters gained 1 and 2.
  darwin::OwnedCF<CFDictionaryRef> measure(const IOReportBridge& bridge) {
    const auto channels = bridge.channelsInGroup("Energy Model");
    const auto subscription = bridge.subscription(channels.get());
    const auto first = bridge.sample(subscription->token.get(), subscription->subbedChannels.get());
    system.ioReport.channels[0].counter += 1;
    system.ioReport.channels[1].counter += 2;
    const auto second = bridge.sample(subscription->token.get(), subscription->subbedChannels.get());
    return bridge.delta(first.get(), second.get());
  }

  const std::vector<std::string> requiredSymbols{
      "IOReportCopyChannelsInGroup",  "IOReportCreateSubscription", "IOReportCreateSamples",
      "IOReportCreateSamplesDelta",   "IOReportChannelGetGroup",    "IOReportChannelGetChannelName",
      "IOReportSimpleGetIntegerValue"};
  const std::vector<std::string> optionalSymbols{"IOReportChannelGetCount", "IOReportChannelGetChannelEntry"};
};

TEST_F(IOReportBridgeTest, OpensTheFirstPathThatLeadsToALibrary) {
  const auto bridge = IOReportBridge::load();
  ASSERT_TRUE(bridge) << bridge.error();
  using Opening = fake::FakeLoader::Opening;
  EXPECT_THAT(system.loader.openings(),
              ElementsAre(Opening{"/usr/lib/libIOReport.dylib", RTLD_LAZY},
                          Opening{"/System/Library/PrivateFrameworks/IOReport.framework/IOReport", RTLD_LAZY},
                          Opening{"/System/Library/PrivateFrameworks/IOReport.framework/Versions/A/IOReport",
                                  RTLD_LAZY},
                          Opening{"libIOReport.dylib", RTLD_LAZY}));
  EXPECT_EQ(system.calls.count("dlerror"), 3);
}

TEST_F(IOReportBridgeTest, TriesFivePathsAndClearsEachFailure) {
  system.calls.fail("dlopen");
  EXPECT_EQ(IOReportBridge::load().error(), "The system has no such library.");
  ASSERT_EQ(system.loader.openings().size(), 5U);
  EXPECT_EQ(system.loader.openings().back().path, "IOReport");
  EXPECT_EQ(system.calls.count("dlerror"), 5);
  EXPECT_EQ(system.calls.count("dlclose"), 0);
}

TEST_F(IOReportBridgeTest, LooksUpTheRequiredFunctionsAndThenTheOthers) {
  ASSERT_TRUE(IOReportBridge::load());
  std::vector<std::string> all = requiredSymbols;
  all.insert(all.end(), optionalSymbols.begin(), optionalSymbols.end());
  all.emplace_back("IOReportChannelGetUnitLabel");
  EXPECT_THAT(system.loader.lookUps(), ElementsAreArray(all));
}

TEST_F(IOReportBridgeTest, ClosesALibraryThatLacksARequiredFunction) {
  for (const auto& symbol : requiredSymbols) {
    system.loader.hide(symbol);
    EXPECT_EQ(IOReportBridge::load().error(), "The library has no function " + symbol + ".");
    EXPECT_EQ(system.loader.lookUps().back(), symbol) << "nothing is looked up after a missing function";
    EXPECT_THAT(system.leaks(), testing::IsEmpty());
    system.loader.show(symbol);
  }
}

TEST_F(IOReportBridgeTest, ClosesTheLibraryWhenTheLastHolderLetsGo) {
  auto bridge = *IOReportBridge::load();
  auto second = bridge;
  bridge.reset();
  EXPECT_EQ(system.calls.count("dlclose"), 0);
  second.reset();
  EXPECT_EQ(system.calls.count("dlclose"), 1);
}

TEST_F(IOReportBridgeTest, FindsTheChannelsOfAGroupAndSubgroup) {
  const auto bridge = *IOReportBridge::load();
  system.ioReport.channels[1].subgroup = "clusters";
  EXPECT_EQ(bridge->channelCount(bridge->channelsInGroup("Energy Model").get()), 2);
  EXPECT_EQ(bridge->channelCount(bridge->channelsInGroup("Energy Model", "clusters").get()), 1);
  EXPECT_FALSE(bridge->channelsInGroup("CPU Stats"));
}

TEST_F(IOReportBridgeTest, FindsNoChannelsWhenANameCannotBeMade) {
  const auto bridge = *IOReportBridge::load();
  for (const int nth : {1, 2}) {
    system.calls.failNth("CFStringCreateWithCString", nth);
    EXPECT_FALSE(bridge->channelsInGroup("Energy Model", "clusters")) << nth;
  }
  EXPECT_EQ(system.calls.count("IOReportCopyChannelsInGroup"), 0);
}

TEST_F(IOReportBridgeTest, HasNoSubscriptionWithoutTokenOrChannels) {
  const auto bridge = *IOReportBridge::load();
  const auto channels = bridge->channelsInGroup("Energy Model");
  EXPECT_TRUE(bridge->subscription(channels.get()));
  for (const char* part : {"IOReportCreateSubscription", "subscribed channels"}) {
    system.calls.failNth(part, 1);
    EXPECT_FALSE(bridge->subscription(channels.get())) << part;
  }
}

TEST_F(IOReportBridgeTest, ReadsChannelsFromTheListOfTheSamples) {
  const auto bridge = *IOReportBridge::load();
  const auto delta = measure(*bridge);
  ASSERT_EQ(bridge->channelCount(delta.get()), 2);
  CFDictionaryRef first = bridge->channelEntry(delta.get(), 0);
  EXPECT_EQ(bridge->channelGroupName(first), "Energy Model");
  EXPECT_EQ(bridge->channelName(first), "CPU Energy");
  EXPECT_EQ(bridge->unitLabel(first), "mJ");
  EXPECT_EQ(bridge->integerValue(first, 0), 1);
  CFDictionaryRef second = bridge->channelEntry(delta.get(), 1);
  EXPECT_EQ(bridge->channelName(second), std::nullopt);
  EXPECT_EQ(bridge->unitLabel(second), std::nullopt);
  EXPECT_EQ(bridge->integerValue(second, 0), 2);
}

TEST_F(IOReportBridgeTest, HasNoEntryOutsideTheList) {
  const auto bridge = *IOReportBridge::load();
  const auto delta = measure(*bridge);
  EXPECT_EQ(bridge->channelEntry(delta.get(), 2), nullptr);
  EXPECT_EQ(bridge->channelEntry(delta.get(), -1), nullptr);
}

TEST_F(IOReportBridgeTest, CountsNothingWithoutAList) {
  const auto bridge = *IOReportBridge::load();
  system.ioReport.deltaChannels = [this] { return system.coreFoundation.string("no list"); };
  const auto ofAnotherKind = measure(*bridge);
  system.ioReport.hasDeltaChannels = false;
  const auto missing = measure(*bridge);
  for (const auto* delta : {&ofAnotherKind, &missing}) {
    EXPECT_EQ(bridge->channelCount(delta->get()), 0);
    EXPECT_EQ(bridge->channelEntry(delta->get(), 0), nullptr);
  }
  system.calls.fail("CFStringCreateWithCString");
  EXPECT_EQ(bridge->channelCount(missing.get()), 0);
}

TEST_F(IOReportBridgeTest, HasNoEntryThatIsNoDictionary) {
  const auto bridge = *IOReportBridge::load();
  system.ioReport.deltaChannels = [this] {
    return system.coreFoundation.array({system.coreFoundation.string("stray")});
  };
  const auto delta = measure(*bridge);
  EXPECT_EQ(bridge->channelCount(delta.get()), 1);
  EXPECT_EQ(bridge->channelEntry(delta.get(), 0), nullptr);
}

TEST_F(IOReportBridgeTest, PrefersTheLibrarysOwnCountAndEntries) {
  for (const auto& symbol : optionalSymbols) system.loader.show(symbol);
  const auto bridge = *IOReportBridge::load();
  const auto delta = measure(*bridge);
  EXPECT_EQ(bridge->channelCount(delta.get()), 2);
  EXPECT_EQ(bridge->channelName(bridge->channelEntry(delta.get(), 0)), "CPU Energy");
  EXPECT_EQ(system.calls.count("IOReportChannelGetCount"), 1);
  EXPECT_EQ(system.calls.count("IOReportChannelGetChannelEntry"), 1);
}

TEST_F(IOReportBridgeTest, UsesEachOfTheLibrarysTwoFunctionsWithoutTheOther) {
  for (const auto& symbol : optionalSymbols) {
    system.loader.show(symbol);
    const auto bridge = *IOReportBridge::load();
    const auto delta = measure(*bridge);
    EXPECT_EQ(bridge->channelCount(delta.get()), 2);
    EXPECT_EQ(bridge->channelName(bridge->channelEntry(delta.get(), 0)), "CPU Energy");
    EXPECT_EQ(system.calls.count(symbol), 1);
    system.loader.hide(symbol);
  }
}

TEST_F(IOReportBridgeTest, HasNoNamesThatTheLibraryDoesNotGive) {
  const auto bridge = *IOReportBridge::load();
  const auto delta = measure(*bridge);
  CFDictionaryRef entry = bridge->channelEntry(delta.get(), 0);
  system.calls.failNth("IOReportChannelGetGroup", 1);
  EXPECT_EQ(bridge->channelGroupName(entry), std::nullopt);
  system.calls.failNth("IOReportChannelGetChannelName", 1);
  EXPECT_EQ(bridge->channelName(entry), std::nullopt);
}

TEST_F(IOReportBridgeTest, KnowsNoUnitsWhereTheLibraryDoesNot) {
  system.loader.hide("IOReportChannelGetUnitLabel");
  const auto bridge = *IOReportBridge::load();
  const auto delta = measure(*bridge);
  EXPECT_EQ(bridge->unitLabel(bridge->channelEntry(delta.get(), 0)), std::nullopt);
}

}  // namespace
}  // namespace quellin
