#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Sessions/Storage/BlobCodec.h"
#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// The blobs of one session in a database, with the references that they are written against. Must not
/// outlive the database.
class SessionBlobs {
 public:
  SessionBlobs(Database& database, std::int64_t session) : database_(database), session_(session) {}

  [[nodiscard]] std::int64_t session() const { return session_; }

  /// Writes the blobs of a new sample; may write references too. When the transaction around it is undone,
  /// this object knows references that are not there: make a new one.
  void insert(std::int64_t key, const SampleBlobs& blobs);

  /// Writes the blobs of a stored sample anew, as `insert` does.
  void update(std::int64_t key, const SampleBlobs& blobs);

  /// The blobs of a stored sample; an unreadable one is empty, and so is the snapshot of a sample that is not
  /// there.
  [[nodiscard]] SampleBlobs read(std::int64_t key);

 private:
  [[nodiscard]] std::string encode(const BlobIdentity& identity, std::string_view blob);
  [[nodiscard]] std::optional<std::string> encode(const BlobIdentity& identity,
                                                  const std::optional<std::string>& blob);
  [[nodiscard]] std::optional<std::string> decode(const BlobIdentity& identity, std::string_view stored);
  void write(std::string_view statement, std::int64_t key, const SampleBlobs& blobs);
  void loadReferences();
  void insertReference(BlobRole role, std::string_view blob);

  Database& database_;
  std::int64_t session_;
  BlobCodec codec_;
};

}  // namespace quellin
