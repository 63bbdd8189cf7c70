#pragma once

#include <cstddef>
#include <string>

#include "QuellinCore/Support/FileDescriptor.h"
#include "quellin/CommandLine/Command.h"

namespace quellin::testing_support {

/// A command's surroundings with all its talk going into a pipe, whatever terminal they describe.
class TalkPipe {
 public:
  /// Surroundings on a terminal of so many columns.
  [[nodiscard]] cli::Invocation onTerminal(std::size_t columns);
  /// Surroundings on `terminal`.
  [[nodiscard]] cli::Invocation on(const cli::Terminal& terminal);

  /// What has been said, as soon as there is anything; empty when a minute passes before.
  [[nodiscard]] std::string waitForText();
  /// All that has been said and not been read; nothing can be said any more.
  [[nodiscard]] std::string said();

 private:
  Pipe pipe_ = std::move(*Pipe::open());
  cli::Options options_;
  ProTelemetryService tool_;
  cli::Output out_{pipe_.writeEnd.get()};
  cli::Talk talk_{pipe_.writeEnd.get()};
};

}  // namespace quellin::testing_support
