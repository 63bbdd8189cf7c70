#include "quellin/Watch/ScreenRescue.h"

#include <bit>
#include <cstdint>
#include <string>
#include <tuple>
#include <unistd.h>

#define NCURSES_NOMACROS
#include <curses.h>
// Last: it defines common words as macros.
#include <term.h>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::cli {
namespace {

// What this kind of terminal has for a purpose, without the pauses that old ones want.
std::string sequenceFor(const char* capability) {
  const char* const given = tigetstr(capability);
  // The library answers with this where the name is that of no such capability.
  if (given == nullptr || std::bit_cast<std::intptr_t>(given) == -1) return {};
  std::string sequence = given;
  for (auto pause = sequence.find("$<"); pause != std::string::npos; pause = sequence.find("$<")) {
    sequence.erase(pause, sequence.find('>', pause) - pause + 1);
  }
  return sequence;
}

}  // namespace

std::optional<termios> terminalSettings() {
  termios settings{};
  if (tcgetattr(STDIN_FILENO, &settings) != 0) return std::nullopt;
  return settings;
}

std::function<void()> screenRescue(const std::optional<termios>& settings) {
  std::string sequences;
  // No style, a cursor, the keys and the page of before.
  for (const char* const capability : {"sgr0", "cnorm", "rmkx", "rmcup"})
    sequences += sequenceFor(capability);
  return [settings, sequences] {
    std::ignore = writeAll(STDOUT_FILENO, sequences);
    if (settings) tcsetattr(STDIN_FILENO, TCSANOW, &*settings);
  };
}

}  // namespace quellin::cli
