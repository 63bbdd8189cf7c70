#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <termios.h>
#include <vector>

#include "Support/PseudoTerminal.h"
#include "Support/TerminalEmulator.h"

namespace quellin::testing_support {

/// A program to start on a terminal of its own.
struct TerminalStart {
  std::string executable;
  std::vector<std::string> arguments;    ///< after the program's name
  std::vector<std::string> environment;  ///< the whole of it
  int rows = 24;
  int columns = 80;
  std::function<void()> prepare = [] {};  ///< runs in the new process, last before the program
};

/// How a program ended.
struct TerminalEnd {
  int exitStatus = -1;      ///< -1 when a signal ended it
  int signal = 0;           ///< 0 when it exited
  bool isAsBefore = false;  ///< whether the settings of the terminal are those from before the program

  bool operator==(const TerminalEnd&) const = default;
};

/// Shows an end in the messages of failed tests.
std::ostream& operator<<(std::ostream& stream, const TerminalEnd& end);

/// A program that runs on a terminal, and the person in front of it. A program that still runs at the end of
/// its object is killed.
class TerminalProgram {
 public:
  explicit TerminalProgram(const TerminalStart& start);
  ~TerminalProgram();
  TerminalProgram(const TerminalProgram&) = delete;
  TerminalProgram& operator=(const TerminalProgram&) = delete;

  /// Waits until the screen fulfils `condition`. False, with the screen as it is then, when the program ends
  /// or a minute passes before.
  [[nodiscard]] bool waitUntil(const std::function<bool(const TerminalEmulator&)>& condition);
  /// Waits until `text` stands on the screen.
  [[nodiscard]] bool waitFor(std::string_view text);

  void type(std::string_view keys) const;
  /// Gives the terminal another size.
  void resize(int rows, int columns);
  void sendSignal(int signal) const;

  /// Takes in all that the program still sends, and waits for its end; throws when a minute passes before.
  [[nodiscard]] TerminalEnd finish();

  [[nodiscard]] const TerminalEmulator& screen() const { return screen_; }
  /// All bytes that were sent so far.
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  [[nodiscard]] bool readMore(double deadline);
  [[nodiscard]] bool hasSameSettings() const;

  PseudoTerminal terminal_;
  termios settings_{};
  pid_t processID_ = -1;
  TerminalEmulator screen_;
  std::string bytes_;
};

}  // namespace quellin::testing_support
