#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "quellin/Terminal/Terminal.h"
#include "quellin/Watch/Canvas.h"

namespace quellin::cli {

/// The terminal behind standard output, given over to a full-screen view until the end of its life. One at a
/// time. Used on one thread.
class Screen {
 public:
  /// Takes the terminal. Throws `Failure` when its kind is not known.
  explicit Screen(bool hasColours);
  /// Gives it back as it was.
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  Screen(Screen&&) = delete;
  Screen& operator=(Screen&&) = delete;

  [[nodiscard]] ViewSize size() const;

  /// Tells that the terminal has a new size; what is shown is drawn anew with the next canvas.
  void resize(ViewSize size);

  /// Shows the canvas; only what has changed is sent.
  void show(const Canvas& canvas);

  /// What gives the terminal back without this object, from any thread: for a process that ends at once.
  [[nodiscard]] const std::function<void()>& rescue() const;

  /// The next key that was pressed; no value when there is none.
  [[nodiscard]] std::optional<int> key();

 private:
  struct Handle;
  std::unique_ptr<Handle> handle_;
};

/// Takes the character type of the user's locale for this process, and says what that can show. A locale that
/// is not installed here, as happens when one comes with the user from another machine, is not lost when it
/// is one of UTF-8.
[[nodiscard]] CharacterSet adoptCharacterSet(const Environment& environment);

}  // namespace quellin::cli
