#include <filesystem>

#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Storage/NewFile.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {

ExitStatus exportSession(const Invocation& invocation) {
  const Options& options = invocation.options;
  const auto store = openStore(options);
  const auto session = findSession(*store, options.word);
  const Instant now = systemWallClock().now();
  if (!options.output) {
    store->exportJSONL(session, now, [&](std::string_view text) { invocation.out.write(text); });
    return ExitStatus::ok;
  }
  if (!options.force && std::filesystem::is_regular_file(*options.output))
    throw alreadyThere(*options.output);
  NewFile file{*options.output};
  store->exportJSONL(session, now, [&](std::string_view text) { file.write(text); });
  file.publish(options.force);
  invocation.talk.say("exported session " + shortID(*session) + " to " + *options.output + ".");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
