#include "QuellinCore/Platform/Linux/ProcessFiles.h"

#include <algorithm>
#include <array>

#include "QuellinCore/Platform/Linux/KernelText.h"
#include "QuellinCore/Support/Number.h"

namespace quellin {
namespace {

// Numbers of fields in the kernel's documentation; the first one behind the name is field 3.
constexpr std::size_t firstField = 3;
constexpr std::size_t userTimeField = 14;
constexpr std::size_t systemTimeField = 15;
constexpr std::size_t startTimeField = 22;
constexpr std::size_t fieldCount = startTimeField - firstField + 1;

std::string_view takeUpTo(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view piece = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return piece;
}

}  // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view line) {
  const std::size_t open = line.find('(');
  const std::size_t close = line.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return std::nullopt;

  std::array<std::string_view, fieldCount> fields;
  std::string_view rest = withoutSpaceAtEnds(line.substr(close + 1));
  for (std::string_view& field : fields) field = takeUpTo(rest, ' ');

  const auto user = parseNumber<std::uint64_t>(fields[userTimeField - firstField]);
  const auto system = parseNumber<std::uint64_t>(fields[systemTimeField - firstField]);
  const auto start = parseNumber<std::uint64_t>(fields[startTimeField - firstField]);
  if (!user || !system || !start) return std::nullopt;
  return ProcessStat{.name = std::string{line.substr(open + 1, close - open - 1)},
                     .userTicks = *user,
                     .systemTicks = *system,
                     .startTicks = *start};
}

std::optional<std::uint64_t> parseNamedNumber(std::string_view text, std::string_view name) {
  while (!text.empty()) {
    std::string_view value = takeUpTo(text, '\n');
    if (takeUpTo(value, ':') == name) return parseNumber<std::uint64_t>(withoutSpaceAtEnds(value));
  }
  return std::nullopt;
}

}  // namespace quellin
