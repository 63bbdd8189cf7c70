#include <expected>
#include <mach/mach_error.h>
#include <string>
#include <tuple>
#include <utility>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/IOKitHandles.h"
#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {
namespace {

using darwin::OwnedCF;
using darwin::OwnedIOConnection;
using darwin::OwnedIOObject;

constexpr const char* serviceClass = "AppleSMC";
constexpr std::uint32_t connectionType = 2;

class DarwinSMCConnection final : public SMCConnection {
 public:
  explicit DarwinSMCConnection(OwnedIOConnection connection) : connection_(std::move(connection)) {}

  [[nodiscard]] std::int32_t callStruct(std::uint32_t selector, const SMCKeyData& input, SMCKeyData& output,
                                        std::size_t& outputSize) override {
    return IOConnectCallStructMethod(connection_.get(), selector, &input, sizeof(input), &output,
                                     &outputSize);
  }

 private:
  OwnedIOConnection connection_;
};

OwnedIOObject findService() {
  auto matching = OwnedCF<CFMutableDictionaryRef>::adopt(IOServiceMatching(serviceClass));
  if (!matching) return {};
  // The lookup consumes the dictionary, whatever it finds.
  return OwnedIOObject::adopt(IOServiceGetMatchingService(kIOMainPortDefault, matching.release()));
}

SourceDiagnosis diagnosis(SourceAvailability availability, std::string reason) {
  return {.source = "SMC",
          .availability = availability,
          .reason = std::move(reason),
          .path = serviceClass,
          .remedy = std::nullopt};
}

SourceDiagnosis refusal(kern_return_t code) {
  const bool notPermitted = code == kIOReturnNotPermitted || code == kIOReturnNotPrivileged;
  return diagnosis(notPermitted ? SourceAvailability::notPermitted : SourceAvailability::failed,
                   std::string{"IOServiceOpen failed: "}.append(mach_error_string(code)));
}

std::expected<OwnedIOConnection, SourceDiagnosis> openUserClient() {
  const OwnedIOObject service = findService();
  if (!service) {
    return std::unexpected(diagnosis(SourceAvailability::absent, "This machine has no such service."));
  }
  OwnedIOConnection connection;
  const kern_return_t code =
      IOServiceOpen(service.get(), mach_task_self(), connectionType, connection.outParameter());
  if (code != KERN_SUCCESS) {
    // What a failing open leaves in the place for the handle is not ours to close.
    std::ignore = connection.release();
    return std::unexpected(refusal(code));
  }
  return connection;
}

class DarwinSMCSource final : public SMCSource {
 public:
  [[nodiscard]] std::unique_ptr<SMCConnection> open() override {
    auto connection = openUserClient();
    if (!connection) return nullptr;
    return std::make_unique<DarwinSMCConnection>(std::move(*connection));
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    const auto connection = openUserClient();
    if (!connection) return connection.error();
    return diagnosis(SourceAvailability::available, "The user client can be opened.");
  }
};

}  // namespace

std::shared_ptr<SMCSource> nativeSMCSource() { return std::make_shared<DarwinSMCSource>(); }

}  // namespace quellin
