#include <expected>
#include <filesystem>
#include <system_error>
#include <type_traits>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceCapture.h"
#include "QuellinCore/Platform/Recorded/TraceWriter.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Progress/LiveLine.h"
#include "quellin/Storage/NewFile.h"

namespace quellin::cli {
namespace {

template <class T>
T orFail(std::expected<T, TraceError> result) {
  if (!result) throw Failure{ExitStatus::failed, result.error().message()};
  if constexpr (!std::is_void_v<T>) return *std::move(result);
}

TraceWriter create(const Options& options, const TraceHeader& header) {
  auto writer = TraceWriter::create(*options.output, header,
                                    options.force ? ExistingFile::replaced : ExistingFile::refused);
  std::error_code unknown;
  if (!writer && !options.force && std::filesystem::exists(*options.output, unknown)) {
    throw alreadyThere(*options.output);
  }
  return orFail(std::move(writer));
}

// A trace is read while it is played.
void refuseToReplaceItsSource(const Options& options) {
  std::error_code absent;
  if (std::filesystem::equivalent(options.source, *options.output, absent)) {
    throw Failure{ExitStatus::usage,
                  *options.output + ": this is the very trace that is played. Choose another name."};
  }
}

}  // namespace

ExitStatus capture(const Invocation& invocation) {
  const Options& options = invocation.options;
  refuseToReplaceItsSource(options);
  const MeasuredHost host = MeasuredHost::open(options);
  TraceWriter writer = create(options, traceHeader(host.sources, *host.wallClock));
  LiveLine live{invocation};
  Loop loop;
  int ticks = 0;
  Ticker ticker{loop, host, options.interval, options.duration};
  ticker.run([&](const std::function<void()>& done) {
    orFail(writer.write(captureTick(host.sources, *host.wallClock, *host.monotonicClock)));
    ++ticks;
    live.show(counted(ticks, "tick") + ", " + byteText(static_cast<double>(writer.bytesWritten())));
    done();
  });
  live.end();
  invocation.talk.say(*options.output + ": " + counted(ticks, "tick") + ", " +
                      byteText(static_cast<double>(writer.bytesWritten())) + ". Replay them with --source.");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
