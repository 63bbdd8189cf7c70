#include "QuellinCore/Sessions/Storage/SessionBlobs.h"

#include <utility>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"

namespace quellin {
namespace {

constexpr std::uint8_t allSiblings = 3;

// Which blobs lie beside a snapshot.
constexpr std::uint8_t siblingsOf(bool hasActivity, bool hasTelemetry) {
  return static_cast<std::uint8_t>((hasActivity ? 1 : 0) | (hasTelemetry ? 2 : 0));
}

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
    const std::int64_t key = query.integer(0);
    // A page in the place of another one brings the references of another session.
    if (key < keys.first + codec_.nextReference()) continue;
    const auto number = static_cast<std::uint32_t>(key - keys.first);
    const std::string_view data = query.bytes(1);
    const BlobIdentity identity{.key = key,
                                .role = data.empty() ? BlobRole{} : static_cast<BlobRole>(data.front())};
    if (auto blob = codec_.decode(identity, data.empty() ? data : data.substr(1))) {
      codec_.addReference(number, identity.role, *std::move(blob));
    } else {
      codec_.skipReference(number);
    }
  }
}

void SessionBlobs::insertReference(BlobRole role, std::string_view blob) {
  const std::uint32_t number = codec_.nextReference();
  const std::int64_t key = keysOf(session_).first + number;
  const std::string data = static_cast<char>(role) + codec_.encode({.key = key, .role = role}, blob);
  Query(database_, "INSERT INTO BlobReference VALUES (?, ?)").bind(key).bindBytes(data).run();
  codec_.addReference(number, role, std::string(blob));
}

std::string SessionBlobs::encode(const BlobIdentity& identity, std::string_view blob) {
  if (auto stored = codec_.encodeAsNumbers(identity, blob)) return *std::move(stored);
  // Another process may have added references of its own.
  loadReferences();
  if (auto stored = codec_.encodeAsNumbers(identity, blob)) return *std::move(stored);
  if (codec_.hasRoomFor(identity.role, blob)) {
    insertReference(identity.role, blob);
    if (auto stored = codec_.encodeAsNumbers(identity, blob)) return *std::move(stored);
  }
  return codec_.encode(identity, blob);
}

std::optional<std::string> SessionBlobs::encode(const BlobIdentity& identity,
                                                const std::optional<std::string>& blob) {
  if (!blob) return std::nullopt;
  return encode(identity, std::string_view(*blob));
}

void SessionBlobs::write(std::string_view statement, std::int64_t key, const SampleBlobs& blobs) {
  const auto siblings = siblingsOf(blobs.processActivityData.has_value(), blobs.proTelemetryData.has_value());
  const std::string snapshot = encode({.key = key, .role = BlobRole::snapshot, .siblings = siblings},
                                      std::string_view(blobs.snapshotData));
  const auto activity = encode({.key = key, .role = BlobRole::processActivity}, blobs.processActivityData);
  const auto telemetry = encode({.key = key, .role = BlobRole::proTelemetry}, blobs.proTelemetryData);
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

std::optional<std::string> SessionBlobs::decode(const BlobIdentity& identity, std::string_view stored) {
  if (auto blob = codec_.decode(identity, stored)) return blob;
  loadReferences();
  return codec_.decode(identity, stored);
}

SampleBlobs SessionBlobs::read(std::int64_t key) {
  Query query(database_,
              "SELECT snapshotData, processActivityData, proTelemetryData FROM SampleBlobs WHERE key = ?");
  query.bind(key);
  SampleBlobs blobs;
  if (!query.step()) return blobs;
  const auto sibling = [&](int column, BlobRole role) -> std::optional<std::string> {
    if (query.isNull(column)) return std::nullopt;
    return decode({.key = key, .role = role}, query.bytes(column)).value_or("");
  };
  blobs.processActivityData = sibling(1, BlobRole::processActivity);
  blobs.proTelemetryData = sibling(2, BlobRole::proTelemetry);
  const std::string_view snapshot = query.bytes(0);
  const std::uint8_t present = siblingsOf(!query.isNull(1), !query.isNull(2));
  // What the snapshot's checksum says was there and is not has been lost.
  for (std::uint8_t difference = 0; difference <= allSiblings; ++difference) {
    const auto siblings = static_cast<std::uint8_t>(present ^ difference);
    auto blob = decode({.key = key, .role = BlobRole::snapshot, .siblings = siblings}, snapshot);
    if (!blob) continue;
    blobs.snapshotData = *std::move(blob);
    if ((difference & siblingsOf(true, false)) != 0) blobs.processActivityData = "";
    if ((difference & siblingsOf(false, true)) != 0) blobs.proTelemetryData = "";
    break;
  }
  return blobs;
}

}  // namespace quellin
