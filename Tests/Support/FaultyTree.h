#pragma once

#include <map>
#include <memory>
#include <utility>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "Support/TreeArchive.h"

namespace quellin::testing_support {

/// A file tree whose chosen paths fail with an error that no ordinary file can give.
class FaultyTree final : public FileTree {
 public:
  FaultyTree(std::shared_ptr<const FileTree> tree, std::map<std::string, int> faults)
      : tree_(std::move(tree)), faults_(std::move(faults)) {}

  std::expected<std::string_view, SystemError> readInto(const char* path,
                                                        std::span<char> buffer) const override {
    const auto fault = faults_.find(path);
    return fault == faults_.end() ? tree_->readInto(path, buffer)
                                  : std::unexpected(SystemError{fault->second});
  }

  std::expected<std::vector<std::string>, SystemError> list(const std::string& path) const override {
    const auto fault = faults_.find(path);
    return fault == faults_.end() ? tree_->list(path) : std::unexpected(SystemError{fault->second});
  }

  std::string displayPath(const std::string& path) const override { return tree_->displayPath(path); }

  /// From now on `path` fails with `code`; 0 lets it be read again.
  void setFault(const std::string& path, int code) {
    if (code == 0) {
      faults_.erase(path);
    } else {
      faults_[path] = code;
    }
  }

 private:
  std::shared_ptr<const FileTree> tree_;
  std::map<std::string, int> faults_;
};

/// The sys folder of an unpacked tree, with faults.
[[nodiscard]] inline std::shared_ptr<FaultyTree> faultySys(const UnpackedTree& tree,
                                                           std::map<std::string, int> faults = {}) {
  return std::make_shared<FaultyTree>(directoryTree(tree.path("sys")), std::move(faults));
}

}  // namespace quellin::testing_support
