#include "quellin/Terminal/Output.h"

#include <cerrno>
#include <cstddef>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "quellin/CommandLine/Failure.h"

namespace quellin::cli {
namespace {

constexpr std::size_t gathered = 1 << 16;

// The number of the error that stopped the writing; 0 when all was written.
int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

}  // namespace

void Output::write(std::string_view text) {
  pending_ += text;
  if (pending_.size() >= gathered) flush();
}

void Output::line(std::string_view text) {
  write(text);
  write("\n");
}

void Output::flush() {
  const std::string text = std::exchange(pending_, {});
  const int error = writeAll(descriptor_, text);
  if (error == EPIPE) throw ReaderGone{};
  if (error != 0) {
    throw Failure{ExitStatus::failed,
                  "standard output cannot be written: " + std::generic_category().message(error) +
                      ". Write to a place with room, for example with -o FILE or > FILE."};
  }
}

void Talk::say(std::string_view text) const { raw("quellin: " + std::string{text} + "\n"); }

void Talk::raw(std::string_view text) const { static_cast<void>(writeAll(descriptor_, text)); }

}  // namespace quellin::cli
