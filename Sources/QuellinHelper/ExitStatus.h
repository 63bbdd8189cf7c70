#pragma once

namespace quellin {

/// How the tool ends; the numbers are those of sysexits(3).
enum class ExitStatus : int {
  success = 0,           ///< the whole document was written
  usage = 64,            ///< no command word, or an unknown one
  encodingFailure = 70,  ///< the document could not be encoded; nothing was written
  systemFailure = 71,    ///< the process could not be made safe, or ran out of memory; nothing was written
  outputFailure = 74,    ///< standard output did not take the whole document
  notRoot = 77           ///< the effective user is not root
};

}  // namespace quellin
