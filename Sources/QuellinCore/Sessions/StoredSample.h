#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "QuellinCore/Sessions/PowerSamplePoint.h"
#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Sessions/SampleFacts.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"

namespace quellin {

class PowerSession;
class PowerSessionSample;
class PowerSessionStore;

/// A stored sample as summaries and exports look at it, without an object in the store's context. Valid only
/// during the call that it is handed to.
struct StoredSample {
  const SampleColumns& columns;        ///< valid during the call only
  std::optional<SampleFacts> facts;    ///< what the blobs say; no value when they must be decoded
  std::function<SampleBlobs()> blobs;  ///< reads the blobs; may throw `StoreError`
};

/// What is done with each sample of a session.
using SampleVisitor = std::function<void(const StoredSample&)>;

/// Shows all samples of a session to `visit` by timestamp, equal ones in the order stored, those that a
/// failed save left unsaved among them. Damaged rows are left out. Takes constant memory unless something is
/// unsaved. Throws `StoreError` when the store cannot be read. `visit` must not use the store.
void visitSamples(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session,
                  const SampleVisitor& visit);

/// `sample` as a visitor would see it, its blobs empty when the store cannot be read.
[[nodiscard]] StoredSample storedSample(const PowerSessionSample& sample);

/// The point of a stored sample: as its snapshot says, or, when that cannot be decoded, as far as its columns
/// tell.
[[nodiscard]] PowerSamplePoint powerPoint(const StoredSample& sample, JSONDecoder& decoder);

/// What a sample says about processes.
struct ProcessData {
  std::vector<Contribution> contributions;    ///< of pro telemetry and process activity alike
  std::optional<Instant> telemetrySampledAt;  ///< of pro telemetry that was available

  bool operator==(const ProcessData&) const = default;
};

/// The process data of a sample, from its facts where it has them; what cannot be decoded is as if it were
/// not there.
[[nodiscard]] ProcessData processData(const StoredSample& sample, JSONDecoder& decoder);

}  // namespace quellin
