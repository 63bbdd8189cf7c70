#include "QuellinCore/Platform/Darwin/ProcessInformation.h"

#include <objc/message.h>
#include <objc/runtime.h>

// Exported by the run time, declared in no public header.
extern "C" {
void* objc_autoreleasePoolPush(void);      // NOLINT(readability-identifier-naming)
void objc_autoreleasePoolPop(void* pool);  // NOLINT(readability-identifier-naming)
}

namespace quellin::darwin {
namespace {

/// Sends a message without arguments. The call is made with the very type of the method, as the calling
/// convention demands.
template <class Result>
Result send(id receiver, SEL message) {
  return reinterpret_cast<Result (*)(id, SEL)>(objc_msgSend)(receiver, message);
}

id asObject(Class type) { return reinterpret_cast<id>(type); }

}  // namespace

ProcessInformation::ProcessInformation() : pool_(objc_autoreleasePoolPush()) {}

ProcessInformation::~ProcessInformation() { objc_autoreleasePoolPop(pool_); }

template <class Result>
std::optional<Result> ProcessInformation::ask(const char* question) const {
  Class type = objc_getClass("NSProcessInfo");
  if (type == nullptr) return std::nullopt;
  SEL message = sel_registerName(question);
  if (!class_respondsToSelector(type, message)) return std::nullopt;
  id information = send<id>(asObject(type), sel_registerName("processInfo"));
  if (information == nullptr) return std::nullopt;
  return send<Result>(information, message);
}

std::optional<std::int64_t> ProcessInformation::thermalState() const { return ask<long>("thermalState"); }

std::optional<bool> ProcessInformation::isLowPowerModeEnabled() const {
  return ask<BOOL>("isLowPowerModeEnabled");
}

}  // namespace quellin::darwin
