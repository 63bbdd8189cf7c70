#pragma once

#include <string>
#include <vector>

#include "Support/ProgramRun.h"
#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// The program as a user runs it: with a home folder of its own, a small environment, and a place where it is
/// run.
class FrontEnd {
 public:
  using Words = std::vector<std::string>;

  /// Runs the program in `folder`, by default the project's, so that "Examples/..." names the examples.
  explicit FrontEnd(std::string folder = QUELLIN_PROJECT);

  /// How the program is started with these arguments; `environment` goes before what it has by default.
  [[nodiscard]] ProgramStart start(const Words& arguments, const Words& environment = {}) const;
  /// Runs the program to its end.
  [[nodiscard]] ProgramResult run(const Words& arguments, const Words& environment = {}) const;

  [[nodiscard]] const TemporaryFolder& home() const { return home_; }
  /// Writes the first lines of the example trace, and behind them one that is damaged; returns the path.
  [[nodiscard]] std::string damagedTrace(int goodLines) const;

  /// A file in the home folder.
  [[nodiscard]] std::string pathOf(const std::string& name) const { return home_.pathOf(name); }
  [[nodiscard]] const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
  TemporaryFolder home_;
};

/// The trace among the examples, as it is named in the project's folder.
inline constexpr const char* macbook = "Examples/macbook.trace.jsonl";

}  // namespace quellin::testing_support
