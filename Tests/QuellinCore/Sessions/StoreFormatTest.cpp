#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SessionBlobs.h"
#include "QuellinCore/Sessions/Storage/StoreFile.h"
#include "Support/Bytes.h"
#include "Support/DocumentedExample.h"

namespace quellin {
namespace {

using testing::Optional;
using testing_support::bytesOfHex;
using testing_support::hexOfBytes;

/// The stored samples that the documentation shows.
class StoreFormatTest : public testing::Test {
 protected:
  StoreFormatTest() {
    std::istringstream stream(testing_support::documentedExample("store"));
    for (std::string line; std::getline(stream, line);) {
      const std::size_t end = line.find("  ");
      values_[line.substr(0, end)] = line.substr(line.find_first_not_of(' ', end));
    }
  }

  [[nodiscard]] const std::string& documented(const std::string& name) const { return values_.at(name); }
  [[nodiscard]] std::int64_t documentedKey(const std::string& name) const {
    return std::stoll(documented(name));
  }
  [[nodiscard]] std::string bytesIn(std::string_view statement) const {
    Query query(*database, statement);
    return query.step() ? std::string(query.bytes(0)) : "";
  }

  const std::unique_ptr<Database> database = openStoreInMemory();
  SessionBlobs blobs{*database, 1};

 private:
  std::map<std::string, std::string> values_;
};

SampleFacts documentedFacts() {
  return {.powerSourceKind = "batteryDischarge",
          .powerSourceLabel = "Battery draw",
          .contributions = {{"clang", true, 120.5}},
          .telemetrySampledAt = instantAt(1741089600)};
}

TEST_F(StoreFormatTest, TheDocumentedSamplesAreWhatIsWritten) {
  ASSERT_EQ(keysOf(1).first, documentedKey("reference key"));
  ASSERT_EQ(keysOf(1).first + 1, documentedKey("snapshot key"));
  blobs.insert(keysOf(1).first, {documented("reference text"), {}, {}});
  blobs.insert(keysOf(1).first + 1, {documented("snapshot text"), {}, {}});
  EXPECT_EQ(hexOfBytes(bytesIn("SELECT data FROM BlobReference")), documented("reference"));
  EXPECT_EQ(hexOfBytes(bytesIn("SELECT snapshotData FROM SampleBlobs WHERE key = 4294967297")),
            documented("snapshot"));
  const StoredFacts facts = storedFacts(documentedFacts());
  EXPECT_EQ(facts.powerSource, 0);
  EXPECT_EQ(hexOfBytes(facts.contributions.value_or("")), documented("contributions"));
}

TEST_F(StoreFormatTest, TheDocumentedSamplesAreReadBack) {
  const std::string reference = bytesOfHex(documented("reference"));
  const std::string snapshot = bytesOfHex(documented("snapshot"));
  Query(*database, "INSERT INTO BlobReference VALUES (?, ?)")
      .bind(documentedKey("reference key"))
      .bindBytes(reference)
      .run();
  Query(*database, "INSERT INTO SampleBlobs (key, snapshotData) VALUES (?, ?)")
      .bind(documentedKey("snapshot key"))
      .bindBytes(snapshot)
      .run();
  EXPECT_EQ(blobs.read(documentedKey("snapshot key")),
            (SampleBlobs{documented("snapshot text"), std::nullopt, std::nullopt}));
  EXPECT_THAT(factsFrom(0, bytesOfHex(documented("contributions"))), Optional(documentedFacts()));
}

TEST_F(StoreFormatTest, ThePowerSourcesHaveTheDocumentedNumbers) {
  std::vector<std::string> labels;
  for (std::int64_t number = 0; const auto facts = factsFrom(number, ""); ++number) {
    labels.push_back(facts->powerSourceLabel);
  }
  EXPECT_THAT(labels, testing::ElementsAre("Battery draw", "Battery charge input", "Battery supplement",
                                           "IOReport silicon power", "On AC, battery idle", "Unavailable"));
}

}  // namespace
}  // namespace quellin
