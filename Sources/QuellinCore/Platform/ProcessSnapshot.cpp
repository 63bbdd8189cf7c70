#include "QuellinCore/Platform/ProcessSnapshot.h"

#include <cstddef>
#include <span>
#include <utility>

namespace quellin {
namespace {

constexpr std::size_t smallestRoom = 4096;
constexpr std::size_t largestRoom = 65536;

}  // namespace

std::vector<std::int32_t> processIDs(ProcessScan& scan) {
  for (std::size_t room = smallestRoom; room <= largestRoom; room *= 2) {
    std::vector<std::int32_t> ids(room);
    const std::int64_t written = scan.listProcessIDs(ids);
    if (written < 1) return {};
    if (written >= static_cast<std::int64_t>(std::span(ids).size_bytes())) continue;
    ids.resize(static_cast<std::size_t>(written) / sizeof(std::int32_t));
    return ids;
  }
  return {};
}

std::vector<ProcessAnswer> processSnapshot(ProcessScan& scan, ProcessNames names) {
  const std::vector<std::int32_t> ids = processIDs(scan);
  std::vector<ProcessAnswer> answers;
  answers.reserve(ids.size());
  for (const std::int32_t pid : ids) {
    ProcessAnswer& answer = answers.emplace_back(ProcessAnswer{.pid = pid, .usage = {}, .name = {}});
    if (pid > 0) answer.usage = scan.usage(pid);
    if (answer.usage && names == ProcessNames::read) answer.name = scan.name(pid);
  }
  return answers;
}

}  // namespace quellin
