#pragma once

#include <functional>
#include <memory>

#include "QuellinCore/Support/Background.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/MainExecutor.h"

namespace quellin::cli {

/// What a watched descriptor has come to.
enum class InputState { readable, gone };

/// Tells when there is something to read, for as long as it lives. The descriptor keeps its flags: a terminal
/// shares them with the programs that use it later.
class InputWatch {
 public:
  /// Calls `changed` on `executor` whenever there is something to read, which it must then read, and once
  /// when the other end has gone. Throws std::runtime_error when the system has no pipe to spare. The
  /// executor must not run after the watch has gone.
  InputWatch(int descriptor, std::shared_ptr<MainExecutor> executor, std::function<void(InputState)> changed);
  ~InputWatch();
  InputWatch(const InputWatch&) = delete;
  InputWatch& operator=(const InputWatch&) = delete;
  InputWatch(InputWatch&&) = delete;
  InputWatch& operator=(InputWatch&&) = delete;

 private:
  void wait();

  int descriptor_;
  std::shared_ptr<MainExecutor> executor_;
  std::function<void(InputState)> changed_;
  Pipe stop_;
  std::unique_ptr<Background> background_ = makeBackground();
};

}  // namespace quellin::cli
