#pragma once

#include <memory>

#include "QuellinCore/Platform/EnergySource.h"
#include "QuellinCore/Platform/Linux/FileTree.h"

namespace quellin {

/// The processor's energy counters as /sys/class/powercap gives them. The kernel lets only root read them.
class LinuxEnergySource final : public EnergySource {
 public:
  /// `sys` is the tree of /sys.
  explicit LinuxEnergySource(std::shared_ptr<const FileTree> sys = systemTree());

  [[nodiscard]] std::unique_ptr<EnergyMeasurement> begin() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> sys_;
};

}  // namespace quellin
