#pragma once

#include <memory>

#include "QuellinCore/Platform/HIDSensorSource.h"
#include "QuellinCore/Platform/Linux/FileTree.h"

namespace quellin {

/// The temperature inputs of the machine's monitoring chips: every one that can be read and that its chip
/// does not call faulty, named by its label or else by its chip. Chips in natural order, inputs in the order
/// of their numbers.
class LinuxHIDSensorSource final : public HIDSensorSource {
 public:
  /// `sys` is the tree of /sys.
  explicit LinuxHIDSensorSource(std::shared_ptr<const FileTree> sys = systemTree());

  [[nodiscard]] std::vector<HIDTemperatureService> temperatureServices() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> sys_;
};

}  // namespace quellin
