#pragma once

#include <memory>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {

/// The machine's fans behind the keys of an SMC: "FNum", and "F0Ac", "F0Mn", "F0Mx" and so on for each. It
/// knows no other keys. A connection answers with the speeds of the moment at which it was opened.
///
/// A fan that cannot be read gets no number. Readers refuse a machine with more than `SMCKeys::mostFans`, so
/// only that many are published. From the eleventh fan on the names of its minimum and maximum are cut to the
/// same four characters; they are left out.
class LinuxSMCSource final : public SMCSource {
 public:
  /// `sys` is the tree of /sys.
  explicit LinuxSMCSource(std::shared_ptr<const FileTree> sys = systemTree());

  [[nodiscard]] std::unique_ptr<SMCConnection> open() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> sys_;
};

}  // namespace quellin
