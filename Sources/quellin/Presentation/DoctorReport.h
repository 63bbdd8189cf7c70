#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Platform/PlatformSources.h"
#include "quellin/Storage/StoreHealth.h"
#include "quellin/Terminal/Terminal.h"

namespace quellin::cli {

/// What can be measured, and how the installed tool and the session store are.
struct DoctorReport {
  std::string source;  ///< what was looked at, as the command line names it
  std::vector<SourceDiagnosis> sources;
  std::optional<HelperStatus> tool;  ///< absent where another machine is looked at
  StoreHealth store;

  static constexpr auto fields() {
    return std::tuple{Field{"source", &DoctorReport::source}, Field{"sources", &DoctorReport::sources},
                      Field{"tool", &DoctorReport::tool}, Field{"store", &DoctorReport::store}};
  }
};

/// How much is said of each source, of the tool and of the store.
enum class DoctorDetail { full, brief };

/// The report as lines of text for `terminal`; `name` is what was looked at, in words.
[[nodiscard]] std::string doctorText(const DoctorReport& report, const std::string& name, DoctorDetail detail,
                                     const Terminal& terminal);

}  // namespace quellin::cli
