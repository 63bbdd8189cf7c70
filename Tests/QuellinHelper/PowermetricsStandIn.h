#pragma once

#include <string>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// A script in the place of /usr/bin/powermetrics, for the tool as it is built. Needs root.
///
/// The program under test gets a view of its own of /usr/bin, which nobody else sees and which ends with it.
/// The machine's own /usr/bin is never written to.
class PowermetricsStandIn {
 public:
  /// The body of a script for /bin/sh. It finds its output path as $output and the usual programs on its
  /// PATH. Throws where the system allows no such view.
  explicit PowermetricsStandIn(const std::string& body);

  /// To be called in the process that becomes the tool, while it is still root.
  void enter() const;

  /// The path of `name` in a folder that every user may use.
  [[nodiscard]] std::string pathOf(const std::string& name) const { return folder_.pathOf(name); }

 private:
  TemporaryFolder folder_;
  std::string programs_;
  std::string script_;
};

}  // namespace quellin::testing_support
