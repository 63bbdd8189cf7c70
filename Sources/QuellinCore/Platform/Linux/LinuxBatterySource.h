#pragma once

#include <memory>
#include <span>

#include "QuellinCore/Platform/BatterySource.h"
#include "QuellinCore/Platform/Linux/PowerSupply.h"

namespace quellin {

/// The battery tables of the given supplies; both absent without a battery of the machine itself.
[[nodiscard]] BatteryTables batteryTables(std::span<const PowerSupply> supplies);

/// The machine's batteries as /sys/class/power_supply gives them.
class LinuxBatterySource final : public BatterySource {
 public:
  /// `sys` is the tree of /sys.
  explicit LinuxBatterySource(std::shared_ptr<const FileTree> sys = systemTree());

  [[nodiscard]] BatteryTables read() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> sys_;
};

}  // namespace quellin
