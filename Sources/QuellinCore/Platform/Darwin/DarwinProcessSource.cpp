#include <array>
#include <libproc.h>
#include <string>
#include <string_view>

#include "QuellinCore/Platform/Darwin/AbsoluteTime.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {
namespace {

using darwin::AbsoluteTimeScale;

constexpr const char* sourceName = SourceNames::processes;
constexpr const char* interfaceName = "libproc";
constexpr std::int32_t firstProcess = 1;  // launchd, which belongs to root

/// What the kernel counted for a process. No value when it has gone or may not be read.
std::optional<rusage_info_v6> readUsage(std::int32_t pid) {
  rusage_info_v6 record{};
  // The interface takes the place of the record under the type of a pointer to it.
  if (proc_pid_rusage(pid, RUSAGE_INFO_V6, reinterpret_cast<rusage_info_t*>(&record)) != 0) {
    return std::nullopt;
  }
  return record;
}

class DarwinProcessScan final : public ProcessScan {
 public:
  explicit DarwinProcessScan(std::optional<AbsoluteTimeScale> scale) : scale_(scale) {}

  [[nodiscard]] std::int64_t listProcessIDs(std::span<std::int32_t> ids) override {
    return proc_listpids(PROC_ALL_PIDS, 0, ids.data(), checkedCast<int>(ids.size_bytes()));
  }

  [[nodiscard]] std::optional<ProcessUsage> usage(std::int32_t pid) override {
    if (!scale_) return std::nullopt;
    const auto record = readUsage(pid);
    if (!record) return std::nullopt;
    return ProcessUsage{.userTimeNanoseconds = scale_->nanoseconds(record->ri_user_time),
                        .systemTimeNanoseconds = scale_->nanoseconds(record->ri_system_time),
                        .packageIdleWakeups = record->ri_pkg_idle_wkups,
                        .interruptWakeups = record->ri_interrupt_wkups,
                        .diskBytesRead = record->ri_diskio_bytesread,
                        .diskBytesWritten = record->ri_diskio_byteswritten,
                        .energyNanojoules = record->ri_energy_nj,
                        .startToken = record->ri_proc_start_abstime};
  }

  [[nodiscard]] std::optional<std::string> name(std::int32_t pid) override {
    std::array<char, 1024> buffer{};
    if (proc_name(pid, buffer.data(), buffer.size()) < 1) return std::nullopt;
    const std::string_view bytes{buffer.data(), buffer.size()};
    return std::string{bytes.substr(0, bytes.find('\0'))};
  }

 private:
  std::optional<AbsoluteTimeScale> scale_;
};

class DarwinProcessSource final : public ProcessSource {
 public:
  [[nodiscard]] std::unique_ptr<ProcessScan> beginScan() override {
    return std::make_unique<DarwinProcessScan>(AbsoluteTimeScale::ofThisMachine());
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    if (proc_listpids(PROC_ALL_PIDS, 0, nullptr, 0) < 1) {
      return fault("proc_listpids", SystemError::last().description());
    }
    if (!AbsoluteTimeScale::ofThisMachine()) {
      return fault("mach_timebase_info", "the length of a tick of the CPU times is unknown");
    }
    if (readUsage(firstProcess)) {
      return availableSource(sourceName, "All processes can be read.", interfaceName);
    }
    SourceDiagnosis diagnosis =
        availableSource(sourceName,
                        "Only this user's processes can be read. proc_pid_rusage of process 1 failed: " +
                            SystemError::last().description(),
                        interfaceName);
    diagnosis.remedy = "Run as root to see every process.";
    return diagnosis;
  }

 private:
  static SourceDiagnosis fault(const char* call, const std::string& error) {
    return darwin::faultDiagnosis(sourceName, darwin::failedFault(call, error), interfaceName);
  }
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<ProcessSource> nativeProcessSource() {
  return std::make_shared<DarwinProcessSource>();
}

}  // namespace quellin
