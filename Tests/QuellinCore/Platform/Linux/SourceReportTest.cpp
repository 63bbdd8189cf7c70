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

TEST(SourceReportTest, AbsenceReadsAsAbsenceAndNotAsAFault) {
  EXPECT_EQ(unreadableSource("Battery", {"/sys/x", SystemError{ENOENT}}, "Ask."),
            (SourceDiagnosis{.source = "Battery",
                             .availability = SourceAvailability::absent,
                             .reason = "There is nothing to read: No such file or directory.",
                             .path = "/sys/x",
                             .remedy = std::nullopt}));
}

TEST(SourceReportTest, WhatIsReadInPartNamesTheRest) {
  const std::vector<ReadFault> faults = {{"/sys/x", SystemError{EIO}}, {"/sys/y", SystemError{EACCES}}};
  EXPECT_EQ(availableInPart("Battery", "BAT0 is read.", "/sys", faults, "Ask."),
            (SourceDiagnosis{.source = "Battery",
                             .availability = SourceAvailability::available,
                             .reason = "BAT0 is read. /sys/x: Input/output error. /sys/y: Permission denied.",
                             .path = "/sys",
                             .remedy = "Ask."}));
  EXPECT_EQ(availableInPart("Battery", "BAT0 is read.", "/sys", {faults.data(), 1}, "Ask.").remedy,
            std::nullopt);
  EXPECT_EQ(availableInPart("Battery", "BAT0 is read.", "/sys", {}, "Ask."),
            availableSource("Battery", "BAT0 is read.", "/sys"));
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

TEST(SourceReportTest, KeepsTheFirstFaultOfWhatIsThere) {
  std::optional<ReadFault> first;
  noteFirstFault(first, "/sys/w", SystemError{ENOENT});
  EXPECT_EQ(first, std::nullopt);
  noteFirstFault(first, "/sys/x", SystemError{EIO});
  noteFirstFault(first, "/sys/y", SystemError{EACCES});
  EXPECT_EQ(first, (ReadFault{"/sys/x", SystemError{EIO}}));
}

}  // namespace
}  // namespace quellin
