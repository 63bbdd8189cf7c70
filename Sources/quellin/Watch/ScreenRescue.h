#pragma once

#include <functional>
#include <optional>
#include <termios.h>

namespace quellin::cli {

/// The settings of the terminal behind standard input; no value where there is none.
[[nodiscard]] std::optional<termios> terminalSettings();

/// What gives the terminal back with these settings, from any thread and whatever the library of the screen
/// is doing: for a process that ends without tidying up. To be asked for once the library has the terminal.
[[nodiscard]] std::function<void()> screenRescue(const std::optional<termios>& settings);

}  // namespace quellin::cli
