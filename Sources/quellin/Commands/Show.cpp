#include "QuellinCore/Sessions/SessionReport.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/SessionText.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {

ExitStatus showSession(const Invocation& invocation) {
  SlowWork work{invocation, "summing up the session"};
  const auto store = openRecordedStore(invocation.options);
  const SessionReport report = store->report(findSession(*store, invocation.options));
  work.end();
  if (invocation.options.json) {
    writeJSON(invocation.out, report);
  } else {
    invocation.out.write(sessionText(report, invocation.outTerminal));
  }
  return ExitStatus::ok;
}

}  // namespace quellin::cli
