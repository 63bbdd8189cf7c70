#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {
namespace {

TEST(SourceReportTest, TheErrorDecidesTheVerdict) {
  const std::vector<std::pair<int, SourceAvailability>> cases = {
      {ENOENT, SourceAvailability::absent},      {ENOTDIR, SourceAvailability::absent},
      {ENODEV, SourceAvailability::absent},      {ENXIO, SourceAvailability::absent},
      {ENODATA, SourceAvailability::absent},     {EACCES, SourceAvailability::notPermitted},
      {EPERM, SourceAvailability::notPermitted}, {EIO, SourceAvailability::failed},
      {EINVAL, SourceAvailability::failed},      {EMFILE, SourceAvailability::failed},
  };
  for (const auto& [code, expected] : cases) {
    EXPECT_EQ(unreadableSource("Battery", {"/sys/x", SystemError{code}}, "Ask.").availability, expected)
        << code;
  }
}

TEST(SourceReportTest, OnlyDeniedAccessHasARemedy) {
  const SourceDiagnosis denied = unreadableSource("Battery", {"/sys/x", SystemError{EACCES}}, "Ask.");
  EXPECT_EQ(denied, (SourceDiagnosis{.source = "Battery",
                                     .availability = SourceAvailability::notPermitted,
                                     .reason = "Reading failed: Permission denied.",
                                     .path = "/sys/x",
                                     .remedy = "Ask."}));
  EXPECT_EQ(unreadableSource("Battery", {"/sys/x", SystemError{EIO}}, "Ask.").remedy, std::nullopt);
}

}  // namespace
}  // namespace quellin
