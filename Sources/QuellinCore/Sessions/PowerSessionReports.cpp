// The operations of the store that look at a whole session.
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/StoredSummary.h"

namespace quellin {

PowerSessionSummary PowerSessionStore::summary(const std::shared_ptr<PowerSession>& session) {
  StoredSummary result;
  JSONDecoder decoder;
  visitSamples(*this, session, [&](const StoredSample& sample) { result.ingest(sample, decoder); });
  return result.materialize(*session);
}

}  // namespace quellin
