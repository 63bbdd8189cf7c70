#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/PlatformSources.h"
#include "Support/FakeHost.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing_support::FakeHost;

TEST(PlatformSourcesTest, TheHostHasOneOfEachKind) {
  const PlatformSources sources = PlatformSources::native();
  EXPECT_NE(sources.smc, nullptr);
  EXPECT_NE(sources.hid, nullptr);
  EXPECT_NE(sources.battery, nullptr);
  EXPECT_NE(sources.energy, nullptr);
  EXPECT_NE(sources.thermal, nullptr);
  EXPECT_NE(sources.processes, nullptr);
}

TEST(PlatformSourcesTest, DiagnosesEachSourceInOrder) {
  FakeHost host;
  host.hid->diagnosis.source = "hid";
  host.battery->diagnosis.source = "battery";
  host.energy->diagnosis.source = "energy";
  host.thermal->diagnosis.source = "thermal";
  host.processes->diagnosis.source = "processes";
  const auto named = [](const char* name) { return testing::Field(&SourceDiagnosis::source, name); };
  EXPECT_THAT(host.sources().diagnose(), ElementsAre(named("SMC"), named("hid"), named("battery"),
                                                     named("energy"), named("thermal"), named("processes")));
}

}  // namespace
}  // namespace quellin
