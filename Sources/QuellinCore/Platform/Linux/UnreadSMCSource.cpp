#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {
namespace {

class UnreadSMCSource final : public SMCSource {
 public:
  [[nodiscard]] std::unique_ptr<SMCConnection> open() override { return nullptr; }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    return {.source = "SMC",
            .availability = SourceAvailability::absent,
            .reason = "This version does not read the source on this operating system.",
            .path = std::nullopt,
            .remedy = std::nullopt};
  }
};

}  // namespace

std::shared_ptr<SMCSource> nativeSMCSource() { return std::make_shared<UnreadSMCSource>(); }

}  // namespace quellin
