#include <string>
#include <utility>

#include "QuellinCore/Platform/ProcessSource.h"

// Sources that this host is not read for. They supply nothing and say so.
namespace quellin {
namespace {

SourceDiagnosis unread(std::string source) {
  return {.source = std::move(source),
          .availability = SourceAvailability::absent,
          .reason = "This version does not read the source on this operating system.",
          .path = std::nullopt,
          .remedy = std::nullopt};
}

class UnreadProcessScan final : public ProcessScan {
 public:
  std::int64_t listProcessIDs(std::span<std::int32_t>) override { return 0; }
  std::optional<ProcessUsage> usage(std::int32_t) override { return std::nullopt; }
  std::optional<std::string> name(std::int32_t) override { return std::nullopt; }
};

class UnreadProcessSource final : public ProcessSource {
 public:
  std::unique_ptr<ProcessScan> beginScan() override { return std::make_unique<UnreadProcessScan>(); }
  SourceDiagnosis diagnose() override { return unread("Processes"); }
};

}  // namespace

std::shared_ptr<ProcessSource> nativeProcessSource() { return std::make_shared<UnreadProcessSource>(); }

}  // namespace quellin
