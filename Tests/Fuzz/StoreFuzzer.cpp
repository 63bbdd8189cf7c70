// A damaged store, made from a good one as the input says: what is read from it is what was recorded, or is
// reported as lost. The first byte chooses the store; then come edits of 8 bytes each: what, where (32 bits),
// with what (24 bits).

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "Support/RecordedStore.h"
#include "Support/TemporaryFolder.h"

using namespace quellin;
using fuzzing::ByteFeed;
using fuzzing::require;
using testing_support::Missing;

namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t longestStore = 512 * 1024;
constexpr int mostEdits = 24;
// Few, for speed.
constexpr int samplesPerSession = 6;

enum class Edit : std::uint8_t { flip, set, fill, copyPage, cut, lengthen };

void apply(Edit edit, std::string& bytes, std::size_t place, std::uint32_t with) {
  if (bytes.empty()) return;
  place %= bytes.size();
  const std::size_t length = std::min<std::size_t>(with % page, bytes.size() - place);
  switch (edit) {
    case Edit::flip:
      bytes[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ (1U << (with % 8)));
      break;
    case Edit::set:
      bytes[place] = static_cast<char>(with);
      break;
    case Edit::fill:
      std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(place), length, static_cast<char>(with >> 16U));
      break;
    case Edit::copyPage: {
      const std::size_t from = with % (bytes.size() / page + 1) * page;
      // From behind the last page: the page is taken out.
      bytes.replace(place / page * page, page, std::string(bytes, from, page));
      break;
    }
    case Edit::cut:
      bytes.resize(place);
      break;
    case Edit::lengthen:
      if (bytes.size() < longestStore) bytes.append(length, static_cast<char>(with >> 16U));
      break;
  }
}

void damage(std::string& bytes, ByteFeed& feed) {
  for (int count = 0; count < mostEdits && !feed.isEmpty(); ++count) {
    const auto edit = static_cast<Edit>(feed.takeIndex(6));
    const auto place = feed.take<std::uint32_t>();
    const std::uint32_t with =
        feed.take<std::uint8_t>() | static_cast<std::uint32_t>(feed.take<std::uint16_t>()) << 8U;
    apply(edit, bytes, place, with);
  }
}

/// Good stores, and the place where the damaged ones are put.
struct Stores {
  testing_support::TemporaryFolder folder;
  std::filesystem::path damaged = folder.path() / "damaged.store";
  testing_support::StoreBytes open =
      testing_support::recordStore(folder.path() / "good.store", samplesPerSession);
  testing_support::StoreReading whole = testing_support::readStore(folder.path() / "good.store");
  std::string settled = testing_support::contentOf(folder.path() / "good.store");

  [[nodiscard]] testing_support::StoreReading read(const std::string& file, const std::string& log) const {
    return testing_support::readStoreOf({.file = file, .log = log}, damaged);
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Stores stores;
  ByteFeed feed(data, size);
  const bool isOpen = feed.takeIndex(2) == 1;
  std::string file = isOpen ? stores.open.file : stores.settled;
  std::string log = isOpen ? stores.open.log : "";
  damage(isOpen ? log : file, feed);
  // A file without a byte is a new store; what a damaged log holds may be lost from the damage on. Several
  // pages that are good in the wrong places can hide rows together, but never make up any.
  const Missing missing = isOpen || file.empty() ? Missing::theEnd : Missing::rows;
  const std::string found = testing_support::untruth(stores.read(file, log), stores.whole, missing);
  if (!found.empty()) std::fprintf(stderr, "%s\n", found.c_str());
  require(found.empty());
  return 0;
}
