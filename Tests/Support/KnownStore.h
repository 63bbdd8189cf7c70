#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "Support/BracketDateText.h"
#include "Support/KnownSession.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"

namespace quellin::testing_support {

/// Records a known session, sample by sample, into a store file that others may read meanwhile.
class KnownRecording {
 public:
  /// Begins the session; `file` says how the store is reached.
  KnownRecording(const std::filesystem::path& path, KnownSession known, StoreFileOptions file = {});

  /// Records the next sample, to the end.
  void recordNext();
  /// Ends the session with the last sample.
  void stop() { recorder_.stop(known_.instantOf(samples_ - 1)); }

  /// How many samples have been offered.
  [[nodiscard]] std::int64_t samples() const { return samples_; }
  [[nodiscard]] PowerSessionRecorder& recorder() { return recorder_; }
  [[nodiscard]] const KnownSession& known() const { return known_; }

 private:
  KnownSession known_;
  ManualWallClock clock_;
  BracketDateText dateText_;
  std::shared_ptr<ThreadExecutor> executor_ = std::make_shared<ThreadExecutor>();
  std::shared_ptr<ManualBackground::Controls> background_ = std::make_shared<ManualBackground::Controls>();
  PowerSessionRecorder recorder_;
  std::int64_t samples_ = 0;
};

/// What one reading of a store by a store object of its own found.
struct KnownReading {
  std::string fault;         ///< empty when all is as it was recorded, up to the last sample found
  std::int64_t samples = 0;  ///< how many there were at least
  bool isOver = false;       ///< whether the session had ended
};

/// Opens the store at `path`, whose one session is a beginning of `known`, and reads everything in every way:
/// list, summary, coverage, check, samples, export.
[[nodiscard]] KnownReading readKnownStore(const std::filesystem::path& path, const KnownSession& known);

}  // namespace quellin::testing_support
