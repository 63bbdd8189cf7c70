#include "quellin/Presentation/DoctorReport.h"

#include <algorithm>
#include <string_view>

#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

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

// Puts the lines together.
class Writer {
 public:
  Writer(DoctorDetail detail, const Terminal& terminal)
      : terminal_(terminal), isBrief_(detail == DoctorDetail::brief) {}

  [[nodiscard]] std::string write(const DoctorReport& report, const std::string& name) {
    text_ = terminal_.styled(Style::strong, "Sources of " + printable(name)) + "\n";
    for (const SourceDiagnosis& source : report.sources) addSource(source);
    text_ += "\n";
    if (report.tool) addTool(*report.tool);
    addStore(report.store);
    return text_;
  }

 private:
  void addHeading(std::string_view name, Style style, std::string_view verdict) {
    std::string padded{name};
    padded.resize(std::max<std::size_t>(padded.size(), 20), ' ');
    text_ += padded + "  " + terminal_.styled(style, verdict) + "\n";
  }

  void addDetail(const std::string& text) { text_ += wrapped(printable(text), "    ", terminal_.width); }

  void addSource(const SourceDiagnosis& source) {
    addHeading(source.source, styleOf(source.availability), rawValue(source.availability));
    const bool isFine = source.availability == SourceAvailability::available;
    if (!isBrief_) addDetail(source.reason + (source.path ? " [" + *source.path + "]" : ""));
    if (source.remedy && (!isBrief_ || !isFine)) addDetail("What would help: " + *source.remedy);
  }

  void addTool(const HelperStatus& status) {
    addHeading("Installed tool", status.isUsable() ? Style::good : Style::plain,
               status.isUsable() ? "usable" : "not usable");
    if (!isBrief_) addDetail(helperText(status));
  }

  void addStore(const StoreHealth& store) {
    addHeading("Session store", styleOf(store.state), verdictOn(store.state));
    if (store.state == StoreState::missing) {
      return addDetail(store.path + " is made by the first recording into it.");
    }
    const bool isCounted = store.isWhole || store.sessions > 0;
    if (isCounted) {
      addDetail(store.path + ": " + byteText(static_cast<double>(store.bytes)) + ", sessions: " +
                whole(store.sessions) + (isBrief_ ? "" : ", samples: " + whole(store.samples)));
    }
    if (store.problem) addDetail(*store.problem);
  }

  const Terminal& terminal_;
  bool isBrief_;
  std::string text_;
};

}  // namespace

std::string doctorText(const DoctorReport& report, const std::string& name, DoctorDetail detail,
                       const Terminal& terminal) {
  return Writer{detail, terminal}.write(report, name);
}

}  // namespace quellin::cli
