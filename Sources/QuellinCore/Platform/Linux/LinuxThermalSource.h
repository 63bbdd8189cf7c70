#pragma once

#include <memory>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/ThermalSource.h"

namespace quellin {

/// The thermal state from the cooling devices that throttle, and low-power mode from the platform profile.
/// Linux has no counterpart of the thermal-pressure level; it is always absent.
class LinuxThermalSource final : public ThermalSource {
 public:
  /// `sys` is the tree of /sys.
  explicit LinuxThermalSource(std::shared_ptr<const FileTree> sys = systemTree());

  [[nodiscard]] ThermalSignals read() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> sys_;
};

}  // namespace quellin
