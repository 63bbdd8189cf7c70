#pragma once

namespace quellin {

/// Takes this process out of its caller's hands; the first thing the tool does, before it looks at its
/// arguments.
///
/// Afterwards the environment holds nothing but a fixed PATH, the working directory is "/", new files are
/// private (umask 077), no timer of the caller runs, no core file is written, every signal has its default
/// disposition and none is blocked, descriptors 0 to 2 are open and no other is. SIGPIPE and SIGXFSZ alone
/// are ignored, so that output that cannot be written is a failed write. The process keeps its ids.
///
/// Returns false when the system refused a step; the process must do nothing more then but end.
[[nodiscard]] bool hardenProcess();

}  // namespace quellin
