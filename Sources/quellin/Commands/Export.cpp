#include <cstddef>
#include <optional>

#include "quellin/CommandLine/Command.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/NewFile.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {

namespace {

// Tells how far a long export has come.
class ExportProgress {
 public:
  explicit ExportProgress(const Invocation& invocation) {
    // A terminal that shows the export itself has no line to spare.
    if (invocation.options.output || !invocation.outTerminal.isTerminal) {
      work_.emplace(invocation, "summing up the session");
    }
  }

  void add(std::size_t bytes) {
    bytes_ += bytes;
    if (work_) work_->now(byteText(static_cast<double>(bytes_)) + " exported");
  }
  void end() { work_.reset(); }

 private:
  std::optional<SlowWork> work_;
  std::size_t bytes_ = 0;
};

}  // namespace

ExitStatus exportSession(const Invocation& invocation) {
  const Options& options = invocation.options;
  ExportProgress progress{invocation};
  const auto store = openRecordedStore(options);
  const auto session = findSession(*store, options);
  const auto exportTo = [&](auto& place) {
    store->exportJSONL(session, systemWallClock().now(), [&](std::string_view text) {
      place.write(text);
      progress.add(text.size());
    });
    progress.end();
  };
  if (!options.output) {
    exportTo(invocation.out);
    return ExitStatus::ok;
  }
  NewFile file{*options.output, options.force};
  exportTo(file);
  file.publish();
  invocation.talk.say("exported session " + shortID(*session) + " to " + *options.output + ".");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
