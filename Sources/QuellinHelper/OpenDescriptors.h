#pragma once

namespace quellin {

/// Closes every open descriptor numbered `lowest` or higher, whatever the limit on their number says now: it
/// may have been lowered since they were opened. Returns whether the system could list or close them.
[[nodiscard]] bool closeDescriptorsFrom(int lowest);

}  // namespace quellin
