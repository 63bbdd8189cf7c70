#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"

namespace quellin::cli {

/// The data of a report, as they are embedded in its page.
struct ReportDocument {
  std::string format = "quellin-report";
  std::int64_t majorVersion = 1;
  std::string appVersion;
  Instant createdAt;
  SessionAnalysis analysis;

  static constexpr auto fields() {
    return std::tuple{
        Field{"format", &ReportDocument::format}, Field{"majorVersion", &ReportDocument::majorVersion},
        Field{"appVersion", &ReportDocument::appVersion}, Field{"createdAt", &ReportDocument::createdAt},
        Field{"analysis", &ReportDocument::analysis}};
  }
};

}  // namespace quellin::cli
