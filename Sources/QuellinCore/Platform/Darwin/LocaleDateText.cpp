#include "QuellinCore/Support/LocaleDateText.h"

#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"

namespace quellin {
namespace {

using darwin::OwnedCF;

constexpr CFAbsoluteTime referenceDate = 978307200;  // 2001-01-01 UTC, counted from 1970

class CoreFoundationLocaleDateText final : public LocaleDateText {
 public:
  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override {
    const auto locale = OwnedCF<CFLocaleRef>::adopt(CFLocaleCopyCurrent());
    const auto formatter = OwnedCF<CFDateFormatterRef>::adopt(CFDateFormatterCreate(
        kCFAllocatorDefault, locale.get(), kCFDateFormatterMediumStyle, kCFDateFormatterShortStyle));
    if (!formatter) return {};
    const auto text = OwnedCF<CFStringRef>::adopt(CFDateFormatterCreateStringWithAbsoluteTime(
        kCFAllocatorDefault, formatter.get(), instant.time_since_epoch().count() - referenceDate));
    return darwin::textOf(text.get()).value_or("");
  }
};

}  // namespace

const LocaleDateText& systemLocaleDateText() {
  static const CoreFoundationLocaleDateText text;
  return text;
}

}  // namespace quellin
