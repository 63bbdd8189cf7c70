#pragma once

#include <memory>

#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"

namespace quellin {

/// The processes of a trace; see `recordedSources`. The second snapshot of a scan begins with the first list
/// that is asked for after a process has been, or after the player's monotonic clock has moved. Any thread
/// may begin a scan; each scan belongs to one thread at a time.
class RecordedProcessSource final : public ProcessSource {
 public:
  /// `player` must not be null.
  explicit RecordedProcessSource(std::shared_ptr<const TracePlayer> player);

  [[nodiscard]] std::unique_ptr<ProcessScan> beginScan() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const TracePlayer> player_;
};

}  // namespace quellin
