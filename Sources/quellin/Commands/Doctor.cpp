#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/DoctorReport.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Progress/SlowWork.h"

namespace quellin::cli {
namespace {

StoreHealth examine(const Invocation& invocation) {
  SlowWork work{invocation, "opening the store"};
  return examineStore(invocation.options, invocation.options.brief ? Examination::brief : Examination::full,
                      [&](std::int64_t read, std::int64_t all) {
                        work.now("reading the store: " + whole(read) + " of " + counted(all, "session"));
                      });
}

}  // namespace

ExitStatus doctor(const Invocation& invocation) {
  const MeasuredHost host = MeasuredHost::open(invocation.options);
  DoctorReport report{.source = invocation.options.source,
                      .sources = host.sources.diagnose(),
                      .tool = std::nullopt,
                      .store = examine(invocation)};
  if (host.isNative) report.tool = invocation.tool.helperStatus();
  if (invocation.options.json) {
    writeJSON(invocation.out, report);
  } else {
    invocation.out.write(doctorText(report, measuredName(invocation.options),
                                    invocation.options.brief ? DoctorDetail::brief : DoctorDetail::full,
                                    invocation.outTerminal));
  }
  if (!anyAvailable(report.sources)) return ExitStatus::nothingMeasurable;
  return report.store.isWhole ? ExitStatus::ok : ExitStatus::negative;
}

}  // namespace quellin::cli
