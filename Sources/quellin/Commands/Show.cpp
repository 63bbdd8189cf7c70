#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/SessionReport.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/SlowWork.h"

namespace quellin::cli {

ExitStatus showSession(const Invocation& invocation) {
  SlowWork work{invocation, "summing up the session"};
  const auto store = openRecordedStore(invocation.options);
  const SessionReport report = sessionReport(*store, findSession(*store, invocation.options.word));
  work.end();
  if (invocation.options.json) {
    writeJSON(invocation.out, report);
  } else {
    showReport(report, invocation);
  }
  return ExitStatus::ok;
}

}  // namespace quellin::cli
