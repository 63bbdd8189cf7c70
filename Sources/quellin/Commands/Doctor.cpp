#include <algorithm>
#include <string_view>
#include <tuple>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Storage/StoreHealth.h"
#include "quellin/Terminal/SlowWork.h"

namespace quellin::cli {
namespace {

struct DoctorReport {
  std::string source;
  std::vector<SourceDiagnosis> sources;
  std::optional<HelperStatus> tool;  ///< absent where another machine is looked at
  StoreHealth store;

  static constexpr auto fields() {
    return std::tuple{Field{"source", &DoctorReport::source}, Field{"sources", &DoctorReport::sources},
                      Field{"tool", &DoctorReport::tool}, Field{"store", &DoctorReport::store}};
  }
};

Style styleOf(SourceAvailability availability) {
  switch (availability) {
    case SourceAvailability::available:
      return Style::good;
    case SourceAvailability::absent:
      return Style::plain;
    case SourceAvailability::notPermitted:
      return Style::warning;
    case SourceAvailability::failed:
      return Style::bad;
  }
  return Style::plain;
}

Style styleOf(StoreState state) {
  if (state == StoreState::missing) return Style::plain;
  return state == StoreState::whole ? Style::good : Style::bad;
}

std::string_view verdictOn(StoreState state) {
  switch (state) {
    case StoreState::missing:
      return "not made yet";
    case StoreState::whole:
      return "whole";
    case StoreState::damaged:
      return "damaged";
    case StoreState::notAStore:
      return "something else";
    case StoreState::tooNew:
      return "of a later version";
    case StoreState::locked:
      return "in use";
    case StoreState::unusable:
      return "not usable";
  }
  return "";
}

class Presentation {
 public:
  Presentation(const DoctorReport& report, const Invocation& invocation)
      : report_(report),
        name_(measuredName(invocation.options)),
        out_(invocation.out),
        terminal_(invocation.outTerminal),
        brief_(invocation.options.brief) {}

  void show() const {
    out_.line(terminal_.styled(Style::strong, "Sources of " + printable(name_)));
    for (const SourceDiagnosis& source : report_.sources) showSource(source);
    out_.line("");
    if (report_.tool) showTool(*report_.tool);
    showStore(report_.store);
  }

 private:
  void heading(std::string_view name, Style style, std::string_view verdict) const {
    std::string padded{name};
    padded.resize(std::max<std::size_t>(padded.size(), 20), ' ');
    out_.line(padded + "  " + terminal_.styled(style, verdict));
  }

  void detail(const std::string& text) const {
    out_.write(wrapped(printable(text), "    ", terminal_.width));
  }

  void showSource(const SourceDiagnosis& source) const {
    heading(source.source, styleOf(source.availability), rawValue(source.availability));
    const bool isFine = source.availability == SourceAvailability::available;
    if (!brief_) detail(source.reason + (source.path ? " [" + *source.path + "]" : ""));
    if (source.remedy && (!brief_ || !isFine)) detail("What would help: " + *source.remedy);
  }

  void showTool(const HelperStatus& status) const {
    heading("Installed tool", status.isUsable() ? Style::good : Style::plain,
            status.isUsable() ? "usable" : "not usable");
    if (!brief_) detail(helperText(status));
  }

  void showStore(const StoreHealth& store) const {
    heading("Session store", styleOf(store.state), verdictOn(store.state));
    if (store.state == StoreState::missing) {
      return detail(store.path + " is made by the first 'quellin record'.");
    }
    const bool isCounted = store.isWhole || store.sessions > 0;
    if (isCounted) {
      detail(store.path + ": " + byteText(static_cast<double>(store.bytes)) +
             ", sessions: " + whole(store.sessions) + (brief_ ? "" : ", samples: " + whole(store.samples)));
    }
    if (store.problem) detail(*store.problem);
  }

  const DoctorReport& report_;
  std::string name_;
  Output& out_;
  const Terminal& terminal_;
  bool brief_;
};

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
    Presentation{report, invocation}.show();
  }
  if (!anyAvailable(report.sources)) return ExitStatus::nothingMeasurable;
  return report.store.isWhole ? ExitStatus::ok : ExitStatus::negative;
}

}  // namespace quellin::cli
