#include <expected>
#include <tuple>
#include <utility>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/IOKitHandles.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"
#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {
namespace {

using darwin::OwnedCF;
using darwin::OwnedIOConnection;
using darwin::OwnedIOObject;
using darwin::SourceFault;

constexpr const char* sourceName = SourceNames::smc;
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

std::expected<OwnedIOConnection, SourceFault> openUserClient() {
  const OwnedIOObject service = findService();
  if (!service) return std::unexpected(darwin::absentFault("This machine has no such service."));
  OwnedIOConnection connection;
  const kern_return_t code =
      IOServiceOpen(service.get(), mach_task_self(), connectionType, connection.outParameter());
  if (code != KERN_SUCCESS) {
    // What a failing open leaves in the place for the handle is not ours to close.
    std::ignore = connection.release();
    return std::unexpected(darwin::kernelFault("IOServiceOpen", code));
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
    auto connection = openUserClient();
    if (!connection) return darwin::faultDiagnosis(sourceName, std::move(connection.error()), serviceClass);
    return availableSource(sourceName, "The user client can be opened.", serviceClass);
  }
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<SMCSource> nativeSMCSource() {
  return std::make_shared<DarwinSMCSource>();
}

}  // namespace quellin
