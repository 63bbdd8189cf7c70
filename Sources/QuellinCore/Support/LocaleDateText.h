#pragma once

#include <string>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Writes instants the way the user's locale and time zone have it. Any thread may ask it, several at once,
/// too.
class LocaleDateText {
 public:
  virtual ~LocaleDateText() = default;

  /// `instant` with the medium date style and the short time style, as UTF-8: in US English "Mar 4, 2025 at
  /// 9:41 AM", with the blanks that the locale data have (the one before AM may be U+202F).
  [[nodiscard]] virtual std::string mediumDateShortTime(Instant instant) const = 0;
};

/// The user's own locale and time zone, US English where the system knows no locale. Thread-safe.
[[nodiscard]] const LocaleDateText& systemLocaleDateText();

}  // namespace quellin
