#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Support/LocaleDateText.h"

namespace quellin {

/// Date texts from ICU's locale data. Thread-safe.
class [[gnu::visibility("hidden")]] ICULocaleDateText final : public LocaleDateText {
 public:
  /// The user's locale and time zone; US English when the process runs in the C locale.
  ICULocaleDateText() = default;
  /// A given locale ("de_DE") and time zone ("Europe/Berlin").
  ICULocaleDateText(std::string locale, std::string timeZone);

  /// An empty text when ICU's data are missing.
  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override;

 private:
  std::optional<std::string> locale_;
  std::optional<std::string> timeZone_;
};

}  // namespace quellin
