#pragma once

#include <cstddef>
#include <expected>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// Owner of one open file descriptor; closes it at the end of its life. Move-only. Several threads may read
/// one, as long as none changes it.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  /// Takes over `descriptor`; a negative number owns nothing.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { reset(); }

  /// The descriptor, or -1 when nothing is owned.
  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] explicit operator bool() const { return descriptor_ >= 0; }  ///< whether one is owned

  /// Closes the descriptor now. An error of the close is not reported: the number is free either way.
  void reset();

 private:
  int descriptor_ = -1;
};

/// A pipe; both ends are closed on exec and numbered 3 or higher, so neither stands for a standard stream.
struct Pipe {
  FileDescriptor readEnd;   ///< at its end once every copy of the other is closed
  FileDescriptor writeEnd;  ///< writing after the reader is gone raises SIGPIPE

  [[nodiscard]] static std::expected<Pipe, SystemError> open();  ///< a new pipe, or the error of pipe(2)
};

/// Opens `path` with `flags` as open(2) takes them; closed on exec and numbered 3 or higher. `mode` is that
/// of a file which is created.
[[nodiscard]] std::expected<FileDescriptor, SystemError> openDescriptor(const std::string& path, int flags,
                                                                        unsigned mode = 0);

/// Holds every standard stream that came closed with /dev/null, opened the wrong way round: no file opened
/// later can get the stream's number and with it the stream's text, and using the stream fails as it does
/// when closed. Returns the error that stopped it; the process should then do nothing more. To be called
/// before there is a second thread.
[[nodiscard]] std::expected<void, SystemError> occupyClosedStreams();

/// What a single read came upon.
enum class ReadStep {
  bytes,       ///< some bytes
  nothingYet,  ///< none now, perhaps some later; of non-blocking descriptors only
  end          ///< the end, or an error
};

/// Reads once and appends what comes to `bytes`, of which no more than `limit` are kept: the rest is dropped,
/// so that a writer is never stalled. An interrupted read is resumed.
[[nodiscard]] ReadStep readOnce(int descriptor, std::string& bytes,
                                std::size_t limit = std::numeric_limits<std::size_t>::max());

/// Reads to the end of the file or pipe and returns the bytes. Bytes beyond `limit` are read and dropped, so
/// that a writer is never stalled. An interrupted read is resumed; any other read error ends the reading.
[[nodiscard]] std::string readToEnd(int descriptor,
                                    std::size_t limit = std::numeric_limits<std::size_t>::max());

/// Writes all of `bytes`, continuing after interruptions and partial writes, and waits where a non-blocking
/// descriptor has no room. Returns the error that stopped it. The process must ignore SIGPIPE, or a pipe
/// without a reader ends it.
[[nodiscard]] std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes);

}  // namespace quellin
