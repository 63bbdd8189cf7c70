// How what was gathered is written: in portions, each of them whole or not at all.
#include <algorithm>
#include <iterator>
#include <span>

#include "QuellinCore/Sessions/ModelContext.h"
#include "QuellinCore/Sessions/Storage/CostRows.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SessionBlobs.h"
#include "QuellinCore/Sessions/Storage/SessionRows.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"

namespace quellin {

void ModelContext::save() {
  // While the disk is full, every new sample tries again: no attempt may cost more than a few samples do.
  constexpr std::size_t samplesAtOnce = 64;
  requireCurrent(*executor_);
  if (!hasChanges()) return;
  try {
    while (newSamples_.size() > samplesAtOnce) {
      Transaction portion(database());
      commit(portion, samplesAtOnce);
    }
    Transaction transaction(database());
    commit(transaction);
  } catch (...) {
    forgetLostSessions();
    throw;
  }
}

// What belongs to a session that is no longer in the store can never be saved. Observers hear of it, and may
// use the store, so that no transaction may be open.
void ModelContext::forgetLostSessions() {
  for (const auto& session : std::exchange(lostSessions_, {})) {
    remove(session);
    std::erase(deletedSessions_, session);
    markDeleted(session);
  }
}

void ModelContext::commit(Transaction& transaction, std::size_t mostSamples) {
  Written written;
  try {
    written = write(mostSamples);
    transaction.commit();
  } catch (...) {
    blobs_.clear();  // they may know references that are being undone
    throw;
  }
  settle(written);
}

ModelContext::Written ModelContext::write(std::size_t mostSamples) {
  Written written;
  for (const auto& session : deletedSessions_) deleteSession(database(), session->key_);
  for (const auto& session : newSessions_) {
    written.sessions.emplace_back(session, insertSession(database(), session->columns_));
  }
  for (const auto& [session, cost] : newCosts_) quellin::addCost(database(), keyIn(written, session), cost);
  writeNewSamples(mostSamples, written);
  if (written.samples.size() < newSamples_.size()) return written;
  // Last, so that no session is seen to have ended before all of its samples are there.
  for (const auto& session : changedSessions_) updateSession(database(), {session->key_, session->columns_});
  for (const auto& sample : changedSamples_) {
    if (sample->unsavedBlobs_)
      blobsOfSession(sample->session_->key_).update(sample->key_, *sample->unsavedBlobs_);
    updateSample(database(), sample->key_, sample->columns_);
  }
  return written;
}

std::int64_t ModelContext::keyIn(const Written& written, const std::shared_ptr<PowerSession>& session) {
  const auto isIt = [&](const auto& entry) { return entry.first == session; };
  const auto justInserted = std::ranges::find_if(written.sessions, isIt);
  return justInserted == written.sessions.end() ? session->key_ : justInserted->second;
}

void ModelContext::writeNewSamples(std::size_t mostSamples, Written& written) {
  const std::span<const NewSample> all(newSamples_);
  for (const auto& [sample, facts] : all.first(std::min(mostSamples, all.size()))) {
    const std::int64_t session = keyIn(written, sample->session_);
    const auto key = nextSampleKey(database(), session);
    if (!key) {
      lostSessions_.push_back(sample->session_);
      throw sessionGone();
    }
    blobsOfSession(session).insert(*key, *sample->unsavedBlobs_);
    insertSample(database(), *key, sample->columns_, facts ? storedFacts(*facts) : StoredFacts());
    written.samples.emplace_back(sample, *key);
  }
}

void ModelContext::settle(const Written& written) {
  for (const auto& [session, key] : written.sessions) {
    session->key_ = key;
    sessions_[key] = session;
  }
  for (const auto& [sample, key] : written.samples) {
    sample->key_ = key;
    sample->unsavedBlobs_.reset();
    samples_[key] = sample;
  }
  newSessions_.clear();
  newCosts_.clear();
  newSamples_.erase(newSamples_.begin(), newSamples_.begin() + std::ssize(written.samples));
  if (newSamples_.empty()) settleChanges();
  sweepIdentities();
  for (const auto& session : std::exchange(deletedSessions_, {})) markDeleted(session);
}

void ModelContext::settleChanges() {
  for (const auto& session : changedSessions_) session->isChanged_ = false;
  for (const auto& sample : changedSamples_) {
    sample->isChanged_ = false;
    sample->unsavedBlobs_.reset();
  }
  changedSessions_.clear();
  changedSamples_.clear();
}

}  // namespace quellin
