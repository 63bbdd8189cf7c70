#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Services/HelperInstallation.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// How an installation of the tool ended.
struct HelperInstallResult {
  bool succeeded = false;  ///< the tool is installed now
  std::string message;     ///< for the user: what happened, or why it did not

  bool operator==(const HelperInstallResult&) const = default;
};

/// Client of the privileged tool: its status, its installation, and its telemetry.
///
/// Every operation runs on the calling thread and blocks it: `helperStatus` for up to 2 seconds,
/// `installBundledHelper` for up to 120, `readSnapshot` for up to 20, each with a step of 0.05 seconds and
/// the time a terminated child takes to end. Nothing throws; failures are texts in the result. One object may
/// be used from several threads.
class ProTelemetryService {
 public:
  /// The absolute path of the installed tool.
  static constexpr std::string_view defaultHelperPath = installedHelperPath;
  /// The file name of the tool as shipped with an application.
  static constexpr std::string_view bundledHelperName = "QuellinHelper";

  static constexpr Seconds statusTimeLimit{2};          ///< for an answer without any measurement
  static constexpr Seconds installationTimeLimit{120};  ///< a person types a password meanwhile
  /// Covers the tool's own limit of 15 seconds on the measurement, and its start.
  static constexpr Seconds telemetryTimeLimit{20};

  explicit ProTelemetryService(std::string helperPath = std::string{defaultHelperPath},
                               AdministratorPrompt prompt = AdministratorPrompt::native(),
                               MonotonicClock& clock = systemMonotonicClock(),
                               const WallClock& wallClock = systemWallClock());  ///< clocks must outlive it

  [[nodiscard]] const std::string& helperPath() const { return helperPath_; }  ///< absolute, as given

  /// The program that asks for an administrator's password, which `installBundledHelper` runs.
  [[nodiscard]] const std::string& promptExecutable() const { return prompt_.executable; }

  /// What is installed at `helperPath`: ownership, mode and executability as the file system has them,
  /// version and capability as the tool itself answers.
  [[nodiscard]] HelperStatus helperStatus() const;

  /// Copies the tool at the path `source` to `helperPath`, owned by root with the set-user-ID bit, after the
  /// system has asked for an administrator's password. A refusal comes back as the system's own text.
  [[nodiscard]] HelperInstallResult installBundledHelper(const std::string& source) const;

  /// Per-process energy and silicon power as the tool measures them. Always a snapshot: look at `isAvailable`
  /// and `error`.
  [[nodiscard]] ProTelemetrySnapshot readSnapshot() const;

 private:
  std::string helperPath_;
  AdministratorPrompt prompt_;
  MonotonicClock* clock_;
  const WallClock* wallClock_;
};

}  // namespace quellin
