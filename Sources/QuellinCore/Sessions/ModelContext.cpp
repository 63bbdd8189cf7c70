#include "QuellinCore/Sessions/ModelContext.h"

#include <algorithm>

#include "QuellinCore/Sessions/SampleCursor.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/SessionBlobs.h"
#include "QuellinCore/Sessions/Storage/SessionRows.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"

namespace quellin {

ModelContext::ModelContext(std::shared_ptr<ModelContainer> container,
                           std::shared_ptr<const MainExecutor> executor)
    : container_(std::move(container)), executor_(std::move(executor)) {}

ModelContext::~ModelContext() = default;

StoreError ModelContext::sessionGone() const {
  return {StoreError::Kind::sessionGone, container_->path(), "the session has been deleted"};
}

std::int64_t ModelContext::keyOf(const PowerSession& session) { return session.key_; }

void ModelContext::insert(const std::shared_ptr<PowerSession>& session) {
  requireCurrent(*executor_);
  session->owner_ = weak_from_this();
  newSessions_.push_back(session);
}

void ModelContext::insert(const std::shared_ptr<PowerSessionSample>& sample,
                          std::optional<SampleFacts> facts) {
  requireCurrent(*executor_);
  const auto session = sample->session();
  if (!session || isBeingDeleted(session)) throw sessionGone();
  sample->owner_ = weak_from_this();
  newSamples_.push_back({sample, std::move(facts)});
  session->changed_.notify();
}

void ModelContext::addCost(const std::shared_ptr<PowerSession>& session, const RecorderCost& cost) {
  requireCurrent(*executor_);
  if (!session->isDeleted() && !isBeingDeleted(session)) newCosts_.emplace_back(session, cost);
}

void ModelContext::remove(const std::shared_ptr<PowerSession>& session) {
  requireCurrent(*executor_);
  std::erase_if(newSamples_, [&](const NewSample& entry) { return entry.sample->session_ == session; });
  std::erase_if(changedSamples_, [&](const auto& sample) { return sample->session_ == session; });
  std::erase_if(newCosts_, [&](const auto& entry) { return entry.first == session; });
  std::erase(changedSessions_, session);
  if (std::erase(newSessions_, session) > 0) return markDeleted(session);
  if (!session->isDeleted() && !isBeingDeleted(session)) deletedSessions_.push_back(session);
}

bool ModelContext::isBeingDeleted(const std::shared_ptr<PowerSession>& session) const {
  return std::ranges::find(deletedSessions_, session) != deletedSessions_.end();
}

bool ModelContext::hasChanges() const {
  return !newSessions_.empty() || !changedSessions_.empty() || !deletedSessions_.empty() ||
         !newCosts_.empty() || !newSamples_.empty() || !changedSamples_.empty();
}

void ModelContext::modelChanged(const std::shared_ptr<PowerSession>& session) {
  requireCurrent(*executor_);
  if (session->key_ == 0 || session->isChanged_ || session->isDeleted_) return;
  session->isChanged_ = true;
  changedSessions_.push_back(session);
}

void ModelContext::modelChanged(const std::shared_ptr<PowerSessionSample>& sample) {
  requireCurrent(*executor_);
  if (sample->key_ == 0) {
    const auto entry = std::ranges::find(newSamples_, sample, &NewSample::sample);
    if (entry != newSamples_.end()) entry->facts.reset();
  } else if (!sample->isChanged_ && sample->session() && !isBeingDeleted(sample->session())) {
    sample->isChanged_ = true;
    changedSamples_.push_back(sample);
  }
}

void ModelContext::markDeleted(const std::shared_ptr<PowerSession>& session) {
  sessions_.erase(session->key_);
  session->isDeleted_ = true;
  session->changed_.notify();
}

SampleBlobs ModelContext::blobsOf(const PowerSessionSample& sample) {
  requireCurrent(*executor_);
  const auto session = sample.session();
  return session ? blobsOfSession(session->key_).read(sample.key_) : SampleBlobs();
}

SessionBlobs& ModelContext::blobsOfSession(std::int64_t key) {
  constexpr std::size_t kept = 4;
  const auto found = std::ranges::find(blobs_, key, [](const auto& blobs) { return blobs->session(); });
  if (found != blobs_.end()) return **found;
  if (blobs_.size() == kept) blobs_.erase(blobs_.begin());
  return *blobs_.emplace_back(std::make_unique<SessionBlobs>(database(), key));
}

void ModelContext::sweepIdentities() {
  if (samples_.size() + sessions_.size() < sweepAt_) return;
  const auto isGone = [](const auto& entry) { return entry.second.expired(); };
  std::erase_if(samples_, isGone);
  std::erase_if(sessions_, isGone);
  sweepAt_ = std::max(fewestToSweep, 2 * (samples_.size() + sessions_.size()));
}

std::shared_ptr<PowerSession> ModelContext::identify(const SessionRow& row, Sessions& changedElsewhere) {
  std::weak_ptr<PowerSession>& known = sessions_[row.key];
  auto session = known.lock();
  if (!session) {
    session = std::make_shared<PowerSession>(row.columns);
    session->owner_ = weak_from_this();
    session->key_ = row.key;
    known = session;
  } else if (!session->isChanged_ && session->columns_ != row.columns) {
    session->columns_ = row.columns;
    changedElsewhere.push_back(session);
  }
  return session;
}

ModelContext::Sessions ModelContext::fetch(Sessions& changedElsewhere) {
  Sessions found;
  for (const SessionRow& row : readSessions(database())) {
    auto session = identify(row, changedElsewhere);
    if (!isBeingDeleted(session)) found.push_back(std::move(session));
  }
  found.insert(found.end(), newSessions_.begin(), newSessions_.end());
  std::ranges::reverse(found);  // of equal starts, the one stored last is the newest
  std::ranges::stable_sort(found, std::ranges::greater(),
                           [](const auto& session) { return session->startedAt(); });
  return found;
}

std::vector<std::shared_ptr<PowerSession>> ModelContext::sessions() {
  requireCurrent(*executor_);
  Sessions changedElsewhere;
  Sessions found = fetch(changedElsewhere);
  for (const auto& session : changedElsewhere) session->changed_.notify();
  return found;
}

bool ModelContext::refresh(const std::shared_ptr<PowerSession>& session) {
  requireCurrent(*executor_);
  if (session->isDeleted_ || isBeingDeleted(session)) return false;
  const auto row = readSession(database(), session->key_);
  if (!row) return false;
  Sessions changedElsewhere;
  static_cast<void>(identify(*row, changedElsewhere));
  if (!changedElsewhere.empty()) session->changed_.notify();
  return true;
}

std::shared_ptr<PowerSession> ModelContext::findOrInsert(const Find& find, const Make& make) {
  requireCurrent(*executor_);
  Sessions changedElsewhere;
  std::shared_ptr<PowerSession> result;
  try {
    Transaction transaction(database());
    result = find(fetch(changedElsewhere));
    if (!result) {
      result = make();
      insert(result);
      commit(transaction);
    }
  } catch (...) {
    std::erase(newSessions_, result);
    forgetLostSessions();
    throw;
  }
  for (const auto& session : changedElsewhere) session->changed_.notify();
  return result;
}

std::vector<std::shared_ptr<PowerSessionSample>> ModelContext::samplesOf(const PowerSession& session) {
  requireCurrent(*executor_);
  std::vector<std::shared_ptr<PowerSessionSample>> found;
  if (session.key_ != 0) {
    const auto owner = sessions_.at(session.key_).lock();
    SampleCursor cursor(database(), blobsOfSession(session.key_), SampleCursor::OnDamage::skip,
                        SampleCursor::Order::stored);
    while (cursor.next()) found.push_back(identify(cursor.key(), cursor.columns(), owner));
  }
  for (const NewSample& entry : newSamples_) {
    if (entry.sample->session_.get() == &session) found.push_back(entry.sample);
  }
  return found;
}

std::shared_ptr<PowerSessionSample> ModelContext::identify(std::int64_t key, const SampleColumns& columns,
                                                           const std::shared_ptr<PowerSession>& session) {
  std::weak_ptr<PowerSessionSample>& known = samples_[key];
  auto sample = known.lock();
  if (!sample) {
    sample = std::make_shared<PowerSessionSample>(columns, std::nullopt, session);
    sample->owner_ = weak_from_this();
    sample->key_ = key;
    known = sample;
  } else if (!sample->isChanged_) {
    sample->columns_ = columns;
  }
  return sample;
}

}  // namespace quellin
