#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "QuellinCore/Sessions/ModelContainer.h"
#include "QuellinCore/Sessions/ModelOwner.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionSample.h"
#include "QuellinCore/Sessions/RecorderCost.h"
#include "QuellinCore/Sessions/SampleFacts.h"
#include "QuellinCore/Sessions/StoreError.h"
#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {

class SessionBlobs;
class Transaction;
struct SessionRow;

/// The unit of work over one container: it knows each stored model as one object while anybody holds it,
/// gathers what was inserted, changed and deleted, and writes it at `save`. What a failed save could not
/// write stays gathered for the next one. Every operation throws `StoreError` and must be called on the main
/// executor. Made with std::make_shared.
class ModelContext final : public ModelOwner, public std::enable_shared_from_this<ModelContext> {
 public:
  /// Over an open container, for use on `executor` alone.
  ModelContext(std::shared_ptr<ModelContainer> container, std::shared_ptr<const MainExecutor> executor);
  ~ModelContext() override;
  ModelContext(const ModelContext&) = delete;
  ModelContext& operator=(const ModelContext&) = delete;
  ModelContext(ModelContext&&) = delete;
  ModelContext& operator=(ModelContext&&) = delete;

  /// Takes a new model in; it is written at the next save. A sample's session must be one of this context.
  /// `facts` must be those of the sample's blobs.
  void insert(const std::shared_ptr<PowerSession>& session);
  void insert(const std::shared_ptr<PowerSessionSample>& sample,
              std::optional<SampleFacts> facts = std::nullopt);  ///< written at the next save

  /// Adds to what recording a session of this context has cost; written at the next save.
  void addCost(const std::shared_ptr<PowerSession>& session, const RecorderCost& cost);

  /// Deletes a session and its samples at the next save.
  void remove(const std::shared_ptr<PowerSession>& session);

  /// True when something is not saved.
  [[nodiscard]] bool hasChanges() const;

  /// Writes everything that is not saved, or throws and writes nothing. Of the many samples that wait after
  /// a long time without room on the disk, the oldest may have been written when it throws.
  void save();

  /// All sessions, those not saved among them, by `startedAt`, newest first; of equal starts the one
  /// stored last.
  [[nodiscard]] std::vector<std::shared_ptr<PowerSession>> sessions();

  /// Takes over what other processes have made of a session; false when it is no longer in the store. Looks
  /// at no other session.
  [[nodiscard]] bool refresh(const std::shared_ptr<PowerSession>& session);

  /// What `find` picks out of `sessions()`; when it picks nothing, the session that `make` makes, saved
  /// together with everything else. No other process can write in between. When it throws, the session that
  /// was made is forgotten.
  using Find =
      std::function<std::shared_ptr<PowerSession>(const std::vector<std::shared_ptr<PowerSession>>&)>;
  using Make = std::function<std::shared_ptr<PowerSession>()>;  ///< never null; called at most once
  std::shared_ptr<PowerSession> findOrInsert(const Find& find, const Make& make);  ///< the rule: see `Find`

  /// The key under which a session is stored; 0 while it is not.
  [[nodiscard]] static std::int64_t keyOf(const PowerSession& session);

  /// The blobs of the session with this key.
  [[nodiscard]] SessionBlobs& blobsOfSession(std::int64_t key);

  void modelChanged(const std::shared_ptr<PowerSession>& session) override;
  void modelChanged(const std::shared_ptr<PowerSessionSample>& sample) override;  ///< for the next save
  [[nodiscard]] std::vector<std::shared_ptr<PowerSessionSample>> samplesOf(
      const PowerSession& session) override;
  [[nodiscard]] SampleBlobs blobsOf(const PowerSessionSample& sample) override;

 private:
  struct NewSample {
    std::shared_ptr<PowerSessionSample> sample;
    std::optional<SampleFacts> facts;
  };
  template <class Model>
  using Keyed = std::vector<std::pair<std::shared_ptr<Model>, std::int64_t>>;
  struct Written {
    Keyed<PowerSession> sessions;
    Keyed<PowerSessionSample> samples;
  };
  [[nodiscard]] Database& database() { return container_->database(); }
  [[nodiscard]] Written write(std::size_t mostSamples);
  [[nodiscard]] static std::int64_t keyIn(const Written& written,
                                          const std::shared_ptr<PowerSession>& session);
  void writeNewSamples(std::size_t mostSamples, Written& written);
  void settle(const Written& written);
  void settleChanges();
  void commit(Transaction& transaction, std::size_t mostSamples = std::numeric_limits<std::size_t>::max());
  void forgetLostSessions();
  [[nodiscard]] bool isBeingDeleted(const std::shared_ptr<PowerSession>& session) const;
  [[nodiscard]] StoreError sessionGone() const;
  void markDeleted(const std::shared_ptr<PowerSession>& session);

  using Sessions = std::vector<std::shared_ptr<PowerSession>>;
  [[nodiscard]] Sessions fetch(Sessions& changedElsewhere);
  [[nodiscard]] std::shared_ptr<PowerSession> identify(const SessionRow& row, Sessions& changedElsewhere);
  [[nodiscard]] std::shared_ptr<PowerSessionSample> identify(std::int64_t key, const SampleColumns& columns,
                                                             const std::shared_ptr<PowerSession>& session);
  void sweepIdentities();

  static constexpr std::size_t fewestToSweep = 256;

  std::shared_ptr<ModelContainer> container_;
  std::shared_ptr<const MainExecutor> executor_;
  std::unordered_map<std::int64_t, std::weak_ptr<PowerSession>> sessions_;
  std::unordered_map<std::int64_t, std::weak_ptr<PowerSessionSample>> samples_;
  std::size_t sweepAt_ = fewestToSweep;
  Sessions newSessions_;
  Sessions changedSessions_;
  Sessions deletedSessions_;
  Sessions lostSessions_;  // found to be deleted by another process
  std::vector<std::pair<std::shared_ptr<PowerSession>, RecorderCost>> newCosts_;
  std::vector<NewSample> newSamples_;
  std::vector<std::shared_ptr<PowerSessionSample>> changedSamples_;
  std::vector<std::unique_ptr<SessionBlobs>> blobs_;  // of the sessions used last
};

}  // namespace quellin
