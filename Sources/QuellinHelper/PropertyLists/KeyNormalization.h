#pragma once

#include <string>
#include <string_view>

namespace quellin {

/// `text` in lower case with nothing but its letters and numbers (Unicode 14: the general categories L* and
/// N*), in order: "CPU Power", "cpu_power" and "cpuPower" all give "cpupower". Lower-casing goes character by
/// character, without regard to language or neighbours. Bytes that are not well-formed UTF-8 are dropped.
[[nodiscard]] std::string normalize(std::string_view text);

/// The same, written over `result`, whose memory is used again.
void normalize(std::string_view text, std::string& result);

}  // namespace quellin
