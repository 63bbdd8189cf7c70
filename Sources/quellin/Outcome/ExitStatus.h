#pragma once

namespace quellin::cli {

/// What the program tells its caller by its exit status.
enum class ExitStatus {
  ok = 0,
  failed = 1,             ///< something went wrong; standard error says what
  usage = 2,              ///< the command line was not understood
  negative = 3,           ///< the question was answered with no; `exitStatusText` lists the questions
  noSession = 4,          ///< there is no such session
  nothingMeasurable = 5,  ///< this machine, or what stands for it, has nothing to measure

  // Of `run`, which passes on the status of its command, and means by these what env and timeout mean.
  notMeasured = 125,    ///< the command was not measured to its end, for a reason of our own
  notExecutable = 126,  ///< the command was found and cannot be executed
  notFound = 127,       ///< there is no such command
};

}  // namespace quellin::cli
