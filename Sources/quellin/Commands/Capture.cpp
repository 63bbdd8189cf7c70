#include <expected>
#include <type_traits>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceCapture.h"
#include "QuellinCore/Platform/Recorded/TraceWriter.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Terminal/LiveLine.h"

namespace quellin::cli {
namespace {

template <class T>
T orFail(std::expected<T, TraceError> result) {
  if (!result) throw Failure{ExitStatus::failed, result.error().message()};
  if constexpr (!std::is_void_v<T>) return *std::move(result);
}

}  // namespace

ExitStatus capture(const Invocation& invocation) {
  const Options& options = invocation.options;
  const MeasuredHost host = MeasuredHost::open(options);
  TraceWriter writer =
      orFail(TraceWriter::create(*options.output, traceHeader(host.sources, *host.wallClock),
                                 options.force ? ExistingFile::replaced : ExistingFile::refused));
  LiveLine live{invocation};
  Loop loop;
  int ticks = 0;
  Ticker ticker{loop, host, options.interval, options.duration};
  ticker.run([&](const std::function<void()>& done) {
    orFail(writer.write(captureTick(host.sources, *host.wallClock, *host.monotonicClock)));
    ++ticks;
    live.show(whole(ticks) + " ticks, " + byteText(static_cast<double>(writer.bytesWritten())));
    done();
  });
  live.end();
  invocation.talk.say(*options.output + ": " + whole(ticks) + " ticks, " +
                      byteText(static_cast<double>(writer.bytesWritten())) + ". Replay them with --source.");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
