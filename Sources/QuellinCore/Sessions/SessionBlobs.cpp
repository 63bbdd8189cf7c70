#include "QuellinCore/Sessions/SessionBlobs.h"

#include <utility>

#include "QuellinCore/Sessions/Query.h"
#include "QuellinCore/Sessions/SampleRows.h"

namespace quellin {
namespace {

void bindBlob(Query& query, const std::optional<std::string>& stored) {
  if (stored) {
    query.bindBytes(*stored);
  } else {
    query.bindNull();
  }
}

}  // namespace

// A reference is stored as its role and the blob in the codec's own form.
void SessionBlobs::loadReferences() {
  const KeyRange keys = keysOf(session_);
  Query query(database_, "SELECT key, data FROM BlobReference WHERE key BETWEEN ? AND ? ORDER BY key");
  query.bind(keys.first + codec_.nextReference()).bind(keys.last);
  while (query.step()) {
    const auto number = static_cast<std::uint32_t>(query.integer(0) - keys.first);
    const std::string_view data = query.bytes(1);
    auto blob = data.empty() ? std::nullopt : codec_.decode(data.substr(1));
    const auto role = data.empty() ? BlobRole::snapshot : static_cast<BlobRole>(data.front());
    if (blob) {
      codec_.addReference(number, role, *std::move(blob));
    } else {
      codec_.skipReference(number);
    }
  }
}

void SessionBlobs::insertReference(BlobRole role, std::string_view blob) {
  const std::uint32_t number = codec_.nextReference();
  const std::string data = static_cast<char>(role) + codec_.encode(role, blob);
  Query(database_, "INSERT INTO BlobReference VALUES (?, ?)")
      .bind(keysOf(session_).first + number)
      .bindBytes(data)
      .run();
  codec_.addReference(number, role, std::string(blob));
}

std::string SessionBlobs::encode(BlobRole role, std::string_view blob) {
  if (auto stored = codec_.encodeAsNumbers(role, blob)) return *std::move(stored);
  // Another process may have added references of its own.
  loadReferences();
  if (auto stored = codec_.encodeAsNumbers(role, blob)) return *std::move(stored);
  if (codec_.hasRoomFor(role, blob)) {
    insertReference(role, blob);
    if (auto stored = codec_.encodeAsNumbers(role, blob)) return *std::move(stored);
  }
  return codec_.encode(role, blob);
}

std::optional<std::string> SessionBlobs::encode(BlobRole role, const std::optional<std::string>& blob) {
  if (!blob) return std::nullopt;
  return encode(role, std::string_view(*blob));
}

void SessionBlobs::write(std::string_view statement, std::int64_t key, const SampleBlobs& blobs) {
  const std::string snapshot = encode(BlobRole::snapshot, std::string_view(blobs.snapshotData));
  const auto activity = encode(BlobRole::processActivity, blobs.processActivityData);
  const auto telemetry = encode(BlobRole::proTelemetry, blobs.proTelemetryData);
  Query query(database_, statement);
  query.bind(key).bindBytes(snapshot);
  bindBlob(query, activity);
  bindBlob(query, telemetry);
  query.run();
}

void SessionBlobs::insert(std::int64_t key, const SampleBlobs& blobs) {
  write("INSERT INTO SampleBlobs VALUES (?1, ?2, ?3, ?4)", key, blobs);
}

void SessionBlobs::update(std::int64_t key, const SampleBlobs& blobs) {
  write(
      "UPDATE SampleBlobs SET snapshotData = ?2, processActivityData = ?3, proTelemetryData = ?4 WHERE key = "
      "?1",
      key, blobs);
}

std::optional<std::string> SessionBlobs::decode(std::string_view stored) {
  if (auto blob = codec_.decode(stored)) return blob;
  loadReferences();
  return codec_.decode(stored);
}

SampleBlobs SessionBlobs::read(std::int64_t key) {
  Query query(database_,
              "SELECT snapshotData, processActivityData, proTelemetryData FROM SampleBlobs WHERE key = ?");
  query.bind(key);
  SampleBlobs blobs;
  if (!query.step()) return blobs;
  const auto optionalBlob = [&](int column) -> std::optional<std::string> {
    if (query.isNull(column)) return std::nullopt;
    return decode(query.bytes(column)).value_or("");
  };
  blobs.snapshotData = optionalBlob(0).value_or("");
  blobs.processActivityData = optionalBlob(1);
  blobs.proTelemetryData = optionalBlob(2);
  return blobs;
}

}  // namespace quellin
