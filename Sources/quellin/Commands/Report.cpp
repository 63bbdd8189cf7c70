#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/ReportDocument.h"
#include "quellin/Presentation/ReportPage.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/NewFile.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Version.h"

namespace quellin::cli {
namespace {

std::string_view requirePage(const Options& options) {
  const auto page = builtReportPage();
  if (page) return *page;
  throw Failure{ExitStatus::failed,
                "this quellin was built without the page for reports: " + std::string(page.error()) + ". " +
                    hintAt("export " + options.word, options) + " writes the same samples as text."};
}

std::string reportData(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session,
                       const Options& options) {
  ReportDocument document;
  document.appVersion = version;
  document.createdAt = systemWallClock().now();
  document.analysis = analyseSession(store, session);
  auto data = encodeJSON(document);
  if (data) return *std::move(data);
  throw Failure{ExitStatus::failed, "the session has no JSON form: " + data.error().path + " " +
                                        data.error().reason + ". " + hintAt("show " + options.word, options) +
                                        " shows it."};
}

}  // namespace

ExitStatus reportSession(const Invocation& invocation) {
  const Options& options = invocation.options;
  const std::string_view page = requirePage(options);
  SlowWork work{invocation, "drawing up the report"};
  const auto store = openRecordedStore(options);
  const auto session = findSession(*store, options);
  const std::string path = options.output.value_or("quellin-" + shortID(*session) + ".html");
  NewFile file{path, options.force};
  writeReportPage(page, session->title(), reportData(*store, session, options),
                  [&](std::string_view text) { file.write(text); });
  file.publish();
  work.end();
  invocation.talk.say("wrote the report of session " + shortID(*session) + " to " + path +
                      "; any browser shows it.");
  return ExitStatus::ok;
}

}  // namespace quellin::cli
