#include <string>

#include <gtest/gtest.h>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

HelperStatus usableStatus() {
  return {.isInstalled = true,
          .isExecutable = true,
          .isSetuidRoot = true,
          .ownerUserID = 0,
          .groupID = 20,
          .installedVersion = std::nullopt,
          .supportsProTelemetry = true,
          .path = "./QuellinHelper",
          .error = std::nullopt};
}

TEST(HelperStatusTest, IsUsableOnlyWhenEveryConditionHolds) {
  EXPECT_TRUE(usableStatus().isUsable());
  for (bool HelperStatus::* condition : {&HelperStatus::isInstalled, &HelperStatus::isExecutable,
                                         &HelperStatus::isSetuidRoot, &HelperStatus::supportsProTelemetry}) {
    HelperStatus status = usableStatus();
    status.*condition = false;
    EXPECT_FALSE(status.isUsable());
  }
  HelperStatus status = usableStatus();
  status.ownerUserID = 501;
  EXPECT_FALSE(status.isUsable());
}

TEST(HelperStatusTest, IsUsableWhateverItsGroupVersionAndError) {
  HelperStatus status = usableStatus();
  status.groupID = -2;
  status.installedVersion = "0.0.1";
  status.error = "text";
  EXPECT_TRUE(status.isUsable());
}

TEST(HelperStatusTest, EncodesItsFieldsInDeclarationOrder) {
  HelperStatus status = usableStatus();
  EXPECT_EQ(encodeJSON(status),
            R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":20,)"
            R"("supportsProTelemetry":true,"path":".\/QuellinHelper"})");
  status.installedVersion = "0.9.4";
  status.error = "no";
  EXPECT_EQ(
      encodeJSON(status),
      R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":20,)"
      R"("installedVersion":"0.9.4","supportsProTelemetry":true,"path":".\/QuellinHelper","error":"no"})");
}

TEST(HelperStatusTest, ReadsWithoutItsOptionalKeysButWithNoneOfTheOthersMissing) {
  const std::string document = *encodeJSON(usableStatus());
  EXPECT_EQ(decodeJSON<HelperStatus>(document), usableStatus());
  for (const char* key : {"isInstalled", "isExecutable", "isSetuidRoot", "ownerUserID", "groupID",
                          "supportsProTelemetry", "path"}) {
    std::string renamed = document;
    renamed.replace(renamed.find(key), 1, "x");
    EXPECT_FALSE(decodeJSON<HelperStatus>(renamed).has_value()) << renamed;
  }
}

}  // namespace
}  // namespace quellin
