#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Support/ISO8601.h"

namespace quellin {
namespace {

struct Case {
  double seconds;
  const char* text;
};

TEST(ISO8601Test, WritesWholeSecondsRoundedDown) {
  const Case cases[] = {
      {0, "1970-01-01T00:00:00Z"},
      {0.999999, "1970-01-01T00:00:00Z"},
      {-0.5, "1969-12-31T23:59:59Z"},
      {-1, "1969-12-31T23:59:59Z"},
      {-1.0001, "1969-12-31T23:59:58Z"},
      {951782399, "2000-02-28T23:59:59Z"},
      {951782400, "2000-02-29T00:00:00Z"},
      {951868800, "2000-03-01T00:00:00Z"},
      {1709164800, "2024-02-29T00:00:00Z"},
      {1741081260.75, "2025-03-04T09:41:00Z"},
      {4107542400, "2100-03-01T00:00:00Z"},
      {4107542399, "2100-02-28T23:59:59Z"},
      {253402300799, "9999-12-31T23:59:59Z"},
      {253402300800, "10000-01-01T00:00:00Z"},
      {-11644473600, "1601-01-01T00:00:00Z"},
      {-59011459200, "0100-01-01T00:00:00Z"},
      {-62135596800, "0001-01-01T00:00:00Z"},
      {-62135596801, "0000-12-31T23:59:59Z"},
      {-62167219201, "-0001-12-31T23:59:59Z"},
  };
  for (const auto& [seconds, text] : cases) EXPECT_EQ(formatISO8601(instantAt(seconds)), text);
}

TEST(ISO8601Test, WritesTheLimitForInstantsBeyondIt) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(formatISO8601(instantAt(infinity)), formatISO8601(instantAt(0x1p53)));
  EXPECT_EQ(formatISO8601(instantAt(0x1p53)), "285428751-11-12T07:36:32Z");
  EXPECT_EQ(formatISO8601(instantAt(-1e300)), formatISO8601(instantAt(-0x1p53)));
  EXPECT_EQ(formatISO8601(instantAt(std::numeric_limits<double>::quiet_NaN())), "1970-01-01T00:00:00Z");
}

TEST(ISO8601Test, ReadsBackWhatItWrites) {
  for (double seconds = -62167219200; seconds < 3e11; seconds += 86'399.0 * 97) {
    EXPECT_EQ(parseISO8601(formatISO8601(instantAt(seconds))), instantAt(seconds));
  }
}

TEST(ISO8601Test, ReadsEveryLenientForm) {
  const Case cases[] = {
      {1741081260, "2025-03-04T09:41:00Z"},
      {1741081260, "2025-03-04T09:41:00z"},
      {1741081260, "2025-3-4T9:41:0Z"},
      {1741081260, "0000002025-0000000003-04T009:041:0000000000Z"},
      {1741081260, "2025-03-04T10:41:00+01:00"},
      {1741081260, "2025-03-04T10:41:00+0100"},
      {1741081260, "2025-03-04T04:11:00-05:30"},
      {1741081260, "2025-03-04T04:11:00-0530"},
      {1741081260, "2025-03-04T10:41:07+01:00:07"},
      {1741081260, "2025-03-04T10:41:07+010007"},
      {1741081260, "2025-03-04T10:41:00+01:00:7"},
      {1741081260, "2025-03-04T09:41:00GMT"},
      {1741081260, "2025-03-04T09:41:00UTC"},
      {1741081260, "2025-03-04T10:41:00GMT+01:00"},
      {1741081260, "2025-03-04T10:41:00UTC+0100"},
      {1741081260, "2025-03-04T09:41:00GMT+1"},
      {1741081260, "2025-03-04T09:41:00Z and more"},
      {1741081260, "2025-03-04T09:41:00Z.5"},
      {1741081260, "2025-03-04T08:100:60Z"},
      {1741081260, "2025-03-03T33:41:00Z"},
      {253402300800, "10000-01-01T00:00:00Z"},
      {-62167219200, "0000-01-01T00:00:00Z"},
      {1740873600, "2025-02-30T00:00:00Z"},
  };
  for (const auto& [seconds, text] : cases) {
    EXPECT_EQ(parseISO8601(text), instantAt(seconds)) << text;
  }
}

TEST(ISO8601Test, RefusesEverythingElse) {
  for (const char* text : {"",
                           "2025-03-04",
                           "2025-03-04T09:41:00",
                           "2025-03-04T09:41Z",
                           "2025-03-04 09:41:00Z",
                           "2025-03-04t09:41:00Z",
                           "2025-03-04T09:41:00.5Z",
                           "2025-03-04T09:41:00,5Z",
                           "2025-03-04T09:41:00.Z",
                           "-2025-03-04T09:41:00Z",
                           "+2025-03-04T09:41:00Z",
                           " 2025-03-04T09:41:00Z",
                           "2025-00-04T09:41:00Z",
                           "2025-13-04T09:41:00Z",
                           "2025-03-00T09:41:00Z",
                           "2025-03-32T09:41:00Z",
                           "20250304T094100Z",
                           "2025-03-04T09:41:00+01",
                           "2025-03-04T09:41:00+1:00",
                           "2025-03-04T09:41:00 Z",
                           "2025-03-04T-1:41:00Z",
                           "12345678901-03-04T09:41:00Z",
                           "2025-03-04T09:41:00gmt",
                           "2025/03/04T09:41:00Z",
                           "2025-03-04T09:41:Z",
                           "2025-03-04T09:41:00EST"}) {
    EXPECT_EQ(parseISO8601(text), std::nullopt) << text;
  }
}

TEST(ISO8601Test, HoldsTheLargestFieldsItReads) {
  const auto instant = parseISO8601("9999999999-12-31T9999999999:9999999999:9999999999-99:99:99");
  ASSERT_TRUE(instant.has_value());
  EXPECT_GT(instant->time_since_epoch().count(), 3.1e17);
}

}  // namespace
}  // namespace quellin
