#include "Support/TreeArchive.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace quellin::testing_support {
namespace {

constexpr std::string_view mark = "=== ";

std::string_view takeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
  text.remove_prefix(line.size());
  return line;
}

ArchivedFile parseHead(std::string_view line) {
  const std::string_view head = line.substr(mark.size(), line.find('\n') - mark.size());
  const std::size_t space = std::min(head.rfind(' '), head.size());
  const std::string_view mode = head.substr(std::min(space + 1, head.size()));
  ArchivedFile file{.path = std::string{head.substr(0, space)}, .mode = 0, .content = ""};
  const char* const begin = mode.data();
  const char* const end = begin + mode.size();
  if (mode.empty() || std::from_chars(begin, end, file.mode, 8).ptr != end) {
    throw std::runtime_error("not the head of an archived file: " + std::string{line});
  }
  return file;
}

}  // namespace

std::vector<ArchivedFile> parseTreeArchive(std::string_view text) {
  std::vector<ArchivedFile> files;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with(mark)) {
      files.push_back(parseHead(line));
    } else if (!files.empty()) {
      files.back().content += line;
    }
  }
  return files;
}

UnpackedTree::UnpackedTree(std::string_view archive) {
  for (const ArchivedFile& file : parseTreeArchive(archive)) write(file);
}

UnpackedTree UnpackedTree::fixture(const std::string& name) {
  return UnpackedTree{contentOf(std::filesystem::path{QUELLIN_FIXTURES} / name)};
}

void UnpackedTree::write(const ArchivedFile& file) const {
  std::filesystem::permissions(folder_.write(file.path, file.content), std::filesystem::perms{file.mode});
}

}  // namespace quellin::testing_support
