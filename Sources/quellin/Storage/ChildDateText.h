#pragma once

#include <string>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/LocaleDateText.h"

namespace quellin::cli {

/// Date texts made in a short-lived copy of this process. What a maker maps to know the locale, some
/// megabytes for good, goes with the copy: a recording that runs for days needs one such text, at its start.
class ChildDateText final : public LocaleDateText {
 public:
  /// A copy that has not answered after so long is ended.
  static constexpr Seconds defaultPatience{1};

  /// `maker` must outlive this and bear to be called in a copy of the process.
  explicit ChildDateText(const LocaleDateText& maker, Seconds patience = defaultPatience)
      : maker_(maker), patience_(patience) {}

  /// As `maker` has it. Where the system has no copy to spare, or the copy does not answer, the text is made
  /// in this process.
  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override;

 private:
  const LocaleDateText& maker_;
  Seconds patience_;
};

/// The user's own locale and time zone, without its data in this process where the system allows that: on
/// macOS a copy of a process may not ask for them.
[[nodiscard]] const LocaleDateText& frugalDateText();

}  // namespace quellin::cli
