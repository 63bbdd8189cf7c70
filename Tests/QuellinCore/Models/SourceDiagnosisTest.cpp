#include <gtest/gtest.h>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

TEST(SourceDiagnosisTest, NamesItsVerdictsByTheirExactRawStrings) {
  EXPECT_EQ(rawValue(SourceAvailability::available), "available");
  EXPECT_EQ(rawValue(SourceAvailability::absent), "absent");
  EXPECT_EQ(rawValue(SourceAvailability::notPermitted), "notPermitted");
  EXPECT_EQ(rawValue(SourceAvailability::failed), "failed");
}

TEST(SourceDiagnosisTest, DescribesEveryFieldInOrder) {
  const SourceDiagnosis diagnosis{.source = "Energy counters",
                                  .availability = SourceAvailability::notPermitted,
                                  .reason = "open: Permission denied",
                                  .path = "energy_uj",
                                  .remedy = "Run as root"};
  EXPECT_EQ(encodeJSON(diagnosis),
            R"({"source":"Energy counters","availability":"notPermitted","reason":"open: Permission denied",)"
            R"("path":"energy_uj","remedy":"Run as root"})");
}

TEST(SourceDiagnosisTest, LeavesOutWhatDoesNotApply) {
  const SourceDiagnosis diagnosis{.source = "Battery",
                                  .availability = SourceAvailability::absent,
                                  .reason = "This machine has no battery.",
                                  .path = {},
                                  .remedy = {}};
  EXPECT_EQ(encodeJSON(diagnosis),
            R"({"source":"Battery","availability":"absent","reason":"This machine has no battery."})");
}

TEST(SourceDiagnosisTest, IsMadeForWhatCanBeReadAndForWhatIsNotThere) {
  EXPECT_EQ(availableSource(SourceNames::battery, "BAT0 is read.", "/sys"),
            (SourceDiagnosis{.source = "Battery",
                             .availability = SourceAvailability::available,
                             .reason = "BAT0 is read.",
                             .path = "/sys",
                             .remedy = std::nullopt}));
  EXPECT_EQ(absentSource(SourceNames::smc, "No chip counts a fan.", "/sys"),
            (SourceDiagnosis{.source = "SMC",
                             .availability = SourceAvailability::absent,
                             .reason = "No chip counts a fan.",
                             .path = "/sys",
                             .remedy = std::nullopt}));
}

}  // namespace
}  // namespace quellin
