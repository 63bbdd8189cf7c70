#include "quellin/Terminal/Output.h"

#include <cerrno>
#include <cstddef>
#include <tuple>
#include <utility>

#include "QuellinCore/Support/FileDescriptor.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

constexpr std::size_t gathered = 1 << 16;

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
  const auto written = writeAll(descriptor_, text);
  if (written) return;
  if (written.error().code == EPIPE) throw ReaderGone{};
  const bool isClosed = written.error().code == EBADF;
  throw Failure{ExitStatus::failed,
                "standard output cannot be written: " + written.error().description() + ". " +
                    (isClosed ? "It is closed; open it for writing, for example with > FILE."
                              : "Write to a place with room, for example with -o FILE or > FILE.")};
}

void Talk::say(std::string_view text) const { raw("quellin: " + std::string{text} + "\n"); }

void Talk::raw(std::string_view text) const { std::ignore = writeAll(descriptor_, text); }

}  // namespace quellin::cli
