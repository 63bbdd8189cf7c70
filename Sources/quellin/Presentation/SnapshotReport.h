#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Support/Clock.h"
#include "quellin/Presentation/Figure.h"

namespace quellin::cli {

/// Everything that was read once.
struct SnapshotReport {
  std::string source;  ///< what was read, as the command line names it
  Instant timestamp;
  std::vector<Figure> figures;
  std::optional<std::vector<ProcessActivityInfo>> processes;  ///< absent when nobody asked

  static constexpr auto fields() {
    return std::tuple{
        Field{"source", &SnapshotReport::source}, Field{"timestamp", &SnapshotReport::timestamp},
        Field{"figures", &SnapshotReport::figures}, Field{"processes", &SnapshotReport::processes}};
  }
};

/// The report as lines of at most `width` columns; `name` is what was read, in words.
[[nodiscard]] std::string snapshotText(const SnapshotReport& report, const std::string& name,
                                       std::optional<std::size_t> width);

}  // namespace quellin::cli
