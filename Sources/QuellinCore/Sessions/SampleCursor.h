#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Sessions/SampleFacts.h"

namespace quellin {

class Database;
class SessionBlobs;

/// Walks over the stored samples of one session without making an object of each and in constant memory. It
/// sees the samples that were stored when it was made. Throws `StoreError` when the store cannot be read. The
/// store must not be written through the same store object while a cursor lives, and the cursor must not
/// outlive it. Like its store, it is for the main executor only, hence for one thread at a time.
class SampleCursor {
 public:
  /// What to do about rows that are not what was written, or that are missing from the middle.
  enum class OnDamage {
    fail,  ///< throw a `StoreError` of kind damaged
    skip,  ///< leave them out, and count them
  };

  /// The order of the walk.
  enum class Order {
    stored,  ///< as they were appended
    time,    ///< by timestamp, equal ones as they were appended
  };
  /// Over what the store opened; callers get theirs from `PowerSessionStore::scan`.
  SampleCursor(Database& database, SessionBlobs& blobs, OnDamage onDamage, Order order);
  SampleCursor(SampleCursor&&) noexcept;
  SampleCursor& operator=(SampleCursor&&) noexcept;
  SampleCursor(const SampleCursor&) = delete;
  SampleCursor& operator=(const SampleCursor&) = delete;
  ~SampleCursor();

  /// Moves to the next sample; false when there is none.
  [[nodiscard]] bool next();

  /// The columns of the sample that the cursor stands on.
  [[nodiscard]] const SampleColumns& columns() const;
  /// Its facts: what its blobs would say, without decoding them. No value when they must be decoded.
  [[nodiscard]] std::optional<SampleFacts> facts() const;
  /// Its blobs; a damaged one is empty.
  [[nodiscard]] SampleBlobs blobs() const;
  /// Its key in the store.
  [[nodiscard]] std::int64_t key() const;

  /// How many samples were left out so far.
  [[nodiscard]] std::int64_t skipped() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quellin
