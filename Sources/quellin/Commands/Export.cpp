#include <cstddef>
#include <filesystem>

#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Storage/NewFile.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/LiveLine.h"

namespace quellin::cli {

namespace {

// Tells how much of a long export is written.
class ExportProgress {
 public:
  explicit ExportProgress(const Invocation& invocation)
      : live_(invocation, systemMonotonicClock(), LiveLine::untilSlow),
        // A terminal that shows the export itself has no line to spare.
        isWanted_(invocation.options.output || !invocation.outTerminal.isTerminal) {}

  void add(std::size_t bytes) {
    bytes_ += bytes;
    if (!isWanted_ || bytes_ - shownBytes_ < step) return;
    shownBytes_ = bytes_;
    live_.show(byteText(static_cast<double>(bytes_)) + " exported");
  }
  void end() { live_.end(); }

 private:
  static constexpr std::size_t step = 1'000'000;

  LiveLine live_;
  bool isWanted_;
  std::size_t bytes_ = 0;
  std::size_t shownBytes_ = 0;
};

}  // namespace

ExitStatus exportSession(const Invocation& invocation) {
  const Options& options = invocation.options;
  const auto store = openRecordedStore(options);
  const auto session = findSession(*store, options.word);
  const Instant now = systemWallClock().now();
  ExportProgress progress{invocation};
  if (!options.output) {
    store->exportJSONL(session, now, [&](std::string_view text) {
      invocation.out.write(text);
      progress.add(text.size());
    });
    progress.end();
    return ExitStatus::ok;
  }
  if (!options.force && std::filesystem::is_regular_file(*options.output))
    throw alreadyThere(*options.output);
  NewFile file{*options.output};
  store->exportJSONL(session, now, [&](std::string_view text) {
    file.write(text);
    progress.add(text.size());
  });
  progress.end();
  file.publish(options.force);
  invocation.talk.say("exported session " + shortID(*session) + " to " + *options.output + ".");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
