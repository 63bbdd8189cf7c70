#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Instants from here on have a year of more than four digits, which is written but not read back.
inline constexpr Instant yearTenThousand = instantAt(253'402'300'800);

/// The text of an instant, held without an allocation.
struct ISO8601Text {
  std::array<char, 40> characters{};  ///< only the first `length` count
  std::size_t length = 0;             ///< bytes

  [[nodiscard]] std::string_view view() const { return {characters.data(), length}; }  ///< while this lives
};

/// `instant` in UTC as yyyy-MM-ddTHH:mm:ssZ, rounded down to a whole second (also before 1970). Years are
/// padded to four digits and written in full from 10000 on. The calendar is the Gregorian one at all times.
/// Instants further than 2^53 seconds from 1970 are written as that limit, and one that is not a number as
/// 1970.
[[nodiscard]] ISO8601Text iso8601Text(Instant instant);

/// As `iso8601Text`, as a string.
[[nodiscard]] std::string formatISO8601(Instant instant);

/// The instant that `text` spells: year-month-dayThour:minute:second and a zone. Fields take 1 to 10 digits;
/// month (1...12) and day (1...31) are checked, all else rolls over. The zone is Z, z, a sign with
/// hh[:]mm[[:]ss], or GMT or UTC, alone or before such an offset; what follows it is ignored. No value for
/// anything else, among it a fraction of a second and a negative year.
[[nodiscard]] std::optional<Instant> parseISO8601(std::string_view text);

}  // namespace quellin
