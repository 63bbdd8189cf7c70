#include "quellin/Storage/NewFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quellin::cli {

Failure alreadyThere(const std::string& path) {
  return {ExitStatus::failed, path + " is there already. Add --force to replace it, or name another file."};
}

NewFile::NewFile(std::string path, bool replaces)
    : path_(std::move(path)), replaces_(replaces), temporaryPath_(path_ + ".XXXXXX") {
  std::error_code unknown;
  const auto present = std::filesystem::status(path_, unknown);
  if (std::filesystem::exists(present) && !std::filesystem::is_regular_file(present)) {
    throw Failure{ExitStatus::failed, path_ +
                                          " is no ordinary file and cannot be replaced. Name another "
                                          "file, or leave -o out and redirect the output."};
  }
  if (std::filesystem::exists(present) && !replaces_) throw alreadyThere(path_);
  file_ = FileDescriptor{mkstemp(temporaryPath_.data())};
  if (!file_) fail(errno);
  removal_.watch(temporaryPath_);
}

NewFile::~NewFile() { static_cast<void>(::unlink(temporaryPath_.c_str())); }

void NewFile::write(std::string_view text) {
  if (const auto written = writeAll(file_.get(), text); !written) fail(written.error().code);
}

void NewFile::publish() {
  if (fsync(file_.get()) != 0) fail(errno);
  // A link fails where there is a file already, even one that was made a moment ago.
  const int result = replaces_ ? std::rename(temporaryPath_.c_str(), path_.c_str())
                               : ::link(temporaryPath_.c_str(), path_.c_str());
  if (result == 0) return;
  if (errno == EEXIST) throw alreadyThere(path_);
  fail(errno);
}

void NewFile::fail(int error) const {
  throw Failure{ExitStatus::failed,
                path_ + " cannot be written: " + std::generic_category().message(error) +
                    ". Name a file in a folder that you may write to, on a disk with room."};
}

}  // namespace quellin::cli
