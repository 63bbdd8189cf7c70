#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::cli {

/// Held by whoever records into a store, so that there is one at a time. It is a lock on a file of its own
/// beside the store, with "-recorder" behind its name, which nobody who reads a session looks at. The system
/// gives it back when the process ends, however that ends. A recorder that is killed, or fails to end its
/// session, leaves the file, and with it a word to the next one. It can be moved into its place only.
class RecorderLock {
 public:
  /// What others can see of it.
  struct Sight {
    bool isHeld = false;              ///< whether somebody records
    std::optional<std::string> word;  ///< what the recorder that has or had it left there
  };

  /// Looks at the lock of the store at `store` without taking it. What cannot be seen is not there.
  [[nodiscard]] static Sight look(const std::filesystem::path& store);

  /// Takes the lock of the store at `store`; no value while somebody else has it, in this process or another.
  /// Throws `Failure` when the file can be neither opened nor made, and when its name is that of a link.
  [[nodiscard]] static std::optional<RecorderLock> take(const std::filesystem::path& store);

  RecorderLock(RecorderLock&&) noexcept = default;
  RecorderLock& operator=(RecorderLock&&) = delete;
  RecorderLock(const RecorderLock&) = delete;
  RecorderLock& operator=(const RecorderLock&) = delete;
  /// Removes the file, too, unless there is a word in it: that of the recorder before, or the one left here.
  ~RecorderLock();

  /// What the recorder before has left; no value when its session ended, and when it is not one whole line.
  [[nodiscard]] const std::optional<std::string>& wordBefore() const { return wordBefore_; }

  /// Leaves `word`, one line, to the next recorder until it is forgotten; where there is no room for it,
  /// nothing. The word before is gone. Throws `Failure` when the file cannot be changed.
  void leaveWord(const std::string& word);

  /// Leaves no word after all. For when no session can be left that somebody might go on with.
  void forgetWord() { hasWord_ = false; }

 private:
  RecorderLock(std::filesystem::path path, FileDescriptor file);

  std::filesystem::path path_;
  FileDescriptor file_;
  std::optional<std::string> wordBefore_;
  bool hasWord_;
};

}  // namespace quellin::cli
