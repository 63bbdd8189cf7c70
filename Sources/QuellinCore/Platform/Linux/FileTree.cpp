#include "QuellinCore/Platform/Linux/FileTree.h"

#include <algorithm>
#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Platform/Linux/KernelText.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/Number.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

constexpr std::size_t pageSize = 4096;

struct DirectoryCloser {
  void operator()(DIR* stream) const { closedir(stream); }
};
using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

// The next entry; null at the end and, with errno set, on failure.
const dirent* nextEntry(DIR& stream) {
  errno = 0;
  return readdir(&stream);  // NOLINT(concurrency-mt-unsafe): the stream is known to this thread alone
}

std::expected<std::vector<std::string>, SystemError> remainingNames(DIR& stream) {
  std::vector<std::string> names;
  while (const dirent* const entry = nextEntry(stream)) {
    const std::string_view name{static_cast<const char*>(entry->d_name)};
    if (!name.starts_with('.')) names.emplace_back(name);
  }
  if (errno != 0) return std::unexpected(SystemError::last());
  return names;
}

class DirectoryTree final : public FileTree {
 public:
  explicit DirectoryTree(std::string root) : root_(std::move(root)) {
    auto opened = openDescriptor(root_, O_PATH | O_DIRECTORY);
    if (opened) {
      directory_ = std::move(*opened);
    } else {
      openError_ = opened.error();
    }
  }

  [[nodiscard]] std::expected<std::string_view, SystemError> readInto(const char* path,
                                                                      std::span<char> buffer) const override {
    if (!directory_) return std::unexpected(openError_);
    const FileDescriptor file{::openat(directory_.get(), path, O_RDONLY | O_CLOEXEC)};
    if (!file) return std::unexpected(SystemError::last());
    ssize_t count = 0;
    do {
      count = ::read(file.get(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) return std::unexpected(SystemError::last());
    return std::string_view{buffer.data(), static_cast<std::size_t>(count)};
  }

  [[nodiscard]] std::expected<std::vector<std::string>, SystemError> list(
      const std::string& path) const override {
    if (!directory_) return std::unexpected(openError_);
    const int descriptor =
        ::openat(directory_.get(), path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return std::unexpected(SystemError::last());
    const DirectoryStream stream{fdopendir(descriptor)};
    if (stream == nullptr) {
      const SystemError error = SystemError::last();
      FileDescriptor{descriptor}.reset();
      return std::unexpected(error);
    }
    return remainingNames(*stream);
  }

  [[nodiscard]] std::string displayPath(const std::string& path) const override {
    return path.empty() ? root_ : root_ + "/" + path;
  }

 private:
  std::string root_;
  FileDescriptor directory_;
  SystemError openError_;
};

}  // namespace

std::shared_ptr<const FileTree> directoryTree(std::string root) {
  return std::make_shared<DirectoryTree>(std::move(root));
}

std::shared_ptr<const FileTree> systemTree() { return directoryTree("/sys"); }

std::expected<std::vector<std::string>, SystemError> sortedNames(const FileTree& tree,
                                                                 const std::string& path) {
  auto names = tree.list(path);
  if (names) std::ranges::sort(*names, naturallyLess);
  return names;
}

std::expected<std::vector<std::string>, SystemError> classEntries(const FileTree& tree,
                                                                  const std::string& path) {
  auto names = sortedNames(tree, path);
  if (!names && saysAbsent(names.error())) return std::vector<std::string>{};
  return names;
}

std::expected<std::string, SystemError> readText(const FileTree& tree, const std::string& path) {
  std::array<char, pageSize> buffer{};
  const auto text = tree.readInto(path.c_str(), buffer);
  if (!text) return std::unexpected(text.error());
  return repairedUTF8(withoutSpaceAtEnds(*text));
}

std::expected<std::int64_t, SystemError> readInteger(const FileTree& tree, const std::string& path) {
  const auto text = readText(tree, path);
  if (!text) return std::unexpected(text.error());
  const auto value = parseNumber<std::int64_t>(*text);
  if (!value) return std::unexpected(SystemError{EINVAL});
  return *value;
}

}  // namespace quellin
