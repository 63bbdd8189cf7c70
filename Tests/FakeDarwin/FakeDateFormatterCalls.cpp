#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <string>

#include "FakeDarwin/FakeDarwin.h"

namespace {

using quellin::fake::FakeDarwin;

class FormatterObject final : public quellin::fake::Object {
 public:
  FormatterObject(CFDateFormatterStyle dateStyle, CFDateFormatterStyle timeStyle)
      : dateStyle_(dateStyle), timeStyle_(timeStyle) {}

  [[nodiscard]] std::string kind() const override { return "date formatter"; }

  /// What it was made with, and the whole seconds that it was handed.
  [[nodiscard]] std::string format(CFAbsoluteTime time) const {
    return "date style " + std::to_string(dateStyle_) + ", time style " + std::to_string(timeStyle_) +
           ", second " + std::to_string(static_cast<long>(time));
  }

 private:
  CFDateFormatterStyle dateStyle_;
  CFDateFormatterStyle timeStyle_;
};

}  // namespace

extern "C" {

CFLocaleRef CFLocaleCopyCurrent(void) {
  FakeDarwin& system = FakeDarwin::current();
  if (system.calls.enter(__func__)) return nullptr;
  return static_cast<CFLocaleRef>(system.coreFoundation.opaque("locale"));
}

// As on a Mac, no locale means the one of no language.
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (locale != nullptr) system.objects.any(locale);
  if (failure) return nullptr;
  return static_cast<CFDateFormatterRef>(
      system.objects.add(std::make_unique<FormatterObject>(dateStyle, timeStyle)));
}

CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime time) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto* object = system.objects.as<FormatterObject>(formatter);
  if (object == nullptr || failure) return nullptr;
  return system.coreFoundation.string(object->format(time));
}

}  // extern "C"
