#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/PrivilegedSMCHelperService.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

class PrivilegedSMCHelperServiceTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<TemperatureSensor> temperaturesOf(std::string_view toolBody) const {
    return PrivilegedSMCHelperService{folder.writeScript("tool", toolBody)}.readTemperatures();
  }

  TemporaryFolder folder;
};

TEST_F(PrivilegedSMCHelperServiceTest, UsesTheInstalledToolUnlessToldOtherwise) {
  EXPECT_EQ(PrivilegedSMCHelperService{}.helperPath(), "/Library/PrivilegedHelperTools/org.quellin.helper");
}

TEST_F(PrivilegedSMCHelperServiceTest, ReadsTheListThatTheToolPrints) {
  EXPECT_THAT(temperaturesOf("[ \"$*\" = read-temperatures-json ] || exit 64\n"
                             R"(echo '[{"key":"TC0P","name":"CPU Proximity","temperature":45.5},)"
                             R"({"key":"TA0P","name":"Ambient","temperature":21}]')"),
              ElementsAre(TemperatureSensor{"TC0P", "CPU Proximity", 45.5},
                          TemperatureSensor{"TA0P", "Ambient", 21}));
}

TEST_F(PrivilegedSMCHelperServiceTest, ReadsAListLongerThanAPipeHolds) {
  const std::string script = R"(printf '['; i=0
while [ $i -lt 3000 ]; do printf '{"key":"TC0P","name":"CPU Proximity","temperature":45.5},'; i=$((i+1)); done
echo '{"key":"last","name":"n","temperature":1}]')";
  const auto sensors = temperaturesOf(script);
  ASSERT_EQ(sensors.size(), 3001U);
  EXPECT_EQ(sensors.back().key, "last");
}

TEST_F(PrivilegedSMCHelperServiceTest, AListBeyondTheLimitIsCutOffAndGivesNothing) {
  const std::string list = R"(echo '[{"key":"a","name":"b","temperature":1}]')";
  EXPECT_EQ(temperaturesOf("head -c 16000000 /dev/zero | tr '\\000' ' '; " + list).size(), 1U);
  EXPECT_THAT(temperaturesOf("head -c 17000000 /dev/zero | tr '\\000' ' '; " + list), IsEmpty());
}

TEST_F(PrivilegedSMCHelperServiceTest, AMissingToolIsUnavailableAndGivesNothing) {
  const PrivilegedSMCHelperService service{folder.pathOf("missing")};
  EXPECT_FALSE(service.isAvailable());
  EXPECT_THAT(service.readTemperatures(), IsEmpty());
}

TEST_F(PrivilegedSMCHelperServiceTest, AFileThatIsNotExecutableIsUnavailable) {
  const PrivilegedSMCHelperService service{folder.write("tool", "#!/bin/sh\necho '[]'\n")};
  EXPECT_FALSE(service.isAvailable());
  EXPECT_THAT(service.readTemperatures(), IsEmpty());
}

TEST_F(PrivilegedSMCHelperServiceTest, AFileThatCannotBeStartedGivesNothing) {
  const std::string path = folder.write("tool", "#!/nonexistent/interpreter\n");
  std::filesystem::permissions(path, std::filesystem::perms::all);
  const PrivilegedSMCHelperService service{path};
  EXPECT_TRUE(service.isAvailable());
  EXPECT_THAT(service.readTemperatures(), IsEmpty());
}

TEST_F(PrivilegedSMCHelperServiceTest, AFailingToolGivesNothingWhateverItPrinted) {
  EXPECT_THAT(temperaturesOf(R"(echo '[{"key":"a","name":"b","temperature":1}]'; exit 1)"), IsEmpty());
}

TEST_F(PrivilegedSMCHelperServiceTest, AnythingButAListOfSensorsGivesNothing) {
  EXPECT_THAT(temperaturesOf("echo '{}'"), IsEmpty());
  EXPECT_THAT(temperaturesOf("echo '[{\"key\":\"a\"}]'"), IsEmpty());
  EXPECT_THAT(temperaturesOf("echo '[] trailing'"), IsEmpty());
  EXPECT_THAT(temperaturesOf("exit 0"), IsEmpty());
}

}  // namespace
}  // namespace quellin
