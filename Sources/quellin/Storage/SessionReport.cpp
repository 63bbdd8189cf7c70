#include "quellin/Storage/SessionReport.h"

namespace quellin::cli {

SessionReport sessionReport(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session) {
  return {.session = PowerSessionMetadataDTO{*session},
          .summary = store.summary(session),
          .coverage = store.coverage(session),
          .recorderCost = store.cost(*session)};
}

}  // namespace quellin::cli
