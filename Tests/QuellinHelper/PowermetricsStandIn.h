#pragma once

#include <string>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// A script in the place of /usr/bin/powermetrics, for the tool as it is built. Needs root.
///
/// The program under test gets a view of its own of /usr/bin, which nobody else sees and which ends with it.
/// Where the system allows no such view, and has no such program, the script really lies there as long as
/// this object lives, one object at a time.
class PowermetricsStandIn {
 public:
  /// The body of a script for /bin/sh. It finds its output path as $output and the usual programs on its
  /// PATH.
  explicit PowermetricsStandIn(const std::string& body);
  PowermetricsStandIn(PowermetricsStandIn&&) = delete;
  ~PowermetricsStandIn();

  /// To be called in the process that becomes the tool, while it is still root.
  void enter() const;

  /// The path of `name` in a folder that every user may use.
  [[nodiscard]] std::string pathOf(const std::string& name) const { return folder_.pathOf(name); }

 private:
  void occupyRealPlace();

  TemporaryFolder folder_;
  std::string programs_;
  bool hasOwnView_;
  std::string script_;
  FileDescriptor turn_;
};

}  // namespace quellin::testing_support
